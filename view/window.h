// view/window.h: the editor window's life, the queued redraw through which all drawing is requested, the tool palette.
// Layer: view. Called by the host's messages, and by whoever changes what the window shows.
#pragma once

#include <cstdint>

#include "core/instance.h"

// "open": shows the editor window, later. [both]
void brisolan_open(brisolan* x);
// "dblclick": shows the editor window, drawn anew. [main]
void brisolan_dblclick(brisolan* x);
// "wclose": unselects everything and hides the window, later. [both]
void brisolan_wclose(brisolan* x);
// What "wclose" defers to. [main]
void brisolan_dowclose(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv);

// "update": draws the whole content in the window's port, which must be current. [main]
void brisolan_update(brisolan* x);
// "wsize": after a resize everything is invalid, and the scroll bars fit the new size. [main]
void brisolan_wsize(brisolan* x);

// The queued redraw's routine: draws what the flags ask for, once. While the window is hidden they stay. [main]
void brisolan_qfn(brisolan* x);
// Clears the nine flags. [main]
void brisolan_clearqflags(brisolan* x);

// Tells the listeners of a named instance that the sequence has changed. [main]
void brisolan_changed(brisolan* x);
// Erases the content and lets the host have it drawn anew. [main]
void brisolan_invalcontents(brisolan* x);

// Selects a tool: 0 arrow, 1 magnifier, 2 tweak, 3 draw. Drawn by the queued redraw. [main]
void brisolan_editmode(brisolan* x, int tool);
// Shades the selected tool in the palette; the whole palette is drawn first when `full`. [main]
void brisolan_draweditmode(brisolan* x, bool full);
