// view/scroll.h: how far the content reaches, the scroll bars, and drawing the content after a change of either.
// Layer: view. Called by the window, the zoom, the mouse and everything that changes the sequence's end.
#pragma once

#include <cstdint>

#include "core/instance.h"

// Computes `hscroll_extent` and `vscroll_extent` from the sequence and the zoom and schedules the queued redraw. [main]
void brisolan_remax(brisolan* x);
// "chkscroll": gives the extents to the window's scroll bars and brings the scroll values down to their maxima;
// where they were above, the queued redraw draws the content at its new place. [main]
void brisolan_chkscroll(brisolan* x);
// A press: 1 when the point is on one of the window's scroll bars, which then follows it until the release. [main]
int brisolan_inscroll(brisolan* x, Point where);
// What a held arrow or page area of a scroll bar calls. [main]
void brisolan_scrollproc(ControlHandle control, std::int16_t part);
// "scroll": draws the content, the clip saved and restored around it. [main]
void brisolan_scroll(brisolan* x);
// Draws background, events, time guide and vertical legend. Leaves the clip at the data area. [main]
void brisolan_contents(brisolan* x);
// brisolan_remax, brisolan_chkscroll, brisolan_contents. [main]
void brisolan_zoomupdate(brisolan* x);

// Forgets the process-wide state of a held scroll bar part. [main]
void brisolan_resetscroll();
