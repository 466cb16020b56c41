// view/bars.h: drawing one event's bar.
// Layer: view, internal to the data area.
// Called by the drawing of events, one by one and all at once.
#pragma once

#include <vector>

#include "view/cover.h"
#include "view/frame.h"

// Sets the text state that bars are drawn with. Before the first bar of a pass. [main]
void brisolan_beginbars();
// Draws a measured bar with its label and mark and leaves the foreground colour. [main]
void brisolan_drawbar(const view_frame& f, const bar_look& look);

// Draws measured bars in their order, later ones over earlier ones; those of which nothing would be left to see are left
// out. The clip must be the data area. [main]
void brisolan_drawbars(const view_frame& f, const std::vector<bar_look>& looks, cover_map* cover);

struct bar_bounds {
    std::int32_t left, right;
    int top, bottom;
};
// Around every pixel that a bar with label and mark may set, text rising and falling as told. [main]
bar_bounds brisolan_barbounds(const view_frame& f, const bar_look& look, int ascent, int descent);
// Where a bar sets every pixel, or every one of its top and bottom row when it is an outline. [main]
bar_bounds brisolan_barcover(const view_frame& f, const bar_look& look);

// No bar, label or mark paints a pixel further than this above or below its middle.
constexpr int BAR_REACH = 16;
