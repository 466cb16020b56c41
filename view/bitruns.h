// view/bitruns.h: runs of bits in rows of 64-bit words, the lowest bit leftmost.
// Layer: view, internal to the data area's maps.
// Called by the maps of what was erased, is to be put back, and is drawn over.
#pragma once

#include <algorithm>
#include <cstdint>

constexpr int BITS = 64;

// The bits of columns from..to-1 within the word that begins at column `word`; none when the run does not reach it.
inline std::uint64_t run_in_word(int word, int from, int to) {
    const int a = std::max(from - word, 0);
    const int b = std::min(to - word, BITS);
    if (a >= b) return 0;
    return ~std::uint64_t{0} >> (BITS - b) & ~std::uint64_t{0} << a;
}

// The words that a row of this many columns takes.
inline int words_for(int columns) {
    return (columns + BITS - 1) / BITS;
}
