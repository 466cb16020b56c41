// host/desktop/audio_wav.cpp: the WAV form and its file.
// Layer: desktop platform.
#include "host/desktop/audio_wav.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t HEADER_SIZE = 44;
constexpr std::uint64_t MOST_BYTES = 0xFFFFFFFFU - (HEADER_SIZE - 8); // the form counts bytes in 32 bits
constexpr int BYTES_A_FRAME = AUDIO_CHANNELS * 2;
constexpr std::uint16_t INTEGER_SAMPLES = 1; // the form's number for them

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

// The rights that a new file gets.
mode_t usual_rights() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

wav_file::~wav_file() {
    if (out) std::fclose(out);
    if (!beside.empty()) unlink(beside.c_str());
}

std::string wav_file::failed(int code) const {
    return target + ": " + std::strerror(code);
}

std::string wav_file::open(const std::string& file) {
    target = file;
    struct stat about {};
    if (stat(file.c_str(), &about) == 0 && !S_ISREG(about.st_mode))
        return S_ISDIR(about.st_mode) ? failed(EISDIR) : target + ": not a regular file";
    std::string name = file + ".XXXXXX";
    const int fd = mkstemp(name.data());
    if (fd < 0) return failed(errno);
    beside = name;
    fchmod(fd, usual_rights());
    out = fdopen(fd, "wb");
    const header none = make_header(0);
    if (std::fwrite(none.data(), 1, none.size(), out) != none.size()) error = errno;
    return "";
}

void wav_file::write(std::span<const std::int16_t> samples) {
    if (error) return;
    if (bytes + samples.size_bytes() > MOST_BYTES) {
        error = EFBIG;
        return;
    }
    bytes += samples.size_bytes();
    std::vector<unsigned char> data(samples.size_bytes());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto s = std::bit_cast<std::uint16_t>(samples[i]);
        data[2 * i] = static_cast<unsigned char>(s);
        data[2 * i + 1] = static_cast<unsigned char>(s >> 8);
    }
    if (std::fwrite(data.data(), 1, data.size(), out) != data.size()) error = errno;
}

std::string wav_file::finish() {
    const header whole = make_header(bytes);
    if (!error && (std::fseek(out, 0, SEEK_SET) != 0 ||
                   std::fwrite(whole.data(), 1, whole.size(), out) != whole.size() || std::fflush(out) != 0 ||
                   fsync(fileno(out)) != 0))
        error = errno;
    if (std::fclose(out) != 0 && !error) error = errno;
    out = nullptr;
    if (!error && std::rename(beside.c_str(), target.c_str()) != 0) error = errno;
    if (error) return failed(error);
    beside.clear();
    return "";
}
