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

private:
    Rect area{};
    int words = 0;
    std::vector<std::uint64_t> bits;
};
