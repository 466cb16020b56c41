// edit/press.h: what a mouse press leaves behind for the drag that follows it, one set for the whole program.
// Layer: edit. Written by the click dispatcher and the press handlers, read by the drag routines.
#pragma once

#include <cstdint>

// Values of `dragkind`. A move or tweak drag is the grabbed third + 1; the track buttons set -1.
constexpr std::int8_t DRAG_NONE = 0;
constexpr std::int8_t DRAG_DRAW = 7;
constexpr std::int8_t DRAG_BAND = 8;

// The parts of an event's box, as brisolan_eventthird tells them, and what a drag on each changes.
constexpr int THIRD_START = 0; // Time
constexpr int THIRD_BODY = 1;  // the vertical parameter
constexpr int THIRD_END = 2;   // the length parameter

// The modifiers of the last press in any editor. Written by brisolan_click alone; read by the rubber band, whose shift
// is the one it began with. Survives the press.
extern int modkeywas;

// The part of the box that was grabbed, kept from the press for the whole move or tweak drag.
extern std::int16_t g_grabbedthird;

// Whether a tweak drag has hidden the pointer; false between drags.
extern bool g_pointerhidden;

// Shows a pointer that a tweak drag has hidden: at its end, or where it was cut off by another press or with its
// instance. [main]
void brisolan_bringpointer();

// Everything here as when the program began, for a test host that starts anew. [main]
void brisolan_resetpress();
