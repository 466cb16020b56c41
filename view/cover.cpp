// view/cover.cpp: which pixels of the data area will be drawn over.
// Layer: view, internal to the data area.
// Called when many bars are drawn one over the other.
#include "view/cover.h"

#include <algorithm>

#include "view/bitruns.h"

void cover_map::begin(const Rect& data) {
    area = data;
    area.right = std::max(data.right, data.left);
    area.bottom = std::max(data.bottom, data.top);
    words = words_for(area.right - area.left);
    bits.assign(static_cast<std::size_t>(area.bottom - area.top) * static_cast<std::size_t>(words), 0);
}

bool cover_map::hides(const pixel_box& box) const {
    const int from = std::max<int>(box.left, area.left) - area.left;
    const int to = std::min<int>(box.right, area.right) - area.left;
    const int top = std::max<int>(box.top, area.top) - area.top;
    const int bottom = std::min<int>(box.bottom, area.bottom) - area.top;
    if (from >= to) return true;
    const bit_run run(from, to);
    const std::uint64_t* row = bits.data() + static_cast<std::ptrdiff_t>(top) * words;
    for (int v = top; v < bottom; ++v, row += words) {
        if (!run.all(row)) return false;
    }
    return true;
}

void cover_map::add(const pixel_box& box) {
    const int from = std::max<int>(box.left, area.left) - area.left;
    const int to = std::min<int>(box.right, area.right) - area.left;
    const int top = std::max<int>(box.top, area.top) - area.top;
    const int bottom = std::min<int>(box.bottom, area.bottom) - area.top;
    if (from >= to) return;
    const bit_run run(from, to);
    std::uint64_t* row = bits.data() + static_cast<std::ptrdiff_t>(top) * words;
    for (int v = top; v < bottom; ++v, row += words) run.set(row);
}
