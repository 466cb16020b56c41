// view/legend.h: the legend row with its roles, the vertical labels, and the panel that they are part of.
// Layer: view. Called by the window's update and the queued redraw; the mouse calls the role menu.
#pragma once

#include <cstdint>

#include "core/instance.h"

// Lays out the legend's columns from names and bounds. Measures text: the window's port must be current. [main]
void brisolan_calclegend(brisolan* x);
// Draws the legend row from the selection's or the default values. Leaves the clip at the window without scroll bars.
// [main]
void brisolan_drawlegend(brisolan* x);
// Takes the lines under the names off the screen, and unmarks them. [main]
void brisolan_plainnames(brisolan* x);
// Draws the values of the legend row anew, names plain, from the selection's or the default values, or the values alone as
// they are in the legend; the clip is restored. [main]
void brisolan_drawvalues(brisolan* x);
void brisolan_drawvaluerow(brisolan* x);
// Draws the labels of the vertical axis; the clip is restored. [main]
void brisolan_drawylegend(brisolan* x);
// Draws everything outside the data area but the buttons and the zoom box. [main]
void brisolan_drawpanel(brisolan* x);

// Where a legend picture at x is pressed. [main]
void brisolan_legpictrect(int left, Rect* r);
// Pops up the role menu of a parameter at its legend picture and carries the choice out. [main]
void brisolan_parammenu(brisolan* x, param_record* p, int index);
// Gives parameter `index`, record p, a display role, and another one to whoever had it; a label chosen again is switched
// off. Draws nothing. [main]
void brisolan_displaymode(brisolan* x, param_record* p, int index, int mode);
