// view/geometry.cpp: the mapping between parameter values and window pixels.
// Layer: view.
// Called by all drawing, by the hit tests and by the mouse.
#include "view/geometry.h"

#include <algorithm>

#include "view/draw.h"

std::uint8_t sharp = 0;

namespace {

// How far below the top of the vertical range's content the data area may end: the range and half a bar under it.
constexpr int DATA_FOOT = 68;
// Content y of the vertical range's upper end.
constexpr int CONTENT_TOP = 64;
// A black key is told by its number scaled with the zoom; 4 units per 8 pixels is no scaling.
constexpr std::int64_t SHARP_ZOOM = 4;

const param_record& vertical(const brisolan* x) {
    return x->params[static_cast<std::size_t>(x->yparam)];
}

std::int32_t held32(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
}

std::int32_t pixels(std::int32_t value, std::int32_t zoom) {
    const std::int64_t exact = std::int64_t{value} * UNIT / brisolan_factor(zoom);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(exact, -FAR_AWAY, FAR_AWAY));
}

std::int32_t units(std::int64_t pixel_count, std::int32_t zoom) {
    return held32(pixel_count * brisolan_factor(zoom) >> 3);
}

} // namespace

std::int16_t brisolan_dataheight(std::int32_t min, std::int32_t max, std::int32_t yzoom) {
    const std::int64_t range = std::int64_t{max} - min + 1;
    return static_cast<std::int16_t>(range * UNIT / brisolan_factor(yzoom));
}

std::int16_t brisolan_contentbottom(std::int16_t height) {
    return static_cast<std::int16_t>(height + CONTENT_TOP);
}

void brisolan_dataarea(std::int16_t height, int window_width, int window_height, Rect* r) {
    const int bottom = std::min(height + DATA_FOOT, window_height - BOTTOM_MARGIN);
    SetRect(r, DATA_LEFT, DATA_TOP, window_width - SCROLLBAR, bottom);
}

// Kept: at other zooms than 4 the key number is scaled and black keys are marked that are none; and 0 counts as one.
bool brisolan_isblackkey(std::int32_t value, std::int32_t yzoom) {
    const int k = static_cast<std::int16_t>(std::int64_t{value} * SHARP_ZOOM / brisolan_factor(yzoom));
    return (7 * k + 1) / 12 == (7 * k - 6) / 12;
}

std::int16_t YDATAHEIGHT(const brisolan* x) {
    const param_record& p = vertical(x);
    return brisolan_dataheight(p.min, p.max, x->yzoom);
}

int YSIZE(const brisolan* x) {
    return UNIT / brisolan_factor(x->yzoom);
}

int YHEIGHT(const brisolan* x) {
    return YSIZE(x);
}

// Kept: the range's minimum enters through the height alone, the value is not offset by it, so that this is the exact
// inverse of YVAL for ranges that begin at 0.
std::int16_t YLOC(const brisolan* x, std::int32_t value) {
    if (x->show_sharps) sharp = brisolan_isblackkey(value, x->yzoom) ? 1 : 0;
    const std::int64_t above = std::int64_t{value} * UNIT / brisolan_factor(x->yzoom);
    return brisolan_contentrow(brisolan_contentbottom(YDATAHEIGHT(x)), above);
}

std::int32_t YVAL(const brisolan* x, std::int32_t y) {
    return units(std::int64_t{YDATAHEIGHT(x)} - y + CONTENT_TOP, x->yzoom);
}

void brisolan_getdatarect(const brisolan* x, Rect* r) {
    brisolan_dataarea(YDATAHEIGHT(x), x->window->width, x->window->height, r);
}

std::int32_t brisolan_hpixels(const brisolan* x) {
    return x->window->hscroll_value * SCROLL_STEP;
}

std::int32_t brisolan_timetoh(const brisolan* x, std::int32_t time) {
    return pixels(time, x->xzoom) - brisolan_hpixels(x) + DATA_LEFT;
}

std::int32_t brisolan_htotime(const brisolan* x, std::int32_t h) {
    return units(std::int64_t{brisolan_hpixels(x)} + h - DATA_LEFT, x->xzoom);
}

std::int32_t brisolan_valuetov(const brisolan* x, std::int32_t value) {
    return YLOC(x, value) - x->window->vscroll_value;
}

std::int32_t brisolan_vtovalue(const brisolan* x, std::int32_t v) {
    return YVAL(x, v + x->window->vscroll_value);
}

std::int32_t brisolan_lengthtopixels(const brisolan* x, std::int32_t value) {
    return pixels(value, x->lenzoom);
}

std::int32_t brisolan_barlength(const brisolan* x, const event* e) {
    return std::max(brisolan_lengthtopixels(x, event_param(*e, x->lenparam)), LEAST_BAR);
}

std::int32_t brisolan_pixelstolength(const brisolan* x, std::int32_t pixel_count) {
    return units(pixel_count, x->lenzoom);
}
