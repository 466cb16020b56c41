// view/touch.cpp: which parts of the window were erased, as a map.
// Layer: view, internal to the data area.
// Called when many events were erased.
#include "view/touch.h"

#include <algorithm>

#include "view/bitruns.h"

namespace {

// Rows beyond the data area in which a bar that shows may still be touched.
constexpr int MARGIN = 32;

} // namespace

void touch_map::plane::begin(std::size_t row_count, std::size_t word_count) {
    bits.assign(row_count * word_count, 0);
    from_left.assign(row_count, INT32_MIN);
    from_right.assign(row_count, INT32_MAX);
}

void touch_map::begin(const view_frame& f) {
    left = f.data.left;
    right = std::max(f.set.width + 1, left + 1);
    scale = f.half == 0 ? 2 : 1;
    top = f.data.top - MARGIN;
    rows = std::max(f.data.bottom + MARGIN - top, 1) * scale;
    words = words_for(right - left);
    areas.begin(static_cast<std::size_t>(rows), static_cast<std::size_t>(words));
    if (scale == 2) lines.begin(static_cast<std::size_t>(rows), static_cast<std::size_t>(words));
}

// Open intervals: at scale 2 the odd rows are pixels and the even ones the lines between them.
touch_map::row_range touch_map::rows_of(const bar_box& box) const {
    int from = box.top - top;
    int to = box.bottom - top;
    if (scale == 2) {
        const bool line = from == to;
        from = line ? 2 * from : 2 * from + 1;
        to = line ? from + 1 : 2 * to;
    }
    return {std::max(from, 0), std::min(to, rows)};
}

void touch_map::add(plane* p, const bar_box& erased) const {
    const row_range range = rows_of(erased);
    if (erased.left >= left && erased.right <= right) {
        const bit_run run(erased.left - left, erased.right - left);
        std::uint64_t* row = p->bits.data() + static_cast<std::ptrdiff_t>(range.from) * words;
        for (int v = range.from; v < range.to; ++v, row += words) run.set(row);
        return;
    }
    for (int v = range.from; v < range.to; ++v) {
        const auto at = static_cast<std::size_t>(v);
        if (erased.left < left) p->from_left[at] = std::max(p->from_left[at], erased.right);
        if (erased.right > right) p->from_right[at] = std::min(p->from_right[at], erased.left);
    }
}

bool touch_map::touched(const plane& p, const bar_box& box) const {
    const row_range range = rows_of(box);
    for (int v = range.from; v < range.to; ++v) {
        const auto at = static_cast<std::size_t>(v);
        if (p.from_left[at] > box.left || p.from_right[at] < box.right) return true;
    }
    const int from = std::max(box.left, left) - left;
    const int to = std::min(box.right, right) - left;
    if (from >= to) return false;
    const bit_run run(from, to);
    const std::uint64_t* row = p.bits.data() + static_cast<std::ptrdiff_t>(range.from) * words;
    for (int v = range.from; v < range.to; ++v, row += words) {
        if (run.any(row)) return true;
    }
    return false;
}

void touch_map::add(const bar_box& erased) {
    if (erased.left >= erased.right) return;
    add(scale == 2 && erased.top == erased.bottom ? &lines : &areas, erased);
}

// Two that are lines do not overlap.
bool touch_map::touched(const bar_box& box) const {
    if (touched(areas, box)) return true;
    return scale == 2 && box.top != box.bottom && touched(lines, box);
}
