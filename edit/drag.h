// edit/drag.h: the three drags that change events: move, tweak and draw, and the change they apply.
// Layer: edit. Called by the host's drag loop from a press on, and by the keyboard.
#pragma once

#include <cstdint>

#include "core/instance.h"

// Adds `delta` to one parameter of every selected event: Time is held at 0 or more (and inside 32 bits), any other in
// its parameter's range. After a change of Time the list is put back in order. The events are erased and left to the
// queued redraw. [main]
void brisolan_offset(brisolan* x, int index, std::int64_t delta);

// Pins a window point into the data area, right and bottom edge included. [main]
void brisolan_eventconstrain(brisolan* x, Point* where);

// The value at a window point for the grabbed third: the time, the vertical value, or (no scroll counted: only
// differences are used) the length. [main]
std::int32_t brisolan_grabbedvalue(brisolan* x, Point where);

// The drag routines, called with the pointer while the button is held and once more, stilldown false, at its release.
//
// Move: the grabbed third's parameter of every selected event follows the pinned pointer, step by step. [main]
void brisolan_movedrag(brisolan* x, Point where, bool stilldown);

// Tweak: the same by one unit a pixel whatever the zoom, the pointer hidden and brought back from the screen's edge.
// [main]
void brisolan_tweakdrag(brisolan* x, Point where, bool stilldown);

// Draw: the new event, which is `drawn`, gets the length that the pointer is right of the press. [main]
void brisolan_drawdrag(brisolan* x, Point where, bool stilldown);
