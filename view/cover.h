// view/cover.h: which pixels of the data area will be drawn over, so that what lies below need not be drawn.
// Layer: view, internal to the data area.
// Called when many bars are drawn one over the other.
#pragma once

#include <cstdint>
#include <vector>

#include "host/toolbox.h"

// Half-open, in window pixels; of any size.
struct pixel_box {
    std::int32_t left, top, right, bottom;
};

// Fed with what is drawn, from the last to the first.
class cover_map {
public:
    // Uncovers everything in the data area. [main]
    void begin(const Rect& data);
    // Whether every pixel of the box that lies in the data area is covered. [main]
    bool hides(const pixel_box& box) const;
    // Covers every pixel of the box. [main]
    void add(const pixel_box& box);
    // Whether hidden() may be asked for this column: the 64 from it on touch the data area. [main]
    bool in_reach(std::int32_t column) const { return column > area.left - 64 && column < area.right; }
    // Of the 64 columns from `column` on, lowest bit first, those in which every row from top to bottom - 1 is covered;
    // what lies outside the data area counts as covered. [main]
    std::uint64_t hidden(std::int32_t column, std::int32_t top, std::int32_t bottom) const;

private:
    // Rows have a covered word in front and two behind, so that windows may reach beyond the area.
    Rect area{};
    int words = 0;
    std::vector<std::uint64_t> bits;
};
