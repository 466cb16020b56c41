// Region algebra: one sweep over the bands of two regions, one over the spans of two bands.
// Toolbox, internal.
// Called through the region calls of host/toolbox.h, and by ports.
#include "host/toolbox/region.h"

#include "host/toolbox/pin.h"

#include <algorithm>
#include <span>

namespace {

// One region seen as a list of bands, whether or not it has any: a rectangle is one band of one span.
struct band_view {
    region_band only_band{};
    region_span only_span{};
    std::span<const region_band> bands;
    const region_span* spans = nullptr;

    explicit band_view(const toolbox_region& r) {
        if (r.rectangular() && !r.empty()) {
            only_band = {r.bounds.top, r.bounds.bottom, 0, 1};
            only_span = {r.bounds.left, r.bounds.right};
            bands = {&only_band, 1};
            spans = &only_span;
        } else {
            bands = r.bands;
            spans = r.spans.data();
        }
    }
    band_view(const band_view&) = delete;
    band_view& operator=(const band_view&) = delete;

    std::span<const region_span> of(const region_band& b) const { return {spans + b.first, b.count}; }
};

// Appends rows top..bottom-1 with the spans from `first` on, which already stand at the end of the span list.
void close_band(toolbox_region& out, int16_t top, int16_t bottom, size_t first) {
    size_t count = out.spans.size() - first;
    if (count == 0) return;
    if (!out.bands.empty()) {
        region_band& last = out.bands.back();
        auto old = out.spans.begin() + last.first;
        if (last.bottom == top && last.count == count &&
            std::equal(old, old + last.count, out.spans.begin() + static_cast<ptrdiff_t>(first))) {
            last.bottom = bottom;
            out.spans.resize(first);
            return;
        }
    }
    out.bands.push_back({top, bottom, static_cast<uint32_t>(first), static_cast<uint32_t>(count)});
}

// The next place to the right where a or b begins or ends, given how many of their edges are passed.
int edge(std::span<const region_span> s, size_t passed) {
    if (passed >= 2 * s.size()) return INT32_MAX;
    const region_span& at = s[passed / 2];
    return passed % 2 ? at.right : at.left;
}

void combine_spans(std::span<const region_span> a, std::span<const region_span> b, unsigned table,
                   std::vector<region_span>& out) {
    size_t pa = 0, pb = 0;
    bool inside = false;
    int from = 0;
    while (pa < 2 * a.size() || pb < 2 * b.size()) {
        int h = std::min(edge(a, pa), edge(b, pb));
        while (edge(a, pa) == h) pa++;
        while (edge(b, pb) == h) pb++;
        bool now = (table >> ((pa & 1) | (pb & 1) << 1)) & 1;
        if (now && !inside) from = h;
        if (!now && inside) out.push_back({static_cast<int16_t>(from), static_cast<int16_t>(h)});
        inside = now;
    }
}

// Sets bounds, and drops the bands of a region that turned out to be one rectangle or none.
void settle(toolbox_region& r) {
    if (r.bands.empty()) return;
    Rect b{INT16_MAX, r.bands.front().top, INT16_MIN, r.bands.back().bottom};
    for (const region_band& band : r.bands) {
        b.left = std::min(b.left, r.spans[band.first].left);
        b.right = std::max(b.right, r.spans[band.first + band.count - 1].right);
    }
    r.bounds = b;
    if (r.bands.size() == 1 && r.bands[0].count == 1) {
        r.bands.clear();
        r.spans.clear();
    }
}

// Where the sweep stands in one region: the band at or below row v.
struct sweep {
    const band_view& view;
    size_t at = 0;

