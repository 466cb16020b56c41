// view/gather.h: erasings and drawings of many events, put down as they come and carried out together later.
// Layer: view, internal to the data area.
// Called by the erasing and the drawing of events, once many of them come one after the other.
//
// What comes onto the screen is what carrying them out one by one would have left there, with whoever an erasing has
// touched drawn in the list's order at the end, and wherever that was asked for in between.
#pragma once

#include "view/index.h"

// What becomes of what was gathered when it is settled.
enum class settling {
    nothing, // it is not seen: the whole data area is drawn over next
    erased,  // it comes onto the screen; who was touched waits marked
    all      // and is drawn as well
};

// From the first one on that is gathered, what was placed counts no more. Nothing while gathering already. [main]
void brisolan_begingathering(brisolan* x, view_index& ix);
// An erased box; an event erased out of sight. [main]
void brisolan_gathererasing(view_index& ix, const bar_box& box);
void brisolan_gatherfarerasing(view_index& ix, const event& e);
// An event's drawing; its look is measured and shows. [main]
void brisolan_gatherdrawing(view_index& ix, event* e, const bar_look& look);
// An event erased and drawn as it is, or erased alone when it does not show; whether it was drawn. [main]
bool brisolan_gatheragain(brisolan* x, view_index& ix, event* e);
// Whoever is marked by now is drawn, before anything that is gathered next. [main]
void brisolan_gathermarked(view_index& ix);
// Ends the gathering. [main]
void brisolan_settlegathered(brisolan* x, view_index& ix, settling how);
