// view/frame.h: everything that places the bars of an instance's data area, in one record.
// Layer: view, internal to the data area; leans on geometry.
// Called by whatever draws, erases or finds many events: the record is worked out once for all of them.
#pragma once

#include <algorithm>
#include <cstdint>

#include "core/instance.h"
#include "host/toolbox.h"
#include "view/format.h"
#include "view/geometry.h"

// As the instance's fields stand. Two equal ones place every event alike.
struct frame_settings {
    std::int32_t xzoom, yzoom, lenzoom;
    std::int32_t yparam, lenparam, labelparam, colorparam;
    std::int32_t ymin, ymax, yinterval;
    std::int16_t width, height, hscroll, vscroll;
    std::uint8_t labelnotes, show_sharps;
    bool operator==(const frame_settings&) const = default;
};

struct view_frame {
    frame_settings set{};
    // What follows from them.
    std::int64_t xzoom = 1, yzoom = 1, lenzoom = 1;
    std::int32_t left = 0;                // window x of Time 0
    std::int32_t content_bottom = 0;      // content y of value 0
    std::int32_t half = 0;                // half a bar's height
    bool labels = false;                  // bars carry labels at this zoom
    Rect data{};                          // the data area
    std::int64_t time_behind = INT64_MAX; // events from this Time on begin right of the window
    std::int64_t time_before =
        INT64_MIN; // events before this Time begin further left of it than any label is long
};

// The settings as they stand. [main]
inline frame_settings brisolan_framesettings(const brisolan* x) {
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
// The frame that they give. [main]
view_frame brisolan_frame(const frame_settings& settings);

// Where one event's bar lies in the window, and the values that place it there.
struct bar_look {
    std::int32_t time, value, extent, label, track; // of the event
    std::int32_t left, length;                      // of the bar; its length is at least 4
    std::int32_t y;                                 // of its middle
    std::int8_t half;                               // half its height, one more when selected
    std::uint8_t label_room; // what its label takes of its length, margins too; 0: none
    bool selected, black_key;
    // Right of the bar with its label; how wide the label's text is.
    std::int32_t right() const { return left + std::max<std::int32_t>(length, label_room); }
    std::int32_t label_width() const { return label_room ? label_room - LABEL_MARGIN : 0; }
    bool operator==(const bar_look&) const = default;
};

// Whether the event cannot show: told by comparing more than by dividing, for walks over many that do not. [main]
inline bool brisolan_isfaraway(const view_frame& f, const event& e) {
    const std::int64_t time = e.time;
    if (time >= f.time_behind) return true;
    if (time >= f.time_before) return false;
    // Pixels from the bar's left to the data area; a length that many pixels long reaches it.
    const std::int64_t gap = f.data.left - f.left - time * UNIT / f.xzoom;
    return event_param(e, f.set.lenparam) * std::int64_t{UNIT} < gap * f.lenzoom;
}

// Makes the bar that of a selected event, or of another. [main]
inline void brisolan_setselected(const view_frame& f, bar_look* look, bool selected) {
    look->selected = selected;
    look->half = static_cast<std::int8_t>(f.half + (selected ? 1 : 0));
}
// value * UNIT / zoom, truncated toward zero. Divided as floating numbers, which takes a third of the time: of 35 bits by 31
// the rounded quotient never reaches a whole number that the exact one does not. [main]
inline std::int64_t brisolan_quotient(std::int32_t value, std::int64_t zoom) {
    return static_cast<std::int64_t>(static_cast<double>(std::int64_t{value} * UNIT) /
                                     static_cast<double>(zoom));
}
// Pixels of a value, held at what is out of sight anyway. [main]
inline std::int32_t brisolan_pixels(std::int32_t value, std::int64_t zoom) {
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(brisolan_quotient(value, zoom), -FAR_AWAY, FAR_AWAY));
}
// The values of an event that place its bar; where that lies is left for brisolan_placelook. [main]
inline bar_look brisolan_valuesof(const view_frame& f, const event& e) {
    bar_look look;
    look.time = e.time;
    look.value = event_param(e, f.set.yparam);
    look.extent = event_param(e, f.set.lenparam);
    look.label = f.set.labelparam < 0 ? 0 : event_param(e, f.set.labelparam);
    look.track = e.track;
    look.selected = e.selected != 0;
    return look;
}
// Places the bar by its values; the label is left for brisolan_measure. [main]
inline void brisolan_placelook(const view_frame& f, bar_look* placed) {
    bar_look& look = *placed;
    brisolan_setselected(f, &look, look.selected);
    look.left = f.left + brisolan_pixels(look.time, f.xzoom);
    look.length = std::max(brisolan_pixels(look.extent, f.lenzoom), LEAST_BAR);
    look.label_room = 0;
    const auto above = static_cast<std::int16_t>(brisolan_quotient(look.value, f.yzoom));
    look.y = static_cast<std::int16_t>(f.content_bottom - above) - f.set.vscroll;
    look.black_key = f.set.show_sharps && brisolan_isblackkey(look.value, f.set.yzoom);
}
// Both. [main]
inline bar_look brisolan_place(const view_frame& f, const event& e) {
    bar_look look = brisolan_valuesof(f, e);
    brisolan_placelook(f, &look);
    return look;
}
// Measures the label. The window's port must be current at the first call. [main]
void brisolan_measure(const view_frame& f, bar_look* look);
// Whether the event still has the values that placed the bar. [main]
inline bool brisolan_sameplace(const view_frame& f, const bar_look& look, const event& e) {
    return look.time == e.time && look.value == event_param(e, f.set.yparam) &&
           look.extent == event_param(e, f.set.lenparam) &&
           look.label == (f.set.labelparam < 0 ? 0 : event_param(e, f.set.labelparam)) &&
           look.track == e.track && look.selected == (e.selected != 0);
}

