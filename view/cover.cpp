// view/cover.cpp: which pixels of the data area will be drawn over.
// Layer: view, internal to the data area.
// Called when many bars are drawn one over the other.
#include "view/cover.h"

#include <algorithm>

#include "view/bitruns.h"

namespace {

constexpr int PADDING = BITS; // columns in front of a row
constexpr int PADDED_WORDS = 3;

// What of a box lies in the area, in pixels from its left upper corner.
struct inside {
    int from, to, top, bottom;

    inside(const pixel_box& box, const Rect& area)
        : from(std::max<int>(box.left, area.left) - area.left),
          to(std::min<int>(box.right, area.right) - area.left),
          top(std::max<int>(box.top, area.top) - area.top),
          bottom(std::min<int>(box.bottom, area.bottom) - area.top) {}
    bool nothing() const { return from >= to || top >= bottom; }
    bit_run columns() const { return bit_run(from + PADDING, to + PADDING); }
};

} // namespace

void cover_map::begin(const Rect& data) {
    area = data;
    area.right = std::max(data.right, data.left);
    area.bottom = std::max(data.bottom, data.top);
    const int width = area.right - area.left;
    words = words_for(width) + PADDED_WORDS;
    bits.assign(static_cast<std::size_t>(area.bottom - area.top) * static_cast<std::size_t>(words), 0);
    const bit_run front(0, PADDING);
    const bit_run behind(PADDING + width, words * BITS);
    std::uint64_t* row = bits.data();
    for (int v = area.top; v < area.bottom; ++v, row += words) {
        front.set(row);
        behind.set(row);
    }
}

std::uint64_t cover_map::hidden(std::int32_t column, std::int32_t top, std::int32_t bottom) const {
    const int at = column - area.left + PADDING;
    const int shift = at % BITS;
    const int from = std::max<int>(top, area.top) - area.top;
    const int to = std::min<int>(bottom, area.bottom) - area.top;
    std::uint64_t all = ~std::uint64_t{0};
    if (from >= to) return all;
    const std::uint64_t* row = bits.data() + static_cast<std::ptrdiff_t>(from) * words + at / BITS;
    // The second shift in two steps, so that a shift of 0 takes nothing of the next word.
    for (int v = from; v < to; ++v, row += words) all &= row[0] >> shift | row[1] << 1 << (BITS - 1 - shift);
    return all;
}

bool cover_map::hides(const pixel_box& box) const {
    const inside part(box, area);
    if (part.nothing()) return true;
    const bit_run run = part.columns();
    const std::uint64_t* row = bits.data() + static_cast<std::ptrdiff_t>(part.top) * words;
    for (int v = part.top; v < part.bottom; ++v, row += words) {
        if (!run.all(row)) return false;
    }
    return true;
}

void cover_map::add(const pixel_box& box) {
    const inside part(box, area);
    if (part.nothing()) return;
    const bit_run run = part.columns();
    std::uint64_t* row = bits.data() + static_cast<std::ptrdiff_t>(part.top) * words;
    for (int v = part.top; v < part.bottom; ++v, row += words) run.set(row);
}
