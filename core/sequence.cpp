// core/sequence.cpp: the ordered list of events.
// Layer: core. Called by recording, reading, the clipboard, the mouse and the keyboard; every relinking is here.
#include "core/sequence.h"

#include <algorithm>
#include <vector>

#include "core/heldnotes.h"
#include "core/locked.h"
#include "core/notechains.h"
#include "core/output.h"
#include "core/saturated.h"

namespace {

// Puts e behind `before`, or at the head when that is null.
void put_behind_locked(brisolan* x, event* before, event* e) {
    e->next = before ? before->next : static_cast<event*>(x->events);
    if (before)
        before->next = e;
    else
        x->events = e;
    x->nevents += 1;
}

// The last event in front of the first whose time is not less than `time`; null when that is the head. A walk from the
// head in meaning: everything in front of the finger is earlier than finger_time, so a later time may begin there.
event* predecessor_locked(const brisolan* x, std::int32_t time) {
    event* before = x->finger && time >= x->finger_time ? static_cast<event*>(x->finger) : nullptr;
    for (event* e = before ? before->next : x->events; e && e->time < time; e = e->next) before = e;
    return before;
}

bool is_selected(const event& e) {
    return e.selected != 0;
}

// Unlinked or reordered: no memory of places in the list holds any more.
void order_changed_locked(brisolan* x) {
    x->finger = nullptr;
    x->relinked += 1;
}

// Moves a reference off an event that is taken out, to the first event behind it that stays.
void move_off_locked(event_link& reference, bool (*gone)(const event&)) {
    event* e = reference;
    while (e && gone(*e)) {
        e = e->next;
        brisolan_fetchahead(e);
    }
    reference = e;
}

// Places in the list for events whose times never fall: each is found from the one before it, whatever the list's own
// order.
class place_behind {
public:
    explicit place_behind(brisolan* owner) : x(owner) {}
    void insert_locked(event* e) {
        insert_first_locked(e);
        before = e;
    }
    // In front of those of its time that were inserted before, too.
    void insert_first_locked(event* e) {
        for (event* at = before ? before->next : x->events; at && at->time < e->time; at = at->next)
            before = at;
        put_behind_locked(x, before, e);
    }

private:
    brisolan* x;
    event* before = nullptr;
};

bool earlier(const event* a, const event* b) {
    return a->time < b->time;
}

// Links the events of a chain up to the first that is earlier than the one before it, and gives the rest. Mostly there is
// none.
event* link_rising(brisolan* x, event* head) {
    relinking now(x);
    place_behind place(x);
    for (std::int32_t latest = INT32_MIN; head && head->time >= latest;) {
        latest = head->time;
        brisolan_fetchahead(head);
        event* following = head->next;
        place.insert_first_locked(head);
        head = following;
    }
    x->finger = nullptr;
    return head;
}

// The chain in the order that linking its events one after the other gives: by time, the later of equals first.
std::vector<event*> linking_order(event* head) {
    std::vector<event*> chain;
    for (event* e = head; e; e = e->next) chain.push_back(e);
    std::reverse(chain.begin(), chain.end());
    std::stable_sort(chain.begin(), chain.end(), earlier);
    return chain;
}

} // namespace

event* brisolan_newevent() {
    void* block = host_getbytes(sizeof(event));
    return block ? new (block) event : nullptr;
}

void brisolan_freeevent(event* e) {
    e->alive = std::uint8_t{0};
    host_freebytes(e, sizeof(event));
}

void brisolan_doappend(brisolan* x, std::int32_t delta, std::int32_t pitch, std::int32_t vel,
                       std::int32_t dur, std::int32_t chan, std::int32_t track, std::int32_t x1,
                       std::int32_t x2, std::int16_t ordered) {
    brisolan_append(x, delta, {0, pitch, vel, dur, chan, track, x1, x2}, ordered != 0);
}

event* brisolan_append(brisolan* x, std::int32_t delta, const std::array<std::int32_t, NPARAMS>& values,
                       bool ordered) {
    relinking now(x);
    event* last = x->events ? static_cast<event*>(x->current) : nullptr;
    if (!ordered && x->events && (!last || last->next)) {
        host_post("oops! lost my marbles");
        return nullptr;
    }
    std::array<std::int32_t, NPARAMS> filled = values;
    filled[PARAM_TIME] = saturated(std::int64_t{x->lasttime.get()} + std::max(delta, 0));
    event* e = brisolan_newevent(filled);
    if (!e) return nullptr;
    x->lasttime = filled[PARAM_TIME];
    if (ordered && x->events)
        brisolan_link(x, e);
    else
        put_behind_locked(x, last, e);
    if (last && !ordered && e->time < last->time) x->unordered = std::uint8_t{1};
    x->current = e;
    x->redraw.redraw_events = std::uint8_t{1};
    x->redraw.changed = std::uint8_t{1};
    brisolan_redraw(x);
    brisolan_clearset(x, PARAM_DUR);
    return e;
}

