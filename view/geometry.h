// view/geometry.h: the mapping between parameter values and window pixels.
// Layer: view; plain arithmetic on the instance's zoom, scroll and parameter bounds.
// Called by all drawing, by the hit tests and by the mouse.
//
// Time runs right: DATA_LEFT is the window's pixel of Time 0 without scroll, 8 pixels stand for `xzoom` milliseconds; the
// horizontal scroll counts steps of 16 pixels. The vertical parameter runs up, 8 pixels for `yzoom` units; the vertical
// scroll counts pixels. Divisions truncate toward zero. A factor below 1 counts as 1 wherever it divides or multiplies.
// Positions are exact in 32 bits: what a product would carry beyond them is held at FAR_AWAY, which is outside of any view.
#pragma once

#include <cstdint>

#include "core/instance.h"
#include "host/toolbox.h"

constexpr int UNIT = 8;         // pixels for one zoom unit
constexpr int SCROLL_STEP = 16; // pixels for one step of the horizontal scroll
constexpr int DATA_LEFT = 48;   // the data area's left and top
constexpr int DATA_TOP = 62;
constexpr int LEAST_BAR = 4; // a bar is never shorter, in pixels
constexpr std::int32_t FAR_AWAY = 1 << 29;

// Whether the value last given to YLOC falls on a black key; written by YLOC while `show_sharps` is set, and cleared by
// brisolan_drawsharps. Process-wide, meaningful right after the call. Main level.
extern std::uint8_t sharp;

// Height in pixels of the vertical parameter's range, in 16 bits. [main]
std::int16_t YDATAHEIGHT(const brisolan* x);
// Half the height of a bar in pixels: 8 / yzoom. Two names for the same. [main]
int YSIZE(const brisolan* x);
int YHEIGHT(const brisolan* x);
// Content y of a value of the vertical parameter, in 16 bits; the scroll is not subtracted. Writes `sharp` while
// `show_sharps` is set. [main]
std::int16_t YLOC(const brisolan* x, std::int32_t value);
// The vertical parameter's value at content y. [main]
std::int32_t YVAL(const brisolan* x, std::int32_t y);

// The data area in the window: what events are clipped to. [main]
void brisolan_getdatarect(const brisolan* x, Rect* r);

// The horizontal scroll in pixels. [main]
std::int32_t brisolan_hpixels(const brisolan* x);
// Window x of a Time; the Time under window x. [main]
std::int32_t brisolan_timetoh(const brisolan* x, std::int32_t time);
std::int32_t brisolan_htotime(const brisolan* x, std::int32_t h);
// Window y of a value of the vertical parameter, writing `sharp` as YLOC does; the value under window y. [main]
std::int32_t brisolan_valuetov(const brisolan* x, std::int32_t value);
std::int32_t brisolan_vtovalue(const brisolan* x, std::int32_t v);
// Pixels of a value of the length parameter; of an event's length, at least LEAST_BAR. [main]
std::int32_t brisolan_lengthtopixels(const brisolan* x, std::int32_t value);
std::int32_t brisolan_barlength(const brisolan* x, const event* e);
// Units of the length parameter in a number of pixels, shifted: (pixels * lenzoom) >> 3. [main]
std::int32_t brisolan_pixelstolength(const brisolan* x, std::int32_t pixels);

// The arithmetic behind these, of bounds and sizes: YDATAHEIGHT of a range; content y of value 0 for a data height, and
// that of a value so many pixels above it, which keeps 16 bits; the data area of a window; whether a value falls on a
// black key. [main]
std::int16_t brisolan_dataheight(std::int32_t min, std::int32_t max, std::int32_t yzoom);
std::int16_t brisolan_contentbottom(std::int16_t height);
inline std::int16_t brisolan_contentrow(std::int16_t bottom, std::int64_t above) {
    return static_cast<std::int16_t>(bottom - static_cast<std::int16_t>(above));
}
void brisolan_dataarea(std::int16_t height, int window_width, int window_height, Rect* r);
bool brisolan_isblackkey(std::int32_t value, std::int32_t yzoom);

// A zoom factor as it divides and multiplies: 1 when it is below. [both]
constexpr std::int32_t brisolan_factor(std::int32_t zoom) {
    return zoom < 1 ? 1 : zoom;
}

// Whether events of the track (from 1) are shown; a track without a button always is. [main]
inline bool brisolan_trackisshown(const brisolan* x, std::int32_t track) {
    return track < 1 || track > x->ntracks || x->trackshown[track - 1] != 0;
}
