// app/midi_rest.cpp: what a MIDI file holds beside its notes.
// Layer: program.
#include "app/midi_rest.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>

namespace {

constexpr std::array<unsigned char, 3> WRITTEN_TEMPO{0x07, 0xA1, 0x20}; // 120 beats a minute
constexpr std::size_t CHUNK_HEAD = 8;

enum rest { PROGRAMS, CONTROLLERS, BENDS, PRESSURE, TEMPO, METER, KEY, TEXTS, EXCLUSIVE, OTHERS, N_RESTS };

constexpr std::array<const char*, N_RESTS> WORDS{
    "program changes", "controllers", "pitch bend",      "pressure",         "tempo",
    "meter",           "key",         "names and texts", "system exclusive", "other events"};

using bytes_left = std::span<const unsigned char>;
using found_rests = std::array<bool, N_RESTS>;

// The first n bytes, or as many as there are, taken off the front.
bytes_left take(bytes_left& from, std::size_t n) {
    n = std::min(n, from.size());
    const bytes_left taken = from.first(n);
    from = from.subspan(n);
    return taken;
}

std::size_t quantity(bytes_left& from) {
    std::uint32_t n = 0;
    while (!from.empty()) {
        const unsigned char c = take(from, 1)[0];
        n = n << 7 | (c & 0x7F);
        if (!(c & 0x80)) break;
    }
    return n;
}

std::size_t big_endian(bytes_left four) {
    std::size_t n = 0;
    for (const unsigned char c : four) n = n << 8 | c;
    return n;
}

// A port, a channel for what follows and the end of a track say nothing that is heard or read.
void look_at_meta(int type, bytes_left data, bool at_start, found_rests& found) {
    if (type >= 0x01 && type <= 0x0F) found[TEXTS] = true;
    if (type == 0x51) found[TEMPO] |= !at_start || !std::ranges::equal(data, WRITTEN_TEMPO);
    if (type == 0x58) found[METER] = true;
    if (type == 0x59) found[KEY] = true;
    if (type == 0x00 || type == 0x54 || type == 0x7F) found[OTHERS] = true;
}

void look_at_channel(int status, found_rests& found) {
    switch (status & 0xF0) {
    case 0xA0:
    case 0xD0: found[PRESSURE] = true; break;
    case 0xB0: found[CONTROLLERS] = true; break;
    case 0xC0: found[PROGRAMS] = true; break;
    case 0xE0: found[BENDS] = true; break;
    default: break;
    }
}

void look_at_track(bytes_left track, found_rests& found) {
    int running = 0;
    bool at_start = true;
    while (!track.empty()) {
        at_start = quantity(track) == 0 && at_start;
        if (track.empty()) return;
        const int status = track[0] & 0x80 ? take(track, 1)[0] : running;
        if (status == 0xFF) {
            const bytes_left type = take(track, 1);
            const std::size_t length = quantity(track);
            if (!type.empty()) look_at_meta(type[0], take(track, length), at_start, found);
        } else if (status >= 0xF0) {
            found[EXCLUSIVE] = true;
            take(track, quantity(track));
        } else {
            if (status < 0x80) return; // data without a status: the rest cannot be told apart
            running = status;
            look_at_channel(status, found);
            take(track, (status & 0xE0) == 0xC0 ? 1 : 2);
        }
    }
}

} // namespace

std::vector<std::string> midi_rest(bytes_left bytes) {
    found_rests found{};
    while (bytes.size() > CHUNK_HEAD) {
        const bytes_left type = take(bytes, 4);
        const std::size_t length = big_endian(take(bytes, 4));
        const bytes_left chunk = take(bytes, length);
        if (std::ranges::equal(type, std::string_view("MTrk"))) look_at_track(chunk, found);
    }
    std::vector<std::string> words;
    for (std::size_t i = 0; i < WORDS.size(); ++i) {
        if (found[i]) words.emplace_back(WORDS[i]);
    }
    return words;
}

std::vector<std::string> midi_rest_of(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(in), {});
    return midi_rest({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
}
