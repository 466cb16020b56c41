// Regions from the inside: any union of rectangles, kept as bands from top to bottom, spans from left to right.
// Toolbox, internal: leans on host/toolbox.h.
// Called by ports (clip, invalid, visible), by the rasteriser and by the region calls of the toolbox.
#pragma once

#include "host/toolbox.h"

#include <cstddef>
#include <vector>

// Rows top..bottom-1 of a region, all alike: spans first .. first+count-1 of the region's span list.
struct region_band {
    int16_t top, bottom;
    uint32_t first, count;
    bool operator==(const region_band&) const = default;
};

// Pixels left..right-1 of a band.
struct region_span {
    int16_t left, right;
    bool operator==(const region_span&) const = default;
};

// Invariants, which make equal regions equal records: bounds is (0, 0, 0, 0) when empty, and tight otherwise. A region of
// one rectangle or none has no bands. Otherwise bands are sorted, do not overlap, hold at least one span each, and two
// that touch differ in their spans; the spans of a band are sorted and do not touch.
struct toolbox_region {
    Rect bounds{0, 0, 0, 0};
    std::vector<region_band> bands;
    std::vector<region_span> spans;

    bool empty() const { return bounds.left >= bounds.right; }
    bool rectangular() const { return bands.empty(); }
};

// What two regions are joined by: bit 0 answers for pixels of neither (always clear), bit 1 of the first only, bit 2 of the
// second only, bit 3 of both.
enum class region_op : unsigned { sect = 0b1000, join = 0b1110, diff = 0b0010, exclusive = 0b0110 };

// The region that op makes of a and b. [main]
toolbox_region region_combine(const toolbox_region& a, const toolbox_region& b, region_op op);
// The region that is one rectangle; an empty one for an empty rectangle. [main]
toolbox_region region_of(const Rect& r);
