// view/tracking.h: what follows the pointer: the row that tells Time, value and event under it, and pulling it back.
// Layer: view. Called by the host's pointer messages, the panel and the drags that hide the pointer.
#pragma once

#include <cstdint>

#include "core/instance.h"

// Process-wide, main level.
extern std::int16_t g_numtracking; // 1 from the press on a legend value until the button is up again
extern Point g_clickpt;            // where the tweak drag began, window coordinates; written by the press

// "cursor" and "cursorout": the pointer moves over the window with the button up; it has left. [main]
void brisolan_cursorin(brisolan* x, Point where, int modifiers);
void brisolan_cursorout(brisolan* x, Point where, int modifiers);
// Brings tracking texts and cursor up to the pointer's place. [main]
void brisolan_idle(brisolan* x, Point where, bool inside, int modifiers);

// The tracking row, in two parts: Time and value, and the event. Draws the texts; erases both parts and draws their
// pictures; erases and draws the texts within the row's clip, which is restored. [main]
void brisolan_drawtracking(brisolan* x, bool values, bool over);
void brisolan_erasetracking(brisolan* x, bool values, bool over);
void brisolan_redrawtracking(brisolan* x, bool values, bool over);
// Erases the legend row. [main]
void brisolan_eraselegend(brisolan* x);

// Moves the pointer to g_clickpt of the current port. [main]
void t_mousetocenter();
// Whether the point (the current port's coordinates) has come within 8 pixels of the screen's edge; it is then moved to
// g_clickpt. 1 or 0. [main]
int t_checkmouse(Point where);

// Forgets the last tracked point and event. [main]
void brisolan_resettracking();
