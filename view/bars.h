// view/bars.h: one event as a bar: where it lies, what it covers, how it is drawn.
// Layer: view, internal to the data area.
// Called by the drawing of events, the erasing and the hit test.
#pragma once

#include <cstdint>

#include "core/instance.h"
#include "view/draw.h"

// Where an event's bar lies in the window, in pixels.
struct bar {
    std::int32_t left = 0;
    std::int32_t length = 0; // at least LEAST_BAR
    std::int32_t y = 0;      // of its middle
    std::int32_t half = 0;   // half its height, one more when the event is selected
    bool black_key = false;  // a "#" stands in front of it
};

// The bar of an event. [main]
bar brisolan_bar(const brisolan* x, const event* e);

// Whether bars carry labels at this zoom. [main]
bool brisolan_labelshows(const brisolan* x);

// Whether any of it may show between the data area's left and the window's right edge. [main]
inline bool brisolan_inspan(const brisolan* x, const bar& b) {
    return b.left + b.length >= 48 && b.left <= x->window->width;
}

// Draws the bar of e, which need not be in sight, with its label and mark. [main]
void brisolan_drawbar(brisolan* x, const event* e, const bar& b);

// What an erased rectangle must touch for the event to be marked: the reach above and below the middle, and the bar's
// width with its label. Each interval is open: touching from outside is not enough. [main]
struct bar_reach {
    std::int32_t left, right, top, bottom;
    bool touched_by(std::int32_t l, std::int32_t t, std::int32_t r, std::int32_t b) const {
        return top < b && t < bottom && r > left && l < right;
    }
};
bar_reach brisolan_reach(const brisolan* x, const event* e, const bar& b);
