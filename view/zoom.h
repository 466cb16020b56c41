// view/zoom.h: the zoom factors, the zoom box at the window's bottom left, and the magnifier's click.
// Layer: view. Called by the window, and by the mouse with what it hits.
#pragma once

#include "core/instance.h"

// One step of one factor: horizontal by 2 (the length factor follows while Dur is the length), vertical by 1.5. No guard
// at the small end and no redraw; at the large end a step that would leave 31 bits is not made. [main]
void brisolan_xzoomout(brisolan* x);
void brisolan_xzoomin(brisolan* x);
void brisolan_yzoomout(brisolan* x);
void brisolan_yzoomin(brisolan* x);

// The segments of the zoom box, 15 pixels each.
enum zoom_segment : int { ZOOM_X_OUT = 0, ZOOM_X_IN = 1, ZOOM_Y_OUT = 2, ZOOM_Y_IN = 3 };

// A zoom step as the box makes it: not below a factor of 1; then extent, scroll bars, and the content is invalid. [main]
void brisolan_dozoom(brisolan* x, int segment);

// A press: 1 when the point lies in the zoom box, which then follows the pointer until the release. [main]
int brisolan_zoomclick(brisolan* x, Point where);
// The drag that brisolan_zoomclick starts. [main]
void brisolan_zoomdrag(brisolan* x, Point where, bool stilldown);
// Draws the zoom box; leaves the clip at the whole window. [main]
void brisolan_drawzoom(brisolan* x);

// A press with the magnifier in the data area: zooms around the point and draws the content. [main]
void brisolan_magmouse(brisolan* x, Point where, int modifiers);
