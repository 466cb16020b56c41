// edit/mouse.cpp: mouse presses in the editor window: who takes them, and the presses on the tool palette and the graph.
// Layer: edit. Called by the host through "click".
#include "edit/mouse.h"

#include <array>

#include "core/sequence.h"
#include "edit/drag.h"
#include "edit/params.h"
#include "edit/press.h"
#include "edit/selection.h"
#include "view/buttons.h"
#include "view/cursor.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"
#include "view/scroll.h"
#include "view/selected.h"
#include "view/window.h"
#include "view/zoom.h"

namespace {

// The tool palette at the window's top left, two by two cells.
constexpr Rect PALETTE{-1, -1, 47, 39};
constexpr int CELL_WIDTH = 24;
constexpr int CELL_HEIGHT = 20;

// One handler that a press is offered to; it answers nonzero when it has taken the press.
struct responder {
    int (*take)(brisolan* x, Point where, int modifiers);
    bool in_bottom_strip; // also offered presses beside the bottom scroll bar
};

// In the order in which a press is offered.
constexpr std::array responders{
    responder{[](brisolan* x, Point where, int) { return brisolan_legendclick(x, where, 0); }, true},
    responder{[](brisolan* x, Point where, int) { return brisolan_zoomclick(x, where); }, true},
    responder{[](brisolan* x, Point where, int) { return brisolan_emclick(x, where); }, true},
    responder{
        [](brisolan* x, Point where, int modifiers) { return brisolan_trackbtnclick(x, where, modifiers); },
        false},
    responder{
        [](brisolan* x, Point where, int modifiers) { return brisolan_eventclick(x, where, modifiers); },
        false},
};

// The values of an event that is drawn at a point: the defaults, then Time and the vertical value from where it is.
// Kept: the vertical value is stored as the point gives it, not held in its range; it is later edits that clamp.
void place_at(brisolan* x, event* e, Point where) {
    for (int i = PARAM_PITCH; i < NPARAMS; ++i)
        event_param(*e, i) = x->params[static_cast<std::size_t>(i)].defvalue.get();
    e->time = brisolan_htotime(x, where.h);
    event_param(*e, x->yparam) = brisolan_vtovalue(x, where.v);
}

// The scheduler may have cleared the sequence since the event was linked.
void hold_drawn(brisolan* x, event* e) {
    const host_locked_out now;
    x->drawn = e->alive == 1 ? e : nullptr;
}

} // namespace

int brisolan_click(brisolan* x, Point where, int modifiers) {
    modkeywas = modifiers;
    brisolan_bringpointer();
    ControlHandle bar = nullptr;
    FindControl(where, host_window_systemwindow(x->window), &bar);
    if (bar) {
        // A bar that has nothing to scroll takes its presses too: what is below it is no content.
        brisolan_inscroll(x, where);
        return 1;
    }
    const bool in_bottom_strip = where.v > x->window->height - SCROLLBAR;
    for (const responder& r : responders) {
        if (in_bottom_strip && !r.in_bottom_strip) continue;
        if (const int taken = r.take(x, where, modifiers)) return taken;
    }
    return 0;
}

int brisolan_emclick(brisolan* x, Point where) {
    if (!PtInRect(where, &PALETTE)) return 0;
    brisolan_editmode(x, where.h / CELL_WIDTH + 2 * (where.v / CELL_HEIGHT));
    return 1;
}

int brisolan_eventclick(brisolan* x, Point where, int modifiers) {
    Rect data;
    brisolan_getdatarect(x, &data);
    if (!PtInRect(where, &data)) return 0;
    switch (brisolan_tempeditmode(x, modifiers)) {
    case TOOL_MAGNIFIER: brisolan_magmouse(x, where, modifiers); break;
    case TOOL_TWEAK: brisolan_selectmouse(x, where, modifiers, TOOL_TWEAK); break;
    case TOOL_DRAW: brisolan_drawmouse(x, modifiers, where); break;
    default: brisolan_selectmouse(x, where, modifiers, TOOL_ARROW); break;
    }
    return 1;
}

void brisolan_drawmouse(brisolan* x, int modifiers, Point where) {
    event* e = brisolan_newevent();
    if (!e) return;
    if (!(modifiers & shiftKey)) brisolan_noselect(x);
    place_at(x, e, where);
    brisolan_link(x, e);
    brisolan_select(x, e);
    brisolan_drawit(x, e);
    brisolan_setfirstsel(x, e);
    hold_drawn(x, e);
    brisolan_settle(x);
    x->dragkind = DRAG_DRAW;
    x->clickpt = where;
    host_window_drag<brisolan_drawdrag>(x->window);
}
