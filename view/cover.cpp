// view/cover.cpp: which pixels of the data area will be drawn over.
// Layer: view, internal to the data area.
// Called when many bars are drawn one over the other.
#include "view/cover.h"

namespace {

constexpr int PADDING = BITS; // columns in front of the area
constexpr int PADDED_WORDS = 3;
constexpr std::uint64_t ALL = ~std::uint64_t{0};

} // namespace

void cover_map::begin(const Rect& data) {
    area = data;
    area.right = std::max(data.right, data.left);
    area.bottom = std::max(data.bottom, data.top);
    rows = area.bottom - area.top;
    const int width = area.right - area.left;
    const int columns = words_for(width) + PADDED_WORDS;
    bits.assign(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), 0);
    const bit_run behind(PADDING + width, columns * BITS);
    std::fill_n(words_of(0), rows, ALL);
    for (int w = behind.first; w <= behind.last; ++w) std::fill_n(words_of(w), rows, behind.in(w));
}

bool cover_map::hides(const pixel_box& box) const {
    const int from = std::max<int>(box.left, area.left) - area.left;
    const int to = std::min<int>(box.right, area.right) - area.left;
    if (from >= to) return true;
    const row_range range = rows_of(box.top, box.bottom);
    const bit_run run(from + PADDING, to + PADDING);
    for (int w = run.first; w <= run.last; ++w) {
        const std::uint64_t wanted = run.in(w);
        const std::uint64_t* const words = words_of(w);
        for (int v = range.from; v < range.to; ++v) {
            if (~words[v] & wanted) return false;
        }
    }
    return true;
}

void cover_map::add(const pixel_box& box) {
    const int from = std::max<int>(box.left, area.left) - area.left;
    const int to = std::min<int>(box.right, area.right) - area.left;
    if (from >= to) return;
    const row_range range = rows_of(box.top, box.bottom);
    const bit_run run(from + PADDING, to + PADDING);
    for (int w = run.first; w <= run.last; ++w) {
        const std::uint64_t more = run.in(w);
        std::uint64_t* const words = words_of(w);
        for (int v = range.from; v < range.to; ++v) words[v] |= more;
    }
}
