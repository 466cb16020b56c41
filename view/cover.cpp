// view/cover.cpp: which pixels of the data area will be drawn over.
// Layer: view, internal to the data area.
// Called when many bars are drawn one over the other.
#include "view/cover.h"

#include <algorithm>
#include <bit>

#include "view/bars.h"
#include "view/bitruns.h"

std::uint64_t* cover_map::row(int v) {
    return bits.data() + static_cast<std::size_t>(v - top) * static_cast<std::size_t>(words);
}

const std::uint64_t* cover_map::row(int v) const {
    return bits.data() + static_cast<std::size_t>(v - top) * static_cast<std::size_t>(words);
}

void cover_map::begin(const view_frame& f) {
    left = f.data.left;
    right = std::max<int>(f.data.right, left);
    top = f.data.top;
    bottom = std::max<int>(f.data.bottom, top);
    words = words_for(right - left);
    open = std::int64_t{right - left} * (bottom - top);
    bits.assign(static_cast<std::size_t>(bottom - top) * static_cast<std::size_t>(words), 0);
    FontInfo font;
    GetFontInfo(&font);
    ascent = font.ascent;
    descent = font.descent;
}

bool cover_map::hides(const view_frame& f, const bar_look& look) const {
    const bar_bounds b = brisolan_barbounds(f, look, ascent, descent);
    const int from = std::max(b.left, left) - left;
    const int to = std::min(b.right, right) - left;
    if (from >= to) return true;
    const int first = from / BITS;
    const int last = (to - 1) / BITS;
    for (int v = std::max(b.top, top); v < std::min(b.bottom, bottom); ++v) {
        const std::uint64_t* at = row(v);
        for (int w = first; w <= last; ++w) {
            if (run_in_word(w * BITS, from, to) & ~at[w]) return false;
        }
    }
    return true;
}

void cover_map::add_row(int v, int from, int to) {
    if (v < top || v >= bottom) return;
    std::uint64_t* at = row(v);
    for (int w = from / BITS; w <= (to - 1) / BITS; ++w) {
        const std::uint64_t added = run_in_word(w * BITS, from, to) & ~at[w];
        at[w] |= added;
        open -= std::popcount(added);
    }
}

void cover_map::add(const view_frame& f, const bar_look& look) {
    const bar_bounds b = brisolan_barcover(f, look);
    const int from = std::max(b.left, left) - left;
    const int to = std::min(b.right, right) - left;
    if (from >= to) return;
    if (look.selected) { // an outline
        add_row(b.top, from, to);
        add_row(b.bottom - 1, from, to);
        return;
    }
    for (int v = std::max(b.top, top); v < std::min(b.bottom, bottom); ++v) add_row(v, from, to);
}
