// view/selected.h: the selection's primitives: the flag on each event, the counter, and the event the legend shows.
// Layer: view, which shows the selection; the gestures that choose it are the edit room's.
// Called by the queued redraw, the window's close, the mouse, the keyboard and the clipboard.
//
// Kept: `nselected` counts calls. brisolan_select adds one for an event that is selected already, so that selecting all
// with some selected leaves it above the number of selected events.
#pragma once

#include "core/instance.h"

class event_pen;

// Selects one event and draws it so at once; it becomes `firstsel` when nothing is counted as selected. [main]
void brisolan_select(brisolan* x, event* e);
// The same for many, with a pen that is made for all of them. [main]
void brisolan_select(brisolan* x, event_pen* pen, event* e);
// Unselects one event: erased, to be drawn by the redraw of marked events. `firstsel` moves to the first event still
// selected, or to null when only one was counted. [main]
void brisolan_unselect(brisolan* x, event* e);
// Unselects everything: erased, to be drawn by the redraw of marked events; the counter is 0 afterwards. [main]
void brisolan_noselect(brisolan* x);
// Unselects the selected events whose track is hidden. [main]
void brisolan_reviseselect(brisolan* x);
// The first selected event in list order, null if none. Borrowed: valid until the next relinking. [main]
event* brisolan_firstselected(brisolan* x);
// Which part of the event's bar window pixel h is in: 0 the start, 1 the body, 2 the end. [main]
int brisolan_eventthird(const brisolan* x, const event* e, int h);

// Makes e (or null) the event whose values the legend shows, and schedules its drawing. [main]
void brisolan_setfirstsel(brisolan* x, event* e);
