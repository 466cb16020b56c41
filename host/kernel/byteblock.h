// host/kernel/byteblock.h: 64 bytes looked at together: which of them have a property, as bits.
// Layer: kernel. Called by the readers of both forms of a document.
//
// What is found so is found without waiting for what stands in front of it, and without a branch for each byte.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

constexpr std::ptrdiff_t WORD = 8; // bytes
constexpr std::ptrdiff_t BLOCK = 8 * WORD;

// Whether blocks can be looked at on this machine: bit i has to be byte i.
constexpr bool BLOCKS_WORK = std::endian::native == std::endian::little;

// A word with this in each of its bytes.
constexpr std::uint64_t in_each_byte(std::uint64_t byte) {
    return byte * 0x0101010101010101;
}

// The WORD bytes from here on.
inline std::uint64_t word_at(const void* p) {
    std::uint64_t w;
    std::memcpy(&w, p, sizeof w);
    return w;
}

// A bit for each of the BLOCK bytes from here on: the top bit of what `mark` makes of it, word by word.
template <class Mark> std::uint64_t block_bits(const void* from, Mark mark) {
    std::uint64_t bits = 0;
    for (std::ptrdiff_t i = 0; i < BLOCK / WORD; ++i) {
        const std::uint64_t top =
            mark(word_at(static_cast<const char*>(from) + i * WORD)) >> 7 & in_each_byte(1);
        bits |= top * 0x0102040810204080 >>
                56 << i * WORD; // the eight bits, brought together in the uppermost byte
    }
    return bits;
}
