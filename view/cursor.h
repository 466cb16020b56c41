// view/cursor.h: which tool the modifier keys choose, and which cursor shows it.
// Layer: view. Called by the pointer's tracking and by the mouse.
#pragma once

#include <cstdint>

#include "core/instance.h"

// The cursor table's entries.
enum cursor_entry : int {
    CURSOR_START = 0, // thirds of an event
    CURSOR_BODY = 1,
    CURSOR_END = 2,
    CURSOR_MAGNIFY = 3,
    CURSOR_SHRINK = 4,
    CURSOR_TWEAK = 5,
    CURSOR_DRAW = 6,
    CURSOR_CROSS = 7,
    CURSOR_HOST = 0xFFFF // above the table: the host's own
};

// The edit tools.
enum tool_index : int { TOOL_ARROW = 0, TOOL_MAGNIFIER = 1, TOOL_TWEAK = 2, TOOL_DRAW = 3 };

// Process-wide, main level: the table entry now set, -1 for the host's cursor (written here and at the class's
// registration); whether a cursor was set in the tracking pass that runs.
extern std::int16_t g_currentcursor;
extern std::int16_t g_setcursor;

// The tool that counts with these modifier keys held: option first, then command, then control. [main]
int brisolan_tempeditmode(const brisolan* x, int modifiers);

// Sets a cursor table entry; one above the table gives the pointer back to the host. [main]
void brisolan_cursor(brisolan* x, int entry);
// The cursor over an event: that of its third under the point, unless `cursor_override` says another. [main]
void brisolan_eventcursor(brisolan* x, const event* e, Point where);
// The magnifier's cursor: shrinking while option is held. [main]
void brisolan_magcursor(brisolan* x, int modifiers);

// Copies a cursor resource into a table entry; one that is missing leaves it as it is. [main]
void brisolan_copycursor(int id, int entry);
