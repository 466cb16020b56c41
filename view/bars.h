// view/bars.h: drawing one event's bar.
// Layer: view, internal to the data area.
// Called by the drawing of events, one by one and all at once.
#pragma once

#include "view/frame.h"

// Sets the text state that bars are drawn with. Before the first bar of a pass. [main]
void brisolan_beginbars();
// Draws a measured bar with its label and mark and leaves the foreground colour. [main]
void brisolan_drawbar(const view_frame& f, const bar_look& look);

// No bar, label or mark paints a pixel further than this above or below its middle.
constexpr int BAR_REACH = 16;
