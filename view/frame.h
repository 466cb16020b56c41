// view/frame.h: everything that places the bars of an instance's data area, in one record.
// Layer: view, internal to the data area; leans on geometry.
// Called by whatever draws, erases or finds many events: the record is worked out once for all of them.
#pragma once

#include <algorithm>
#include <cstdint>

#include "core/instance.h"
#include "host/toolbox.h"
#include "view/draw.h"
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
    std::int64_t xzoom = 1, lenzoom = 1;
    double time_scale = 1, value_scale = 1, extent_scale = 1; // pixels for a unit, of brisolan_scale
    std::int32_t left = 0;                                    // window x of Time 0
    std::int16_t content_bottom = 0;                          // content y of value 0
    std::int32_t half = 0;                                    // half a bar's height
    bool labels = false;                                      // bars carry labels at this zoom
    Rect data{};                                              // the data area
    std::int64_t time_behind = INT64_MAX; // events from this Time on begin right of the window
    // Events before this Time begin further left of it than any label is long.
    std::int64_t time_before = INT64_MIN;
    const std::uint8_t* widths = nullptr; // of common labels; null until the font was measured
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

// The palette index of a track's colour, its number counted from 0: downward for the first sixteen, then upward.
inline std::uint8_t brisolan_trackpalette(std::int32_t index) {
    constexpr int FIRST = 47;
    constexpr int LATER = 4;
    constexpr int HALF = 16;
    if (index < 0) return FIRST;
    return static_cast<std::uint8_t>(index < HALF ? FIRST - index : index % HALF + LATER);
}

// The values of an event that its bar shows.
struct bar_values {
    std::int32_t time, value, extent, label, track;
    bool selected;
};

// Where one event's bar lies in the window, and how it looks there. Two that are equal draw the same pixels. Kept small:
// with very many events, writing and reading it is much of what they cost.
struct bar_look {
    std::int32_t left, length; // of the bar; its length is at least 4
    std::int32_t y;            // of its middle
    std::int32_t label;        // the value that it is labelled with
    std::int8_t half;          // half its height, one more when selected
    std::uint8_t label_room;   // what its label takes of its length, margins too; 0: none
    std::uint8_t colour;       // palette index
    bool selected : 1, black_key : 1;
    // Right of the bar with its label; how wide the label's text is.
    std::int32_t right() const { return left + std::max<std::int32_t>(length, label_room); }
    std::int32_t label_width() const { return label_room ? label_room - LABEL_MARGIN : 0; }
    bool operator==(const bar_look&) const = default;
};
static_assert(sizeof(bar_look) == 20);

// Whether the event cannot show: told by comparing more than by dividing, for walks over many that do not. [main]
inline bool brisolan_isfaraway(const view_frame& f, const event& e) {
    const std::int64_t time = e.time;
    if (time >= f.time_behind) return true;
    if (time >= f.time_before) return false;
    // Pixels from the bar's left to the data area; a length that many pixels long reaches it.
    const std::int64_t gap = f.data.left - f.left - time * UNIT / f.xzoom;
    return event_param(e, f.set.lenparam) * std::int64_t{UNIT} < gap * f.lenzoom;
}

// UNIT / zoom, for brisolan_pixels.
inline double brisolan_scale(std::int64_t zoom) {
    // A little too much, so that a whole quotient is never rounded to below itself; of 35 bits by 31, no other one comes
    // near the next whole number.
    constexpr double UP = 1 + 0x1p-50;
    return UNIT / static_cast<double>(zoom) * UP;
}
// value * UNIT / zoom, truncated toward zero: multiplied with the scale of the zoom, in a fifth of a division's time. [main]
inline std::int64_t brisolan_quotient(std::int32_t value, double scale) {
    return static_cast<std::int64_t>(value * scale);
}
// Pixels of a value, held at what is out of sight anyway. [main]
inline std::int32_t brisolan_pixels(std::int32_t value, double scale) {
    return static_cast<std::int32_t>(std::clamp<double>(value * scale, -FAR_AWAY, FAR_AWAY));
}
// The values of an event that its bar shows; where that lies is left for brisolan_place. [main]
inline bar_values brisolan_valuesof(const view_frame& f, const event& e) {
    return {e.time,
            event_param(e, f.set.yparam),
            event_param(e, f.set.lenparam),
            f.set.labelparam < 0 ? 0 : event_param(e, f.set.labelparam),
            e.track,
            e.selected != 0};
}
// Places the bar; the label is left for brisolan_measure. Like what follows part of every long walk, where a call, and
// the look handed over through memory, would weigh as much as the placing. [main]
[[gnu::always_inline]] inline bar_look brisolan_place(const view_frame& f, const bar_values& values) {
    bar_look look;
    look.left = f.left + brisolan_pixels(values.time, f.time_scale);
    look.length = std::max(brisolan_pixels(values.extent, f.extent_scale), LEAST_BAR);
    look.y =
        brisolan_contentrow(f.content_bottom, brisolan_quotient(values.value, f.value_scale)) - f.set.vscroll;
    look.label = values.label;
    look.half = static_cast<std::int8_t>(f.half + (values.selected ? 1 : 0));
    look.label_room = 0;
    look.colour = f.set.colorparam == PARAM_TRACK ? brisolan_trackpalette(std::max(values.track, 0) - 1)
                                                  : std::uint8_t{COLOR_FOREGROUND};
    look.selected = values.selected;
    look.black_key = f.set.show_sharps && brisolan_isblackkey(values.value, f.set.yzoom);
    return look;
}
[[gnu::always_inline]] inline bar_look brisolan_place(const view_frame& f, const event& e) {
    return brisolan_place(f, brisolan_valuesof(f, e));
}
// Measures the label. The window's port must be current at the first call. [main]
[[gnu::always_inline]] inline void brisolan_measure(const view_frame& f, bar_look* look) {
    if (f.set.labelparam < 0) return;
    const bool common = f.widths && look->label >= 0 && look->label < COMMON_LABELS;
    const std::int32_t width =
        common ? f.widths[look->label] : brisolan_labelwidth(f.set.labelnotes != 0, look->label);
    look->label_room = static_cast<std::uint8_t>(width + LABEL_MARGIN);
}
// Places and measures. [main]
[[gnu::always_inline]] inline bar_look brisolan_look(const view_frame& f, const event& e) {
    bar_look look = brisolan_place(f, e);
    brisolan_measure(f, &look);
    return look;
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
    std::int32_t above = look.half;
    std::int32_t below = look.half;
    if (look.black_key) {
        above = SHARP_REACH_ABOVE;
        below = SHARP_REACH_BELOW;
    }
    if (f.labels) above = below = LABEL_REACH;
    return {look.left, look.right(), brisolan_boxrow(look.y - above), brisolan_boxrow(look.y + below)};
}
