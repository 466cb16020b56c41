// core/sequence.h: the ordered list of events: how events come in, are found again after an edit, and go out.
// Layer: core. Called by recording, reading, the clipboard, the mouse and the keyboard; every relinking is here.
#pragma once

#include <cstdint>

#include "core/instance.h"

class note_chains;

// The events in order, for walks that may be over very many: `for (event* e : brisolan_each(x))`. The one that the walk
// stands on must stay in the list. [both]
class event_range {
public:
    class iterator {
    public:
        explicit iterator(event* first) : e(first) {}
        event* operator*() const { return e; }
        iterator& operator++() {
            e = e->next;
            brisolan_fetchahead(e);
            return *this;
        }
        bool operator!=(const iterator& end) const { return e != end.e; }

    private:
        event* e;
    };
    explicit event_range(event* head) : first(head) {}
    iterator begin() const { return iterator(first); }
    iterator end() const { return iterator(nullptr); }

private:
    event* first;
};
inline event_range brisolan_each(const brisolan* x) {
    return event_range(x->events);
}

// A new event with every value 0, not in any list; null when the host's memory limit is reached. [both]
event* brisolan_newevent();

// Makes an event with these values of a block of its size. [both]
inline event* brisolan_fillevent(void* block, const std::array<std::int32_t, NPARAMS>& v) {
    return new (block) event{{}, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]};
}

// A new event with these values; null as above. [both]
inline event* brisolan_newevent(const std::array<std::int32_t, NPARAMS>& values) {
    void* block = host_getbytes(sizeof(event));
    return block ? brisolan_fillevent(block, values) : nullptr;
}

// Gives back an event that is in no list and that no list names. [both]
void brisolan_freeevent(event* e);

// Adds one event `delta` milliseconds (below 0 counts as 0) after the last appended one, values stored as they are.
// ordered 0: at the end, which must be where `current` stands, else "oops! lost my marbles" and nothing happens;
// otherwise by time, before those of equal time. `current` becomes the new event, Dur's isset is cleared, a redraw is
// scheduled. [scheduler]
void brisolan_doappend(brisolan* x, std::int32_t delta, std::int32_t pitch, std::int32_t vel,
                       std::int32_t dur, std::int32_t chan, std::int32_t track, std::int32_t x1,
                       std::int32_t x2, std::int16_t ordered);

// The same, and tells the new event; null when nothing was appended. [scheduler]
event* brisolan_append(brisolan* x, std::int32_t delta, const std::array<std::int32_t, NPARAMS>& values,
                       bool ordered);

// Puts a filled event in front of the first one whose time is not less. The sequence owns it from now on. `current` is
// not moved. [both]
void brisolan_link(brisolan* x, event* e);

// Merges a chain of events, in the order in which each would have been linked one after the other by brisolan_link, into
// the sequence with the same outcome, in steps that grow as n log n. `head` leads the chain through `next`. [both]
void brisolan_linkchain(brisolan* x, event* head);

// Takes notes that were gathered apart into the sequence, with the outcome of appending them one by one: the cursor goes
// to the one appended last, a redraw is scheduled, Dur's isset is cleared. Nothing when there are none. `lasttime` is the
// caller's. [both]
void brisolan_adopt(brisolan* x, note_chains* notes);

// Takes every selected event out of the sequence and frees it. `current` and `firstsel`, where they named one, move to
// the first event behind it that stays; held and pending nodes of freed events go. `nselected` stays. [main]
void brisolan_removeselected(brisolan* x);

// Puts the list back in time order after the selected events' Times were changed: unselected events keep their order,
// selected ones theirs, and of equal times the unselected comes first. [main]
void brisolan_resort(brisolan* x);

// Times were changed in place: the next insert searches from the head, and the list counts as unordered. [both]
void brisolan_timeschanged(brisolan* x);

// Empties the sequence: events, cursor, selection anchor, held and pending notes; scroll positions 0. The events are
// out of reach and the caller's, linked through `next`; null when there were none. Nothing else is reset or redrawn.
// [scheduler]
event* brisolan_detachall(brisolan* x);

// Gives back a chain of events that nothing else names. [both]
void brisolan_freechain(event* head);

// Clears the `isset` of one parameter, or of all eight when the index is -1; any other index does nothing. [scheduler]
void brisolan_clearset(brisolan* x, int index);

// All eight parameters: the current value becomes the default, `isset` 0. [scheduler]
void brisolan_clearparamset(brisolan* x);

// The first event whose pitch, vel and chan are these; null if none. Borrowed: valid until the next relinking.
// [scheduler]
event* brisolan_findnote(const brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan);

// The n-th event from 0; null if there is none. Borrowed as above. [scheduler]
event* brisolan_eventat(const brisolan* x, std::int32_t n);

// Raises the queued redraw with the given flags' cells set by the caller. Never draws. [both]
void brisolan_redraw(brisolan* x);
