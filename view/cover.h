// view/cover.h: which pixels of the data area will be drawn over, so that what lies below need not be drawn.
// Layer: view, internal to the data area.
// Called when many bars are drawn one over the other.
#pragma once

#include <cstdint>
#include <vector>

#include "view/frame.h"

// Fed with bars from the last drawn to the first.
class cover_map {
public:
    // Uncovers everything and fits the map to the frame. The window's port must be current. [main]
    void begin(const view_frame& f);
    // Whether every pixel that the bar, its label and its mark may set is covered. [main]
    bool hides(const view_frame& f, const bar_look& look) const;
    // Covers what the bar sets for certain. [main]
    void add(const view_frame& f, const bar_look& look);
    // Whether nothing is left uncovered. [main]
    bool is_full() const { return open == 0; }

private:
    void add_row(int v, int from, int to);
    std::uint64_t* row(int v);
    const std::uint64_t* row(int v) const;

    int left = 0, right = 0, top = 0, bottom = 0;
    int words = 0;
    std::int64_t open = 0; // pixels not covered
    int ascent = 0, descent = 0;
    std::vector<std::uint64_t> bits;
};
