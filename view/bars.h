// view/bars.h: drawing bars, one or many.
// Layer: view, internal to the data area.
// Called by the drawing of events.
#pragma once

#include <vector>

#include "view/cover.h"
#include "view/frame.h"

// Sets the text state that bars are drawn with. Before the first bar of a pass. [main]
void brisolan_beginbars();
// Draws a measured bar with its label and mark and leaves the foreground colour. [main]
void brisolan_drawbar(const view_frame& f, const bar_look& look);
// Draws measured bars in their order, later ones over earlier ones. What later ones draw over is left out: with many bars
// in sight most of them show little more than their heads. The clip must be the data area. [main]
void brisolan_drawbars(const view_frame& f, const std::vector<const bar_look*>& looks, cover_map* cover);

// No bar, label or mark sets a pixel further than this above or below its middle.
constexpr int BAR_REACH = 16;
