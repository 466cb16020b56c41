// tests/io/midi_bytes.h: MIDI files put together byte by byte.
// Test layer. Used by the tests of reading and writing MIDI files.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

inline std::string bytes(std::initializer_list<int> values) {
    std::string s;
    for (const int v : values) s += static_cast<char>(v);
    return s;
}

// Big-endian, `size` bytes.
inline std::string big(std::uint32_t value, int size) {
    std::string s;
    for (int i = size - 1; i >= 0; --i) s += static_cast<char>(value >> 8 * i);
    return s;
}

inline std::string var(std::uint32_t value) {
    std::string s(1, static_cast<char>(value & 0x7F));
    while (value >>= 7) s.insert(s.begin(), static_cast<char>((value & 0x7F) | 0x80));
    return s;
}

inline std::string midi_header(int format, int tracks, int division) {
    return "MThd" + big(6, 4) + big(static_cast<std::uint32_t>(format), 2) +
           big(static_cast<std::uint32_t>(tracks), 2) + big(static_cast<std::uint32_t>(division), 2);
}

inline std::string chunk(const std::string& content, const char* type = "MTrk") {
    return type + big(static_cast<std::uint32_t>(content.size()), 4) + content;
}

inline std::string on(std::uint32_t delta, int pitch, int vel = 100, int channel = 0) {
    return var(delta) + bytes({0x90 | channel, pitch, vel});
}
inline std::string off(std::uint32_t delta, int pitch, int channel = 0) {
    return var(delta) + bytes({0x80 | channel, pitch, 64});
}
inline std::string tempo(std::uint32_t delta, std::uint32_t microseconds) {
    return var(delta) + bytes({0xFF, 0x51, 3}) + big(microseconds, 3);
}
inline std::string meta(std::uint32_t delta, int type, const std::string& data) {
    return var(delta) + bytes({0xFF, type}) + var(static_cast<std::uint32_t>(data.size())) + data;
}
inline std::string end_of_track(std::uint32_t delta = 0) {
    return var(delta) + bytes({0xFF, 0x2F, 0});
}

// A whole file of format 0 at 96 ticks a quarter note, which is 192 ticks a second.
inline std::string one_track(const std::string& content) {
    return midi_header(0, 1, 96) + chunk(content + end_of_track());
}
