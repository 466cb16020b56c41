// view/bitruns.h: runs of bits in rows of 64-bit words, the lowest bit leftmost.
// Layer: view, internal to the data area's maps.
// Called by the maps of what was erased, is to be put back, and is drawn over.
#pragma once

#include <algorithm>
#include <cstdint>

constexpr int BITS = 64;

// The words that a row of this many columns takes.
inline int words_for(int columns) {
    return (columns + BITS - 1) / BITS;
}

// The bits of columns from..to-1 of a row, worked out once for all rows that they are looked at in: those of the first
// word and of the last, and every one of the words between. from < to.
struct bit_run {
    int first, last;
    std::uint64_t head, tail; // head alone when first == last
    bit_run(int from, int to)
        : first(from / BITS), last((to - 1) / BITS), head(~std::uint64_t{0} << from % BITS),
          tail(~std::uint64_t{0} >> (BITS - 1 - (to - 1) % BITS)) {
        if (first == last) head &= tail;
    }
    // The bits in word w, first <= w <= last.
    std::uint64_t in(int w) const {
        if (w == first) return head;
        return w == last ? tail : ~std::uint64_t{0};
    }
    void set(std::uint64_t* row) const {
        row[first] |= head;
        if (first == last) return;
        for (int w = first + 1; w < last; ++w) row[w] = ~std::uint64_t{0};
        row[last] |= tail;
    }
};
