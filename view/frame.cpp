// view/frame.cpp: everything that places the bars of an instance's data area, in one record.
// Layer: view, internal to the data area.
// Called by whatever draws, erases or finds many events.
#include "view/frame.h"

#include <algorithm>

#include "view/draw.h"
#include "view/format.h"
#include "view/geometry.h"

namespace {

constexpr int LEAST_LABEL_HALF = 2; // bars of less half height carry no label
constexpr int LABEL_REACH = 6;
constexpr int SHARP_WIDTH = 7;
constexpr int SHARP_REACH_ABOVE = 2;
constexpr int SHARP_REACH_BELOW = 6;

std::int16_t row(std::int32_t v) {
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(v, INT16_MIN, INT16_MAX));
}

std::int32_t pixels(std::int32_t value, std::int64_t zoom) {
    const std::int64_t exact = std::int64_t{value} * UNIT / zoom;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(exact, -FAR_AWAY, FAR_AWAY));
}

} // namespace

frame_settings brisolan_framesettings(const brisolan* x) {
    const param_record& y = x->params[static_cast<std::size_t>(x->yparam)];
    const auto label = static_cast<std::size_t>(std::max(x->labelparam, 0));
    const host_window* w = x->window;
    return {x->xzoom,
            x->yzoom,
            x->lenzoom,
            x->yparam,
            x->lenparam,
            x->labelparam,
            x->colorparam,
            y.min,
            y.max,
            y.interval,
            w->width,
            w->height,
            w->hscroll_value,
            w->vscroll_value,
            x->params[label].notenames,
            x->show_sharps};
}

view_frame brisolan_frame(const frame_settings& s) {
    view_frame f;
    f.set = s;
    f.xzoom = brisolan_factor(s.xzoom);
    f.yzoom = brisolan_factor(s.yzoom);
    f.lenzoom = brisolan_factor(s.lenzoom);
    f.left = DATA_LEFT - s.hscroll * SCROLL_STEP;
    const std::int16_t height = brisolan_dataheight(s.ymin, s.ymax, s.yzoom);
    f.content_bottom = brisolan_contentbottom(height);
    f.half = static_cast<std::int32_t>(UNIT / f.yzoom);
    f.labels = s.labelparam >= 0 && f.half >= LEAST_LABEL_HALF;
    brisolan_dataarea(height, s.width, s.height, &f.data);
    const std::int64_t room = std::int64_t{s.width} - f.left; // pixels from Time 0 to the window's right edge
    if (room >= 0) f.time_behind = ((room + 1) * f.xzoom + UNIT - 1) / UNIT;
    return f;
}

bar_look brisolan_place(const view_frame& f, const event& e) {
    bar_look look;
    look.time = e.time;
    look.value = event_param(e, f.set.yparam);
    look.extent = event_param(e, f.set.lenparam);
    look.label = f.set.labelparam < 0 ? 0 : event_param(e, f.set.labelparam);
    look.track = e.track;
    brisolan_setselected(f, &look, e.selected != 0);
    look.left = f.left + pixels(look.time, f.xzoom);
    look.length = std::max(pixels(look.extent, f.lenzoom), LEAST_BAR);
    look.right = look.left + look.length;
    look.label_width = 0;
    const auto above = static_cast<std::int16_t>(std::int64_t{look.value} * UNIT / f.yzoom);
    look.y = static_cast<std::int16_t>(f.content_bottom - above) - f.set.vscroll;
    look.black_key = f.set.show_sharps && brisolan_isblackkey(look.value, f.set.yzoom);
    return look;
}

void brisolan_measure(const view_frame& f, bar_look* look) {
    if (f.set.labelparam < 0) return;
    look->label_width = brisolan_labelwidth(f.set.labelnotes != 0, look->label);
    look->right = look->left + std::max(look->length, look->label_width + LABEL_MARGIN);
}

bool brisolan_sameplace(const view_frame& f, const bar_look& look, const event& e) {
    return look.time == e.time && look.value == event_param(e, f.set.yparam) &&
           look.extent == event_param(e, f.set.lenparam) &&
           look.label == (f.set.labelparam < 0 ? 0 : event_param(e, f.set.labelparam)) &&
           look.track == e.track && look.selected == (e.selected != 0);
}

bar_box brisolan_erasedbox(const bar_look& look) {
    return {look.left - (look.black_key ? SHARP_WIDTH : 0), look.right, row(look.y - look.half),
            row(look.y + look.half)};
}

bar_box brisolan_touchedbox(const view_frame& f, const bar_look& look) {
    if (f.labels) return {look.left, look.right, row(look.y - LABEL_REACH), row(look.y + LABEL_REACH)};
    if (look.black_key)
        return {look.left, look.right, row(look.y - SHARP_REACH_ABOVE), row(look.y + SHARP_REACH_BELOW)};
    return {look.left, look.right, row(look.y - look.half), row(look.y + look.half)};
}
