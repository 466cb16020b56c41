// edit/mouse.h: mouse presses in the editor window: who takes them, and the presses on the tool palette and the graph.
// Layer: edit. Called by the host through "click".
#pragma once

#include "core/instance.h"

// "click": offers a press at a window point to the scroll bars, the legend, the zoom box, the tool palette, the track
// buttons and the data area, in this order, until one takes it. Nonzero when one did. [main]
int brisolan_click(brisolan* x, Point where, int modifiers);

// A press on the tool palette selects the tool: 1 when it was there, else 0. [main]
int brisolan_emclick(brisolan* x, Point where);

// A press in the data area goes to the tool that `editmode` and the modifiers choose: 1 when it was there, else 0. [main]
int brisolan_eventclick(brisolan* x, Point where, int modifiers);

// A press with the draw tool makes a new event there, selects it (alone unless shift is held) and begins the drag that
// gives it its length. Nothing when there is no memory. [main]
void brisolan_drawmouse(brisolan* x, int modifiers, Point where);