    std::span<const region_span> row(int v) {
        while (at < view.bands.size() && view.bands[at].bottom <= v) at++;
        if (at == view.bands.size() || view.bands[at].top > v) return {};
        return view.of(view.bands[at]);
    }
    // First row below v where this region's bands change.
    int next(int v) const {
        if (at == view.bands.size()) return INT32_MAX;
        return view.bands[at].top > v ? view.bands[at].top : view.bands[at].bottom;
    }
};

bool covers(const Rect& outer, const Rect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

} // namespace

toolbox_region region_of(const Rect& r) {
    toolbox_region out;
    if (!EmptyRect(&r)) out.bounds = r;
    return out;
}

toolbox_region region_combine(const toolbox_region& a, const toolbox_region& b, region_op op) {
    if (op == region_op::sect && a.rectangular() && b.rectangular()) {
        toolbox_region out;
        SectRect(&a.bounds, &b.bounds, &out.bounds);
        return out;
    }
    if (op == region_op::join) { // the common case of a growing union, without a sweep
        if (b.empty() || (a.rectangular() && !a.empty() && covers(a.bounds, b.bounds))) return a;
        if (a.empty() || (b.rectangular() && covers(b.bounds, a.bounds))) return b;
    }
    toolbox_region out;
    band_view va(a), vb(b);
    sweep sa{va}, sb{vb};
    int v = INT16_MIN;
    while (v <= INT16_MAX) {
        auto ra = sa.row(v), rb = sb.row(v);
        int below = std::min(sa.next(v), sb.next(v));
        if (below == INT32_MAX) break;
        size_t first = out.spans.size();
        combine_spans(ra, rb, static_cast<unsigned>(op), out.spans);
        close_band(out, static_cast<int16_t>(v), static_cast<int16_t>(below), first);
        v = below;
    }
    settle(out);
    return out;
}

RgnHandle NewRgn() {
    return new toolbox_region;
}
void DisposeRgn(RgnHandle rgn) {
    delete rgn;
}
void SetEmptyRgn(RgnHandle rgn) {
    *rgn = {};
}
void RectRgn(RgnHandle rgn, const Rect* r) {
    *rgn = region_of(*r);
}

void SetRectRgn(RgnHandle rgn, int left, int top, int right, int bottom) {
    Rect r;
    SetRect(&r, left, top, right, bottom);
    RectRgn(rgn, &r);
}

void CopyRgn(RgnHandle src, RgnHandle dst) {
    if (src != dst) *dst = *src;
}

void UnionRgn(RgnHandle a, RgnHandle b, RgnHandle dst) {
    *dst = region_combine(*a, *b, region_op::join);
}
void SectRgn(RgnHandle a, RgnHandle b, RgnHandle dst) {
    *dst = region_combine(*a, *b, region_op::sect);
}
void DiffRgn(RgnHandle a, RgnHandle b, RgnHandle dst) {
    *dst = region_combine(*a, *b, region_op::diff);
}
void XorRgn(RgnHandle a, RgnHandle b, RgnHandle dst) {
    *dst = region_combine(*a, *b, region_op::exclusive);
}

void OffsetRgn(RgnHandle rgn, int dh, int dv) {
    // What would leave the 16 bits is cut away first, so that the rest moves whole.
    auto low = [](int d) { return INT16_MIN - std::min(std::max(d, -0x10000), 0); };
    auto high = [](int d) { return INT16_MAX - std::max(std::min(d, 0x10000), 0); };
    Rect keep;
    SetRect(&keep, low(dh), low(dv), high(dh), high(dv));
    toolbox_region moved = region_combine(*rgn, region_of(keep), region_op::sect);
    for (region_band& b : moved.bands) b = {pin16(b.top + dv), pin16(b.bottom + dv), b.first, b.count};
    for (region_span& s : moved.spans) s = {pin16(s.left + dh), pin16(s.right + dh)};
    if (!moved.empty()) OffsetRect(&moved.bounds, dh, dv);
    *rgn = std::move(moved);
}

bool PtInRgn(Point pt, RgnHandle rgn) {
    if (!PtInRect(pt, &rgn->bounds)) return false;
    if (rgn->rectangular()) return true;
    for (const region_band& b : rgn->bands) {
        if (pt.v < b.top || pt.v >= b.bottom) continue;
        for (uint32_t i = b.first; i < b.first + b.count; i++) {
            if (pt.h >= rgn->spans[i].left && pt.h < rgn->spans[i].right) return true;
        }
    }
    return false;
}

bool RectInRgn(const Rect* r, RgnHandle rgn) {
    return !region_combine(*rgn, region_of(*r), region_op::sect).empty();
}

bool EmptyRgn(RgnHandle rgn) {
    return rgn->empty();
}

bool EqualRgn(RgnHandle a, RgnHandle b) {
    return EqualRect(&a->bounds, &b->bounds) && a->bands == b->bands && a->spans == b->spans;
}

Rect* GetRegionBounds(RgnHandle rgn, Rect* r) {
    *r = rgn->bounds;
    return r;
}
