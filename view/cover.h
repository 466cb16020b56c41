// view/cover.h: which pixels of the data area will be drawn over, so that what lies below need not be drawn.
// Layer: view, internal to the data area.
// Called when many bars are drawn one over the other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/toolbox.h"
#include "view/bitruns.h"

// Half-open, in window pixels; of any size.
struct pixel_box {
    std::int32_t left, top, right, bottom;
};

// Fed with what is drawn, from the last to the first. A row's bits lie far apart, those of a column's rows side by side:
// bars are a few rows high and mostly lie in one column of words or two.
class cover_map {
public:
    // Uncovers everything in the data area. [main]
    void begin(const Rect& data);
    // Whether every pixel of the box that lies in the data area is covered. [main]
    bool hides(const pixel_box& box) const;
    // Covers every pixel of the box. [main]
    void add(const pixel_box& box);

    // A window is 64 columns from `column` on, lowest bit first. Whether one may be looked through here: it touches the
    // data area. [main]
    bool in_reach(std::int32_t column) const { return column > area.left - BITS && column < area.right; }
    // The window's columns in which every row from top to bottom - 1 is covered; what lies outside the data area counts
    // as covered. [main]
    std::uint64_t hidden(std::int32_t column, std::int32_t top, std::int32_t bottom) const;
    // Covers these columns of the window in the rows from top to bottom - 1. [main]
    void cover(std::int32_t column, std::int32_t top, std::int32_t bottom, std::uint64_t columns);

private:
    struct row_range {
        int from, to;
    };
    // Rows of the data area, from 0; none when to <= from.
    row_range rows_of(std::int32_t top, std::int32_t bottom) const {
        return {std::max<int>(top, area.top) - area.top, std::min<int>(bottom, area.bottom) - area.top};
    }
    // Of words-column w, the word of row v is w * rows + v. A covered one stands in front and two behind, so that windows
    // may reach beyond the area.
    std::uint64_t* words_of(int column) { return bits.data() + static_cast<std::ptrdiff_t>(column) * rows; }
    const std::uint64_t* words_of(int column) const {
        return bits.data() + static_cast<std::ptrdiff_t>(column) * rows;
    }

    Rect area{};
    int rows = 0;
    std::vector<std::uint64_t> bits;
};

inline std::uint64_t cover_map::hidden(std::int32_t column, std::int32_t top, std::int32_t bottom) const {
    const row_range range = rows_of(top, bottom);
    const int at = column - area.left + BITS;
    const int shift = at % BITS;
    const std::uint64_t* const first = words_of(at / BITS);
    const std::uint64_t* const second = first + rows;
    std::uint64_t in_first = ~std::uint64_t{0};
    std::uint64_t in_second = ~std::uint64_t{0};
    for (int v = range.from; v < range.to; ++v) {
        in_first &= first[v];
        in_second &= second[v];
    }
    // The second shift in two steps, so that a shift of 0 takes nothing of the next word.
    return in_first >> shift | in_second << 1 << (BITS - 1 - shift);
}

inline void cover_map::cover(std::int32_t column, std::int32_t top, std::int32_t bottom,
                             std::uint64_t columns) {
    const row_range range = rows_of(top, bottom);
    const int at = column - area.left + BITS;
    const int shift = at % BITS;
    std::uint64_t* const first = words_of(at / BITS);
    std::uint64_t* const second = first + rows;
    const std::uint64_t in_first = columns << shift;
    const std::uint64_t in_second = columns >> 1 >> (BITS - 1 - shift);
    for (int v = range.from; v < range.to; ++v) {
        first[v] |= in_first;
        second[v] |= in_second;
    }
}
