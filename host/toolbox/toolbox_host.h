// The toolbox as its host sees it: ports and their pixels, what must be drawn anew, scroll bars, and the machine's hooks.
// Toolbox, host side: leans on host/toolbox.h.
// Called by host/kernel (windows), host/headless and host/desktop (platforms); never by the object.
#pragma once

#include "host/toolbox.h"

#include <cstddef>
#include <cstdint>
#include <string>

// ---------------------------------------------------------------------------------------------------------------------
// What the toolbox asks of the machine. A null function pointer stands for a machine without that thing: no button, the
// pointer at (0, 0), no choice, no clipboard but the program's own.

struct toolbox_platform {
    void* user = nullptr; // handed to every function

    bool (*button)(void* user) = nullptr;   // the pointer's button is down now; may let events in
    Point (*mouse)(void* user) = nullptr;   // the pointer, global coordinates
    int (*modifiers)(void* user) = nullptr; // modifier bits held now
    // One turn of a loop that follows a held button: waits until the next turn is due (letting the machine repaint and take
    // events), then sets *where, global, and gives whether the button is still down. On false *where is where it went up.
    bool (*track)(void* user, Point* where) = nullptr;
    // Shows the menu at global (where) and gives the item chosen, 0 for none. The toolbox refuses disabled items after it.
    int (*popup)(void* user, MenuHandle menu, Point where, int item) = nullptr;
    void (*setcursor)(void* user, const Cursor* cursor) = nullptr;   // null: the host's own pointer
    void (*hidecursor)(void* user, bool hidden) = nullptr;           // only when the state changes
    bool (*clipboard_read)(void* user, std::string* text) = nullptr; // Latin-1; false when it holds no text
    void (*clipboard_write)(void* user,
                            const std::string& text) = nullptr; // an empty text empties the clipboard's text
    Rect (*screen)(void* user) = nullptr;                       // global bounds of the screen
};

// The hooks in use, copied; null puts the machine without anything back. [main]
void toolbox_setplatform(const toolbox_platform* platform);
const toolbox_platform& toolbox_getplatform();

// Forgets all process-wide state (current port, scrap, menu list, cursor, system font, hooks) for the next test. Ports,
// regions, menus and handles stay with their owners. [main]
void toolbox_reset();

// From now on there is memory only for handles of at most this many bytes: below 0 for none, INT32_MAX for all. For tests
// of what is done where memory ends. [main]
void toolbox_handle_limit(int32_t bytes);

// ---------------------------------------------------------------------------------------------------------------------
// Ports

// A port with a white bitmap of width by height pixels (below 0 counts as 0), at the global origin, clip everything, pen
// normal, black on white. Owned by the caller. [main]
GrafPtr toolbox_port_new(int width, int height);
// Frees it with its controls; when it is the current port, none is. Null is allowed. [main]
void toolbox_port_free(GrafPtr port);
// New size: what was drawn stays at the top left, new pixels are white. Clip, invalid region and controls stay. [main]
void toolbox_port_resize(GrafPtr port, int width, int height);
// Where the port's (0, 0) lies on the screen. [main]
void toolbox_port_setorigin(GrafPtr port, int h, int v);

// The pixels, 0xFFRRGGBB, row after row, toolbox_port_rowpixels apart; valid until resize or free. [main]
uint32_t* toolbox_port_pixels(GrafPtr port);
int toolbox_port_width(GrafPtr port);
int toolbox_port_height(GrafPtr port);
int toolbox_port_rowpixels(GrafPtr port);
// Whether anything was drawn since the last call: for a machine that shows the bitmap. [main]
bool toolbox_port_takechanged(GrafPtr port);

// Adds the whole port to its invalid region. [main]
void toolbox_port_invalidate(GrafPtr port);
// Whether the invalid region holds a pixel of the port. [main]
bool toolbox_port_isinvalid(GrafPtr port);
// Moves the invalid region, cut to the port, into rgn (may be null) and empties it; gives whether there was any. [main]
bool toolbox_port_takeinvalid(GrafPtr port, RgnHandle rgn);
// While set, drawing is further cut to rgn (copied); null ends it. For an update that draws only what is invalid. [main]
void toolbox_port_setvisible(GrafPtr port, RgnHandle rgn);

// Pen, colours, text state and clip as in a new port. [main]
void toolbox_port_resetstate(GrafPtr port);

// ---------------------------------------------------------------------------------------------------------------------
// Scroll bars

// A scroll bar in port at *bounds, value 0, maximum 0, visible, not yet drawn; vertical when it is higher than wide.
// Freed with the port, or by toolbox_control_free. [main]
ControlHandle toolbox_control_new(GrafPtr port, const Rect* bounds);
void toolbox_control_free(ControlHandle control);
// New place; not yet drawn. [main]
void toolbox_control_setbounds(ControlHandle control, const Rect* bounds);
// For the host's own use: a number that the thumb's size is told by, the part of the content in view (0: a square
// thumb). [main]
void toolbox_control_setviewsize(ControlHandle control, int viewsize);
bool toolbox_control_isvertical(ControlHandle control); // [main]
// Draws all visible controls of the port, whatever its clip; the port's state is kept. [main]
void toolbox_drawcontrols(GrafPtr port);

// ---------------------------------------------------------------------------------------------------------------------
// Cursor as it stands, for a platform that asks rather than being told

// The image last set, null for the host's own pointer. Valid until the next change. [main]
const Cursor* toolbox_cursor();
bool toolbox_cursor_hidden(); // [main]
