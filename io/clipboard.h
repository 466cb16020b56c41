// io/clipboard.h: cut, copy, paste and clear of the selected events, as text on the system clipboard.
// Layer: io. Called by the host's Edit menu and by the keyboard.
//
// The text has one line for each event: its eight values in parameter order, decimal, with blanks between them and a
// carriage return behind the last. Times are absolute.
#pragma once

#include <cstdint>

#include "core/instance.h"

// The size of a flavor on the system clipboard, 0 when it is not there; with a handle also its bytes, and 0 in *error.
// 0 as well when the handle cannot be made large enough. [main]
std::int32_t TheGetScrap(Handle handle, FlavorType flavor, OSErr* error);

// Puts `length` bytes on the system clipboard under a flavor; copied. [main]
void ThePutScrap(std::int32_t length, FlavorType flavor, const void* data);

// Empties the system clipboard. [main]
void TheZeroScrap();

// "copy": the selected events' text replaces what the clipboard holds, also when none is selected. [main]
void brisolan_copy(brisolan* x);

// "cut": copy, then clear. [main]
void brisolan_cut(brisolan* x);

// "paste": deselects, then adds one selected event for each line of the clipboard's text; parameters that a line does
// not give take their default. [main]
void brisolan_paste(brisolan* x);

// "clr": deletes the selected events. `nselected` stays, and no listener is told. [main]
void brisolan_clr(brisolan* x);

// "chkmenu": which of the Edit menu's commands make sense now. [main]
void brisolan_chkmenu(brisolan* x, host_menustate* state);
