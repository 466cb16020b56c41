// view/zoom.cpp: the zoom factors, the zoom box and the magnifier's click.
// Layer: view.
// Called by the window, and by the mouse with what it hits.
#include "view/zoom.h"

#include <algorithm>
#include <cmath>

#include "view/draw.h"
#include "view/geometry.h"
#include "view/scroll.h"
#include "view/window.h"

namespace {

constexpr double HORIZONTAL_STEP = 2.0;
constexpr double VERTICAL_STEP = 1.5;
constexpr double ROUNDING = 0.5;
constexpr double BEYOND_31_BITS = 2147483648.0;

constexpr int SEGMENT = 15; // pixels of one segment of the zoom box
constexpr int SEGMENTS = 4;

// The press on the zoom box that runs: one for the whole program, since one button is held at a time. Written by the
// press and its drag, read by the drag; main level.
Rect g_btn{};
std::int16_t g_inside = 0;
std::int16_t g_which = 0;

// Multiplies a factor; one that would leave 31 bits when rounded stays as it is.
void step(double* exact, std::int32_t* rounded, double by) {
    const double next = *exact * by;
    if (std::abs(next) + ROUNDING >= BEYOND_31_BITS) return;
    *exact = next;
    *rounded = static_cast<std::int32_t>(next + ROUNDING);
}

void length_follows(brisolan* x) {
    if (x->lenparam == PARAM_DUR) x->lenzoom = x->xzoom;
}

Rect segment_rect(const brisolan* x, int segment) {
    Rect r;
    const int height = x->window->height;
    SetRect(&r, segment * SEGMENT, height - SEGMENT, (segment + 1) * SEGMENT, height);
    return r;
}

// The steps that a magnifier click makes; false when it makes none.
bool magnify(brisolan* x, bool out) {
    bool stepped = false;
    if (out || x->xzoom > 1) {
        out ? brisolan_xzoomout(x) : brisolan_xzoomin(x);
        stepped = true;
    }
    if (x->magnify_y && (out || x->yzoom > 1)) {
        out ? brisolan_yzoomout(x) : brisolan_yzoomin(x);
        stepped = true;
    }
    return stepped;
}

// Kept: the way back to pixels is by the length's factor, so the Time under the pointer stays in place only while Dur is
// the length and both factors are equal.
std::int16_t horizontal_scroll_for(const brisolan* x, int h, std::int32_t time_before) {
    const std::int64_t moved = std::int64_t{brisolan_htotime(x, h)} - time_before;
    const std::int64_t p = brisolan_hpixels(x) - moved * UNIT / brisolan_factor(x->lenzoom);
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(p >> 4, 0, INT16_MAX));
}

// Kept: what the value under the pointer moved up by is subtracted, although content moves up with a growing scroll; the
// value leaves the pointer to the other side.
std::int16_t vertical_scroll_for(const brisolan* x, int v, std::int32_t value_before) {
    const std::int64_t moved = std::int64_t{brisolan_vtovalue(x, v)} - value_before;
    const std::int64_t scroll = x->window->vscroll_value - moved * UNIT / brisolan_factor(x->yzoom);
    return std::max<std::int16_t>(static_cast<std::int16_t>(scroll), 0);
}

} // namespace

void brisolan_xzoomout(brisolan* x) {
    step(&x->xzoom_exact, &x->xzoom, HORIZONTAL_STEP);
    length_follows(x);
}

void brisolan_xzoomin(brisolan* x) {
    step(&x->xzoom_exact, &x->xzoom, 1 / HORIZONTAL_STEP);
    length_follows(x);
}

void brisolan_yzoomout(brisolan* x) {
    step(&x->yzoom_exact, &x->yzoom, VERTICAL_STEP);
}

void brisolan_yzoomin(brisolan* x) {
    const double next = x->yzoom_exact / VERTICAL_STEP;
    x->yzoom_exact = next;
    x->yzoom = static_cast<std::int32_t>(next + ROUNDING);
}

void brisolan_dozoom(brisolan* x, int segment) {
    if (segment == ZOOM_X_OUT) brisolan_xzoomout(x);
    if (segment == ZOOM_X_IN && x->xzoom >= 2) brisolan_xzoomin(x);
    if (segment == ZOOM_Y_OUT) brisolan_yzoomout(x);
    if (segment == ZOOM_Y_IN && x->yzoom >= 2) brisolan_yzoomin(x);
    brisolan_remax(x);
    brisolan_chkscroll(x);
    brisolan_invalcontents(x);
}

int brisolan_zoomclick(brisolan* x, Point where) {
    Rect box;
    SetRect(&box, 0, x->window->height - SEGMENT, SEGMENTS * SEGMENT, x->window->height);
    if (!PtInRect(where, &box)) return 0;
    g_which = static_cast<std::int16_t>(where.h / SEGMENT);
    g_btn = segment_rect(x, g_which);
    g_inside = 1;
    const RgnHandle saved = t_cliprect(g_btn.left, g_btn.top, g_btn.right, g_btn.bottom);
    t_darkenrect(g_btn);
    t_restoreclip(saved);
    host_window_drag<brisolan_zoomdrag>(x->window);
    return 1;
}

void brisolan_zoomdrag(brisolan* x, Point where, bool stilldown) {
    if (!stilldown) {
        if (!g_inside) return;
        g_inside = 0;
        brisolan_drawzoom(x);
        brisolan_dozoom(x, g_which);
        return;
    }
    const bool inside = PtInRect(where, &g_btn);
    if (inside == (g_inside != 0)) return;
    g_inside = inside ? 1 : 0;
    const RgnHandle saved = t_cliprect(g_btn.left, g_btn.top, g_btn.right, g_btn.bottom);
    if (inside)
        t_darkenrect(g_btn);
    else
        brisolan_drawpic(x, PIC_ZOOM, -1, x->window->height - SEGMENT);
    t_restoreclip(saved);
}

void brisolan_drawzoom(brisolan* x) {
    brisolan_unclip(x);
    brisolan_drawpic(x, PIC_ZOOM, -1, x->window->height - SEGMENT);
}

void brisolan_magmouse(brisolan* x, Point where, int modifiers) {
    const std::int32_t time = brisolan_htotime(x, where.h);
    const std::int32_t value = brisolan_vtovalue(x, where.v);
    if (!magnify(x, (modifiers & optionKey) != 0)) return;
    const std::int16_t h = horizontal_scroll_for(x, where.h, time);
    const std::int16_t v =
        x->magnify_y ? vertical_scroll_for(x, where.v, value) : x->window->vscroll_value.get();
    brisolan_remax(x);
    brisolan_chkscroll(x);
    host_window_setscrollval(x->window, h, v);
    brisolan_scroll(x);
}
