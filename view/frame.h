// view/frame.h: everything that places the bars of an instance's data area, in one record.
// Layer: view, internal to the data area; leans on geometry.
// Called by whatever draws, erases or finds many events: the record is worked out once for all of them.
#pragma once

#include <cstdint>

#include "core/instance.h"
#include "host/toolbox.h"

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
};

// The settings as they stand; the frame that they give. [main]
frame_settings brisolan_framesettings(const brisolan* x);
view_frame brisolan_frame(const frame_settings& settings);

// Where one event's bar lies in the window, and the values that place it there.
struct bar_look {
    std::int32_t time, value, extent, label, track; // of the event
    std::int32_t left, length;                      // of the bar; its length is at least 4
    std::int32_t right;                             // of the bar with its label
    std::int32_t label_width;                       // of the label's text
    std::int32_t y;                                 // of its middle
    std::int16_t half;                              // half its height, one more when selected
    bool selected, black_key;
};

// Whether the event cannot show: told by comparing more than by dividing, for walks over many that do not. [main]
inline bool brisolan_isfaraway(const view_frame& f, const event& e) {
    constexpr std::int64_t WIDEST_LABEL = 256;
    const std::int64_t time = e.time;
    if (time >= f.time_behind) return true;
    // Pixels from the bar's left to the data area; a length that many pixels long reaches it.
    const std::int64_t gap = f.data.left - f.left - time * 8 / f.xzoom;
    return gap > WIDEST_LABEL && event_param(e, f.set.lenparam) * std::int64_t{8} < gap * f.lenzoom;
}

// The bar of an event in the frame; `right` and `label_width` are left for brisolan_measure. [main]
bar_look brisolan_place(const view_frame& f, const event& e);
// Measures the label. The window's port must be current at the first call. [main]
void brisolan_measure(const view_frame& f, bar_look* look);
// The same bar, selected or not. [main]
inline void brisolan_setselected(const view_frame& f, bar_look* look, bool selected) {
    look->selected = selected;
    look->half = static_cast<std::int16_t>(f.half + (selected ? 1 : 0));
}
// Whether the event still has the values that placed the bar. [main]
bool brisolan_sameplace(const view_frame& f, const bar_look& look, const event& e);

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

// What erasing the event takes off the screen: the bar with its label and its "#" mark. Measured looks only. [main]
bar_box brisolan_erasedbox(const bar_look& look);
// What an erased box must overlap for the event to be drawn again. Measured looks only. [main]
bar_box brisolan_touchedbox(const view_frame& f, const bar_look& look);
