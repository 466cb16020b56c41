// edit/selection.h: selecting by mouse and all at once, over the primitives of view/selected.
// Layer: edit. Called by the click dispatcher, the host's drag loop and the Edit menu.
#pragma once

#include "core/instance.h"

// "selectall": selects every event in list order, also those on hidden tracks and those already selected, which
// `nselected` then counts once more. [main]
void brisolan_selectall(brisolan* x);

// Copies every event's `selected` into its `marked`. [main]
void brisolan_markselected(brisolan* x);

// A press in the data area with the arrow (tool 0) or the tweak tool (2): selects the event there and begins a move or
// tweak drag, toggles it when shift is held, or (arrow only) begins a rubber band where none is. [main]
void brisolan_selectmouse(brisolan* x, Point where, int modifiers, int tool);

// The rubber band's drag routine: the selection follows the rectangle between the press and the pointer. [main]
void brisolan_selectdrag(brisolan* x, Point where, bool stilldown);

// Forgets a rubber band that is framed, for a test host that starts anew. [main]
void brisolan_resetband();