// Whether any of the bar may show: not all of it left of the data area, nor right of the window. [main]
inline bool brisolan_inspan(const view_frame& f, const bar_look& look) {
    return look.left + look.length >= f.data.left && look.left <= f.set.width;
}

// A part of the window; open intervals: what only touches from outside does not overlap.
struct bar_box {
    std::int32_t left, right;
    std::int16_t top, bottom;
    bool operator==(const bar_box&) const = default;
    bool overlaps(const bar_box& o) const {
        return top < o.bottom && o.top < bottom && left < o.right && o.left < right;
    }
};

// How far bars, labels and marks are taken to reach when it is told who was touched.
constexpr int LABEL_REACH = 6;
constexpr int SHARP_WIDTH = 7;
constexpr int SHARP_REACH_ABOVE = 2;
constexpr int SHARP_REACH_BELOW = 6;

// A row of a box, held in 16 bits. [main]
inline std::int16_t brisolan_boxrow(std::int32_t v) {
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(v, INT16_MIN, INT16_MAX));
}

// What erasing the event takes off the screen: the bar with its label and its "#" mark. Measured looks only. [main]
inline bar_box brisolan_erasedbox(const bar_look& look) {
    return {look.left - (look.black_key ? SHARP_WIDTH : 0), look.right(), brisolan_boxrow(look.y - look.half),
            brisolan_boxrow(look.y + look.half)};
}
// What an erased box must overlap for the event to be drawn again. Measured looks only. [main]
inline bar_box brisolan_touchedbox(const view_frame& f, const bar_look& look) {
    if (f.labels)
        return {look.left, look.right(), brisolan_boxrow(look.y - LABEL_REACH),
                brisolan_boxrow(look.y + LABEL_REACH)};
    if (look.black_key)
        return {look.left, look.right(), brisolan_boxrow(look.y - SHARP_REACH_ABOVE),
                brisolan_boxrow(look.y + SHARP_REACH_BELOW)};
    return {look.left, look.right(), brisolan_boxrow(look.y - look.half),
            brisolan_boxrow(look.y + look.half)};
}
