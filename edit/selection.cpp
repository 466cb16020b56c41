// edit/selection.cpp: selecting by mouse and all at once, over the primitives of view/selected.
// Layer: edit. Called by the click dispatcher, the host's drag loop and the Edit menu.
#include "edit/selection.h"

#include <algorithm>

#include "core/class.h"
#include "core/sequence.h"
#include "edit/drag.h"
#include "edit/press.h"
#include "view/cursor.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/format.h"
#include "view/geometry.h"
#include "view/selected.h"
#include "view/tracking.h"

namespace {

// Bits of an event's `marked` while a shift rubber band is dragged.
constexpr std::uint8_t WAS_SELECTED = 1; // when the band started
constexpr std::uint8_t TOGGLED = 2;      // the band covers it and has turned it over

// The rubber band that is framed on screen, one in the whole program since only one drag can run: its rectangle, whether
// it is framed, and what was drawn in data areas by then. Written by the band's press and drag.
Rect r{};
bool drawn = false;
std::uint32_t drawn_over = 0;

// Framing twice takes the frame away again. Only what lies in the data area: the legend changes with the selection.
void frame_band(brisolan* x) {
    const RgnHandle saved = t_getclip();
    brisolan_eventclip(x);
    PenMode(patXor);
    PenPat(&gry);
    FrameRect(&r);
    PenNormal();
    t_restoreclip(saved);
}

// Takes the frame off the screen. Where something was drawn over it since (a note that was recorded, a window shown
// anew), framing again would leave traces, and all is drawn anew instead.
void unframe_band(brisolan* x) {
    drawn = false;
    if (g_datadrawings == drawn_over) {
        frame_band(x);
        return;
    }
    const RgnHandle saved = t_getclip();
    brisolan_drawbg(x);
    brisolan_drawevts(x);
    t_restoreclip(saved);
}

void set_band(Point a, Point b) {
    r = {std::min(a.h, b.h), std::min(a.v, b.v), std::max(a.h, b.h), std::max(a.v, b.v)};
}

// Whether the event's bar and the band share a point, edges included. The bar's height plays no part.
// Kept: places are compared in 16 bits, as rectangles have them, so that a bar 65536 pixels away counts as one in sight.
bool in_band(const brisolan* x, const event* e) {
    const auto y = static_cast<std::int16_t>(brisolan_valuetov(x, event_param(*e, x->yparam)));
    if (y < r.top || y > r.bottom) return false;
    const std::int32_t left = brisolan_timetoh(x, e->time);
    if (static_cast<std::int16_t>(left) > r.right) return false;
    const std::int32_t width = x->labelparam < 0 ? brisolan_barlength(x, e) : brisolan_nwidth(x, e);
    return static_cast<std::int16_t>(left + width) >= r.left;
}

// One step of the band over the sequence, in list order.
struct band_step {
    brisolan* x;
    bool additive; // the press that began it was with shift
    event_pen pen;
    event* kept = nullptr; // the first event walked over that is selected now
};

// The first selected event from e on, e included; null if none.
event* selected_from(event* e) {
    while (e && !e->selected) e = e->next;
    return e;
}

// brisolan_unselect for a walk, and whoever it marked drawn: what stands selected in front of the event is known, so that
// the next anchor is looked for from here on alone.
void unselect(band_step& step, event* e) {
    brisolan* x = step.x;
    step.pen.erase(e);
    e->selected = std::uint8_t{0};
    if (x->firstsel == e) {
        event* anchor = step.kept ? step.kept : selected_from(e->next);
        brisolan_setfirstsel(x, x->nselected == 1 ? nullptr : anchor);
    }
    x->nselected -= 1;
    step.pen.draw_marked();
}

// An event that the band left gets the state back that it had when the band started.
void leave_band(band_step& step, event* e) {
    if (!step.additive || !e->marked) {
        if (e->selected) unselect(step, e);
        return;
    }
    if (!e->selected)
        brisolan_select(step.x, &step.pen, e);
    else if (e->marked & TOGGLED)
        unselect(step, e);
    e->marked = static_cast<std::uint8_t>(e->marked & ~TOGGLED);
}

// An event under the band is selected, or, when it was selected as a shift band started, is not. One on a hidden track
// stays as it is.
void enter_band(band_step& step, event* e) {
    if (!brisolan_trackisshown(step.x, e->track)) return;
    if (!step.additive || !e->marked) {
        if (!e->selected) brisolan_select(step.x, &step.pen, e);
        return;
    }
    if (e->selected)
        unselect(step, e);
    else if (!(e->marked & TOGGLED))
        brisolan_select(step.x, &step.pen, e);
    e->marked = static_cast<std::uint8_t>(e->marked | TOGGLED);
}

// The selection follows the band. Whoever was touched by what was selected last is drawn now, too.
void apply_band(brisolan* x) {
    band_step step{x, (modkeywas & shiftKey) != 0, event_pen(x, 1)};
    for (event* e : brisolan_each(x)) {
        if (in_band(x, e))
            enter_band(step, e);
        else
            leave_band(step, e);
        if (e->selected && !step.kept) step.kept = e;
    }
    brisolan_drawdirtyevts(x);
}

void press_on_nothing(brisolan* x, int modifiers, int tool) {
    if (tool != TOOL_ARROW) return;
    if (modifiers & shiftKey)
        brisolan_markselected(x);
    else
        brisolan_noselect(x);
    drawn = false; // of a band that another press cut off
    x->dragkind = DRAG_BAND;
    host_window_drag<brisolan_selectdrag>(x->window);
}

void hide_pointer(Point where) {
    if (!g_pointerhidden) HideCursor();
    g_pointerhidden = true;
    g_clickpt = where;
}

// Kept: pressing an event that is selected already counts it once more.
void press_on_event(brisolan* x, event* e, Point where, int tool) {
    if (!e->selected) brisolan_noselect(x);
    brisolan_select(x, e);
    g_grabbedthird = static_cast<std::int16_t>(brisolan_eventthird(x, e, where.h));
    x->dragvalue = brisolan_grabbedvalue(x, where);
    x->dragkind = static_cast<std::int8_t>(g_grabbedthird + 1);
    if (tool == TOOL_ARROW) {
        host_window_drag<brisolan_movedrag>(x->window);
        return;
    }
    hide_pointer(where);
    host_window_drag<brisolan_tweakdrag>(x->window);
}

} // namespace

