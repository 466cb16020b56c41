// host/desktop/audio_wav.cpp: the WAV form and its file.
// Layer: desktop platform.
#include "host/desktop/audio_wav.h"

#include <array>
#include <bit>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t HEADER_SIZE = 44;
constexpr std::uint64_t MOST_BYTES = 0xFFFFFFFFU - (HEADER_SIZE - 8); // the form counts bytes in 32 bits
constexpr int BYTES_A_FRAME = AUDIO_CHANNELS * 2;
constexpr std::uint16_t INTEGER_SAMPLES = 1; // the form's number for them
constexpr file_type TYPE_WAV = host_type("WAVE");

using header = std::array<unsigned char, HEADER_SIZE>;

void put_word(header& h, std::size_t at, const char (&word)[5]) {
    std::memcpy(h.data() + at, word, 4);
}

// Least significant byte first.
void put_number(header& h, std::size_t at, std::uint32_t number, int size) {
    for (int i = 0; i < size; ++i)
        h[at + static_cast<std::size_t>(i)] = static_cast<unsigned char>(number >> (8 * i));
}

header make_header(std::uint64_t bytes) {
    const auto n = static_cast<std::uint32_t>(bytes);
    header h{};
    put_word(h, 0, "RIFF");
    put_number(h, 4, n + HEADER_SIZE - 8, 4);
    put_word(h, 8, "WAVE");
    put_word(h, 12, "fmt ");
    put_number(h, 16, 16, 4); // bytes of the description that follows
    put_number(h, 20, INTEGER_SAMPLES, 2);
    put_number(h, 22, AUDIO_CHANNELS, 2);
    put_number(h, 24, AUDIO_RATE, 4);
    put_number(h, 28, AUDIO_RATE * BYTES_A_FRAME, 4);
    put_number(h, 32, BYTES_A_FRAME, 2);
    put_number(h, 34, 16, 2); // bits a sample
    put_word(h, 36, "data");
    put_number(h, 40, n, 4);
    return h;
}

} // namespace

std::string wav_file::named(const std::string& why) const {
    return why.empty() ? "" : target + ": " + why;
}

std::string wav_file::open(const std::string& file) {
    target = file;
    std::string why = out.open(file, TYPE_WAV);
    if (!why.empty()) return named(why);
    const header none = make_header(0);
    out.write(none.data(), none.size());
    return "";
}

void wav_file::write(std::span<const std::int16_t> samples) {
    too_long = too_long || bytes + samples.size_bytes() > MOST_BYTES;
    if (too_long) return;
    bytes += samples.size_bytes();
    std::vector<unsigned char> data(samples.size_bytes());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto s = std::bit_cast<std::uint16_t>(samples[i]);
        data[2 * i] = static_cast<unsigned char>(s);
        data[2 * i + 1] = static_cast<unsigned char>(s >> 8);
    }
    out.write(data.data(), data.size());
}

std::string wav_file::finish() {
    if (too_long) return named("the sound is longer than a WAV file can be");
    const header whole = make_header(bytes);
    out.rewind();
    out.write(whole.data(), whole.size());
    return named(out.finish());
}
