// view/events.h: the data area: grid, bars, erasing and redrawing single events, the time ruler, the hit test.
// Layer: view. Called by the queued redraw, the scroll bars, the selection and every edit.
#pragma once

#include <cstdint>

#include "core/instance.h"

// How often anything was drawn in a data area, for whoever has to know whether a drawing over one stands still.
// Process-wide, main level; grows only, and begins again at 0 after the last number there is.
extern std::uint32_t g_datadrawings;

// Clips to the data area; the clip before is lost. [main]
void brisolan_eventclip(brisolan* x);

// Draws the empty data area: background and grid. The clip is restored. [main]
void brisolan_drawbg(brisolan* x);
// Erases a rectangle of the data area (nothing above its top line) and draws the grid in it, its right and bottom line
// included. Leaves the foreground colour. [main]
void brisolan_drawpattern(brisolan* x, int left, int top, int right, int bottom);

// Draws every event in list order. Leaves the clip at the data area. [main]
void brisolan_drawevts(brisolan* x);
// Draws one event and clears its `needsdraw`, inside the data area whatever the clip; nothing, and the flag stays, when
// it lies left or right of the window or its track is hidden. May be put off until brisolan_settle. [main]
void brisolan_drawit(brisolan* x, event* e);
// The rectangle that the event's bar and "#" mark take, the window's coordinates; gives the bar's width. [main]
std::int32_t brisolan_eventrect(const brisolan* x, const event* e, std::int32_t* left, std::int32_t* top,
                                std::int32_t* right, std::int32_t* bottom);

// Takes one event off the screen: grid in its place, `needsdraw` for it and for every event in view that its rectangle
// touched, and the queued redraw for those. Must come before each change of an event's values at main level. Drawing and
// marking may be put off until brisolan_settle. [main]
void brisolan_eraseit(brisolan* x, event* e);
// Draws every event whose `needsdraw` is set, in list order, inside the data area. [main]
void brisolan_drawdirtyevts(brisolan* x);

// Erases and draws many events, one call after the other, as brisolan_eraseit and brisolan_drawit do: what is the same for
// all of them is looked up once. While it lives the view is neither moved nor redrawn, and its settings stay.
class event_pen {
public:
    // About so many are going to be erased; only a hint, by which all is put off from the first on. [main]
    event_pen(brisolan* owner, std::int32_t count);
    void erase(event* e);
    void draw(event* e);
    // Both, of an event that is drawn as it is erased.
    void again(event* e);
    // As brisolan_drawdirtyevts: whoever is marked by now is drawn before anything else is erased or drawn. [main]
    void draw_marked();

private:
    brisolan* x;
    view_index& ix;
    bool visible;
    int ndrawn_marked = 0; // how often the marked ones were drawn at once
};
// Brings onto the screen what brisolan_eraseit and brisolan_drawit have put off while they were called for many events
// at once. Whoever draws over the data area by other means (the rubber band) calls it first. [main]
void brisolan_settle(brisolan* x);

// Draws the time ruler above the data area; the clip is restored. [main]
void brisolan_drawtimeguide(brisolan* x);

// Sets the foreground to the colour of track `index` + 1 and gives its palette index. [main]
int brisolan_trackcolor(std::int32_t index);

// Marks on black keys on (n > 0) or off; everything is drawn anew. [main]
void brisolan_drawsharps(brisolan* x, int n);

// The first event in list order under window point (h, v): its track shown, v within a pixel of its value, h within its
// bar; null if none. Borrowed from the sequence: valid until the next relinking. [main]
event* brisolan_findevent(brisolan* x, int h, int v);

// Frees what the view remembers of the instance's screen. [main]
void brisolan_freeindex(brisolan* x);