void brisolan_selectall(brisolan* x) {
    event_pen pen(x, x->nevents);
    for (event* e : brisolan_each(x)) brisolan_select(x, &pen, e);
}

void brisolan_markselected(brisolan* x) {
    for (event* e : brisolan_each(x)) e->marked = e->selected ? WAS_SELECTED : std::uint8_t{0};
}

void brisolan_selectmouse(brisolan* x, Point where, int modifiers, int tool) {
    x->clickpt = where;
    event* e = brisolan_findevent(x, where.h, where.v);
    if (!e)
        press_on_nothing(x, modifiers, tool);
    else if (!(modifiers & shiftKey))
        press_on_event(x, e, where, tool);
    else if (e->selected)
        brisolan_unselect(x, e);
    else
        brisolan_select(x, e);
}

void brisolan_selectdrag(brisolan* x, Point where, bool stilldown) {
    if (!x->window->visible) { // closed meanwhile, which has deselected everything
        drawn = false;
        x->dragkind = DRAG_NONE;
        return;
    }
    if (drawn) unframe_band(x);
    set_band(x->clickpt, where);
    // All of it is drawn before the band is framed: drawn over it later, it would leave traces of the band behind.
    apply_band(x);
    if (!stilldown) {
        x->dragkind = DRAG_NONE;
        return;
    }
    frame_band(x);
    drawn = true;
    drawn_over = g_datadrawings;
}

void brisolan_resetband() {
    drawn = false;
    r = {};
}
