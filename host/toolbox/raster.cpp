// The span routine: clip, pattern, transfer mode.
// Toolbox, internal.
// Called by the drawing verbs.
#include "host/toolbox/raster.h"

#include "host/toolbox/port.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr uint32_t OPAQUE = 0xFF000000u;
constexpr uint32_t COLOUR = 0x00FFFFFFu;

uint32_t darker(uint32_t a, uint32_t b) {
    return OPAQUE | std::min(a & 0xFF0000u, b & 0xFF0000u) | std::min(a & 0xFF00u, b & 0xFF00u) |
           std::min(a & 0xFFu, b & 0xFFu);
}

// Short runs are the rule, so pairs of pixels rather than a library call per row.
inline void fill_row(uint32_t* at, int n, uint32_t colour) {
    uint64_t pair = static_cast<uint64_t>(colour) << 32 | colour;
    for (; n >= 4; n -= 4, at += 4) {
        std::memcpy(at, &pair, 8);
        std::memcpy(at + 2, &pair, 8);
    }
    if (n & 2) {
        std::memcpy(at, &pair, 8);
        at += 2;
    }
    if (n & 1) *at = colour;
}

void blend_row(uint32_t* at, int left, int right, int v, const raster_ink& ink) {
    unsigned bits = ink.pattern.pat[v & 7];
    for (int h = left; h < right; h++) {
        bool set = (bits >> (7 - (h & 7))) & 1;
        at[h - left] = raster_blend(ink, set, at[h - left]);
    }
}

bool copies(const raster_ink& ink) {
    return ink.mode != patOr && ink.mode != patXor && ink.mode != patBic && ink.mode != adMin;
}

// r lies inside the bitmap and the clip.
void fill_inside(GrafPort& port, int left, int top, int right, int bottom, const raster_ink& ink) {
    raster_countspans(bottom - top);
    uint32_t* row = port.pixels.data() + static_cast<size_t>(top) * static_cast<size_t>(port.width) + left;
    if (ink.solid && copies(ink)) {
        for (int v = top; v < bottom; v++, row += port.width) fill_row(row, right - left, ink.fore);
    } else {
        for (int v = top; v < bottom; v++, row += port.width) blend_row(row, left, right, v, ink);
    }
}

} // namespace

uint32_t raster_blend(const raster_ink& ink, bool set, uint32_t was) {
    switch (ink.mode) {
    case patOr: return set ? ink.fore : was;
    case patBic: return set ? ink.back : was;
    case patXor: return set ? was ^ (~ink.fore & COLOUR) : was;
    case adMin: return darker(set ? ink.fore : ink.back, was);
    default: return set ? ink.fore : ink.back;
    }
}

bool raster_outline(GrafPort& port, const Rect& r, const raster_ink& ink) {
    const toolbox_region& clip = port.drawable;
    if (!clip.rectangular() || !ink.solid || !copies(ink)) return false;
    const int left = std::max(r.left, clip.bounds.left), right = std::min(r.right, clip.bounds.right);
    const int top = std::max(r.top, clip.bounds.top), bottom = std::min(r.bottom, clip.bounds.bottom);
    if (left >= right || top >= bottom) return true;
    port.changed = true;
    raster_countspans(bottom - top);
    uint32_t* row = port.pixels.data() + static_cast<size_t>(top) * static_cast<size_t>(port.width);
    const bool at_left = r.left >= left, at_right = r.right <= right;
    for (int v = top; v < bottom; v++, row += port.width) {
        if (v == r.top || v == r.bottom - 1) {
            fill_row(row + left, right - left, ink.fore);
            continue;
        }
        if (at_left) row[left] = ink.fore;
        if (at_right) row[right - 1] = ink.fore;
    }
    return true;
}

void raster_rect(GrafPort& port, const Rect& r, const raster_ink& ink) {
    const toolbox_region& clip = port.drawable;
    int left = std::max(r.left, clip.bounds.left), right = std::min(r.right, clip.bounds.right);
    int top = std::max(r.top, clip.bounds.top), bottom = std::min(r.bottom, clip.bounds.bottom);
    if (left >= right || top >= bottom) return;
    port.changed = true;
    if (clip.rectangular()) {
        fill_inside(port, left, top, right, bottom, ink);
        return;
    }
    for (const region_band& band : clip.bands) {
        int t = std::max<int>(top, band.top), b = std::min<int>(bottom, band.bottom);
        for (uint32_t i = band.first; t < b && i < band.first + band.count; i++) {
            int l = std::max<int>(left, clip.spans[i].left), e = std::min<int>(right, clip.spans[i].right);
            if (l < e) fill_inside(port, l, t, e, b, ink);
        }
    }
}