void brisolan_link(brisolan* x, event* e) {
    relinking now(x);
    event* before = predecessor_locked(x, e->time);
    put_behind_locked(x, before, e);
    x->finger = before;
    x->finger_time = e->time;
}

void brisolan_linkchain(brisolan* x, event* head) {
    head = link_rising(x, head);
    if (!head) return;
    const std::vector<event*> chain = linking_order(head);
    relinking now(x);
    place_behind place(x);
    for (event* e : chain) place.insert_locked(e);
    x->finger = nullptr;
}

void brisolan_adopt(brisolan* x, note_chains* notes) {
    event* const appended_last = notes->last_appended();
    const std::int32_t count = notes->size();
    const bool falling = notes->falls();
    event* head = notes->merge();
    if (!head) return;
    relinking now(x);
    if (!x->events) {
        x->events = head;
        x->nevents += count;
    } else {
        // Something was recorded while the file was read.
        place_behind place(x);
        while (event* e = head) {
            head = e->next;
            place.insert_locked(e);
        }
    }
    if (falling) x->unordered = std::uint8_t{1};
    x->finger = nullptr;
    x->current = appended_last;
    x->redraw.redraw_events = std::uint8_t{1};
    x->redraw.changed = std::uint8_t{1};
    brisolan_redraw(x);
    brisolan_clearset(x, PARAM_DUR);
}

void brisolan_removeselected(brisolan* x) {
    relinking now(x);
    brisolan_forgetevents(x, is_selected);
    move_off_locked(x->current, is_selected);
    move_off_locked(x->firstsel, is_selected);
    if (x->drawn && is_selected(*x->drawn)) x->drawn = nullptr;
    order_changed_locked(x);
    for (event_link* at = &x->events; *at;) {
        event* e = *at;
        brisolan_fetchahead(e);
        if (is_selected(*e)) {
            *at = e->next;
            x->nevents -= 1;
            brisolan_freeevent(e);
        } else {
            at = &e->next;
        }
    }
    if (!x->events) x->unordered = std::uint8_t{0};
}

void brisolan_resort(brisolan* x) {
    relinking now(x);
    order_changed_locked(x);
    // Three passes over links alone: two lists apart, then merged. Whoever walks meanwhile without the lock is the
    // main level, and that is here.
    event_link rest;
    event_link moved;
    event_link* rest_end = &rest;
    event_link* moved_end = &moved;
    for (event* e = x->events; e;) {
        brisolan_fetchahead(e);
        event* following = e->next;
        event_link*& end = is_selected(*e) ? moved_end : rest_end;
        *end = e;
        e->next = nullptr;
        end = &e->next;
        e = following;
    }
    event* a = rest;
    event* b = moved;
    event_link* end = &x->events;
    while (a && b) {
        event*& first = b->time < a->time ? b : a;
        *end = first;
        end = &first->next;
        first = first->next;
        brisolan_fetchahead(first);
    }
    *end = a ? a : b;
}

void brisolan_timeschanged(brisolan* x) {
    x->finger = nullptr;
    x->unordered = std::uint8_t{1};
}

event* brisolan_detachall(brisolan* x) {
    relinking now(static_cast<host_critical*>(nullptr));
    event* const head = x->events;
    x->window->hscroll_value = std::int16_t{0};
    x->window->vscroll_value = std::int16_t{0};
    x->current = nullptr;
    x->firstsel = nullptr;
    x->drawn = nullptr;
    x->events = nullptr;
    x->nevents = 0;
    x->unordered = std::uint8_t{0};
    brisolan_holdnothing(x);
    brisolan_forgetevents(x, [](const event&) { return true; });
    order_changed_locked(x);
    return head;
}

void brisolan_freechain(event* head) {
    while (head) {
        event* following = head->next;
        brisolan_freeevent(head);
        head = following;
    }
}

void brisolan_clearset(brisolan* x, int index) {
    if (index == -1) {
        for (param_record& p : x->params) p.isset = std::uint8_t{0};
    } else if (index >= 0 && index < NPARAMS) {
        x->params[static_cast<std::size_t>(index)].isset = std::uint8_t{0};
    }
}

void brisolan_clearparamset(brisolan* x) {
    for (param_record& p : x->params) {
        p.curvalue = p.defvalue.get();
        p.isset = std::uint8_t{0};
    }
}

event* brisolan_findnote(const brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan) {
    for (event* e = x->events; e; e = e->next) {
        if (e->pitch == pitch && e->vel == vel && e->chan == chan) return e;
    }
    return nullptr;
}

event* brisolan_eventat(const brisolan* x, std::int32_t n) {
    if (n < 0 || n >= x->nevents) return nullptr;
    event* e = x->events;
    for (; n > 0; --n) e = e->next;
    return e;
}

void brisolan_redraw(brisolan* x) {
    host_qelem_set(x->redraw_qelem);
}
