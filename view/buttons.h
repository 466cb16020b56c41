// view/buttons.h: the rows of numbered buttons that show and hide tracks, and channels.
// Layer: view. The track row is called by the window's update and the mouse; the channel row by nobody yet.
#pragma once

#include "core/instance.h"

// One button of the row, from index 0; the whole row. The clip is restored. [main]
void brisolan_drawtrkbtn(brisolan* x, int index);
void brisolan_drawtrackbtns(brisolan* x);
// A press: 1 when it was on a button, which then changes state and paints it onto the buttons that the pointer is dragged
// over; with option that track alone is shown. [main]
int brisolan_trackbtnclick(brisolan* x, Point where, int modifiers);
void brisolan_trkbtndrag(brisolan* x, Point where, bool stilldown);

// The same for channels, one row higher. Not connected: `chanshown` is never allocated, and with it null the row has no
// buttons and no press. [main]
void brisolan_drawchanbtn(brisolan* x, int index);
void brisolan_drawchanbtns(brisolan* x);
int brisolan_chanbtnclick(brisolan* x, Point where, int modifiers);
void brisolan_chanbtndrag(brisolan* x, Point where, bool stilldown);
