// view/selected.cpp: the selection's primitives.
// Layer: view.
// Called by the queued redraw, the window's close, the mouse, the keyboard and the clipboard.
#include "view/selected.h"

#include <algorithm>

#include "core/sequence.h"
#include "view/events.h"
#include "view/geometry.h"

namespace {

// The next selected event from e on, e included; null if none.
event* selected_from(event* e) {
    while (e && !e->selected) e = e->next;
    return e;
}

// Everything of unselecting but the search for the next firstsel.
void deselect(event_pen* pen, event* e) {
    pen->erase(e);
    e->selected = std::uint8_t{0};
}

} // namespace

// The scheduler may have cleared the sequence since the event was found: then nothing becomes the anchor, which outlives
// this call while the event does not.
void brisolan_setfirstsel(brisolan* x, event* e) {
    {
        const host_locked_out now;
        x->firstsel = e && e->alive == 1 ? e : nullptr;
    }
    x->redraw.redraw_values = std::uint8_t{1};
    brisolan_redraw(x);
}

void brisolan_select(brisolan* x, event* e) {
    event_pen pen(x, 1);
    brisolan_select(x, &pen, e);
}

void brisolan_select(brisolan* x, event_pen* pen, event* e) {
    e->selected = std::uint8_t{1};
    if (x->nselected == 0) brisolan_setfirstsel(x, e);
    pen->again(e);
    // Kept: also for an event that was selected already.
    x->nselected += 1;
}

void brisolan_unselect(brisolan* x, event* e) {
    event_pen pen(x, 1);
    deselect(&pen, e);
    if (x->firstsel == e) brisolan_setfirstsel(x, x->nselected == 1 ? nullptr : brisolan_firstselected(x));
    x->nselected -= 1;
}

void brisolan_noselect(brisolan* x) {
    event_pen pen(x, x->nselected);
    for (event* e : brisolan_each(x)) {
        if (e->selected) deselect(&pen, e);
    }
    x->nselected = 0;
    brisolan_setfirstsel(x, nullptr);
}

// As brisolan_unselect on each of them, in one walk: the search for the next firstsel goes on from where it is, since
// what stands selected in front of it is known.
void brisolan_reviseselect(brisolan* x) {
    event_pen pen(x, 1);
    event* first_kept = nullptr;
    for (event* e : brisolan_each(x)) {
        if (!e->selected) continue;
        if (brisolan_trackisshown(x, e->track)) {
            if (!first_kept) first_kept = e;
            continue;
        }
        deselect(&pen, e);
        if (x->firstsel == e) {
            event* following = first_kept ? first_kept : selected_from(e->next);
            brisolan_setfirstsel(x, x->nselected == 1 ? nullptr : following);
        }
        x->nselected -= 1;
    }
}

event* brisolan_firstselected(brisolan* x) {
    return selected_from(x->events);
}

int brisolan_eventthird(const brisolan* x, const event* e, int h) {
    const std::int32_t left = brisolan_timetoh(x, e->time);
    const std::int64_t exact =
        std::int64_t{event_param(*e, x->lenparam)} * UNIT / brisolan_factor(x->lenzoom);
    const int drawn = static_cast<std::int16_t>(exact);
    const int zone = drawn < LEAST_BAR ? 1 : drawn / 3;
    const int length = std::max(drawn, LEAST_BAR);
    if (h < left + zone) return 0;
    return h > left + length - zone ? 2 : 1;
}
