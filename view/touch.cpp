// view/touch.cpp: which parts of the window were erased, as a map.
// Layer: view, internal to the data area.
// Called when many events were erased.
#include "view/touch.h"

#include <algorithm>

#include "core/steps.h"
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

void touch_places::fit(const view_frame& f) {
    left = f.data.left;
    right = std::max(f.set.width + 1, left + 1);
    scale = f.half == 0 ? 2 : 1;
    top = f.data.top - MARGIN;
    rows = std::max(f.data.bottom + MARGIN - top, 1) * scale;
}

void touch_map::begin(const view_frame& f) {
    fit(f);
    const auto words = static_cast<std::size_t>(words_for(right - left));
    areas.begin(static_cast<std::size_t>(rows), words);
    if (scale == 2) lines.begin(static_cast<std::size_t>(rows), words);
}

// Open intervals: at scale 2 the odd rows are pixels and the even ones the lines between them.
touch_places::row_range touch_places::rows_of(const bar_box& box) const {
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
    const row_range columns = columns_of(erased);
    if (columns.from < columns.to) {
        const bit_run run(columns.from, columns.to);
        for (int w = run.first; w <= run.last; ++w) {
            const std::uint64_t more = run.in(w);
            std::uint64_t* const words = p->bits.data() + static_cast<std::ptrdiff_t>(w) * rows;
            for (int v = range.from; v < range.to; ++v) words[v] |= more;
        }
    }
    if (is_inside(erased)) return;
    for (int v = range.from; v < range.to; ++v) {
        const auto at = static_cast<std::size_t>(v);
        if (erased.left < left) p->from_left[at] = std::max(p->from_left[at], erased.right);
        if (erased.right > right) p->from_right[at] = std::min(p->from_right[at], erased.left);
    }
}

bool touch_map::touched(const plane& p, const bar_box& box) const {
    const row_range range = rows_of(box);
    const row_range columns = columns_of(box);
    if (columns.from < columns.to) {
        const bit_run run(columns.from, columns.to);
        for (int w = run.first; w <= run.last; ++w) {
            const std::uint64_t wanted = run.in(w);
            const std::uint64_t* const words = p.bits.data() + static_cast<std::ptrdiff_t>(w) * rows;
            for (int v = range.from; v < range.to; ++v) {
                if (words[v] & wanted) return true;
            }
        }
    }
    if (is_inside(box)) return false;
    for (int v = range.from; v < range.to; ++v) {
        const auto at = static_cast<std::size_t>(v);
        if (p.from_left[at] > box.left || p.from_right[at] < box.right) return true;
    }
    return false;
}

void touch_map::add(const bar_box& erased) {
    if (erased.left >= erased.right) return;
    add(is_line(erased) ? &lines : &areas, erased);
}

bool touch_map::touched(const bar_box& box) const {
    if (touched(areas, box)) return true;
    return scale == 2 && !is_line(box) && touched(lines, box);
}

void last_touch_map::begin(const view_frame& f) {
    fit(f);
    const auto pixels = static_cast<std::size_t>(rows) * static_cast<std::size_t>(right - left);
    areas.assign(pixels, 0);
    if (scale == 2) lines.assign(pixels, 0);
    reaching_out.clear();
}

void last_touch_map::add(const bar_box& erased, std::uint32_t step) {
    if (erased.left >= erased.right) return;
    if (!is_inside(erased)) reaching_out.push_back({erased, step});
    const row_range range = rows_of(erased);
    const row_range columns = columns_of(erased);
    if (columns.from >= columns.to) return;
    std::uint32_t* const plane = plane_of(erased).data();
    for (int v = range.from; v < range.to; ++v) {
        std::uint32_t* const row = plane + static_cast<std::ptrdiff_t>(v) * (right - left);
        brisolan_countstep();
        std::fill(row + columns.from, row + columns.to, step);
    }
}

std::uint32_t last_touch_map::last_in(const std::vector<std::uint32_t>& plane, const bar_box& box) const {
    const row_range range = rows_of(box);
    const row_range columns = columns_of(box);
    std::uint32_t last = 0;
    for (int v = range.from; v < range.to; ++v) {
        const std::uint32_t* const row = plane.data() + static_cast<std::ptrdiff_t>(v) * (right - left);
        brisolan_countstep();
        for (int h = columns.from; h < columns.to; ++h) last = std::max(last, row[h]);
    }
    return last;
}

std::uint32_t last_touch_map::last(const bar_box& box) const {
    std::uint32_t last = last_in(areas, box);
    if (scale == 2 && !is_line(box)) last = std::max(last, last_in(lines, box));
    if (is_inside(box)) return last;
    for (auto o = reaching_out.rbegin(); o != reaching_out.rend() && o->step > last; ++o) {
        if (o->box.overlaps(box)) return o->step;
    }
    return last;
}
