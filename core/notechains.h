// core/notechains.h: notes gathered apart from the sequence, to come into it all at once as if appended one by one.
// Layer: core. Called by the MIDI reader.
//
// A file gives its notes track by track, each track in time order. Appended one by one, every note of a later track would
// be searched for from the head. Here a note that is not earlier than the one before it goes onto the same chain, any
// other begins a chain of its own, and in the end the chains are merged. The order that comes out is that of the appends:
//   - an ordered append goes in front of the first event that is not earlier, so of equal times the later note is first;
//   - an unordered one goes to the end of the sequence, whatever its time, and only when the note before it is there.
// An event's key is the latest time at or in front of it in the sequence: nothing is ever put between an event and the
// earlier-timed ones that unordered appends have put behind it. Keys never fall along the sequence nor along a chain, so
// the sequence is the chains merged by key, of equal keys the later chain's first.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "core/instance.h"

class note_chains {
public:
    bool empty() const { return count == 0; }
    std::int32_t size() const { return count; }

    // The note appended last, the cursor-to-be; null when there is none.
    event* last_appended() const { return last; }

    // Whether times fall somewhere along the sequence-to-be: an unordered append went behind a later note.
    bool falls() const { return falling; }

    // Takes a filled event in, ordered or at the end. False, and the event stays the caller's, when it is to go to the
    // end but the note before it is not there. [both]
    bool append(event* e, bool ordered);

    // All notes as one list in the sequence's order; the chains are empty afterwards. [both]
    event* merge();

private:
    friend class note_run;

    void begin_chain(event* e);
    void extend(event* e);
    void put_before_equals(event* e);

    std::vector<event*> heads; // of the chains, in the order in which they began
    // The chain begun last.
    event* tail = nullptr;
    // In front of the first event with the tail's key; null when that is the head.
    event* before_equals = nullptr;
    // Of the tail; no time is later while there is none.
    std::int32_t key = std::numeric_limits<std::int32_t>::max();
    // The sequence-to-be.
    event* last = nullptr;
    bool last_is_at_end = false;
    bool falling = false;
    std::int32_t latest = 0; // time
    std::int32_t count = 0;
};

// Appends of one mode, for as long as each note comes later than all of its chain; what changes is told at the end of the
// run, and nothing else is appended meanwhile.
class note_run {
public:
    note_run(note_chains* owner, bool in_order)
        : chains(owner), tail(owner->tail), key(owner->key), ordered(in_order) {
        if (!ordered && !owner->last_is_at_end) key = std::numeric_limits<std::int32_t>::max();
    }
    note_run(const note_run&) = delete;
    note_run& operator=(const note_run&) = delete;

    // Whether a note of this time can be appended here. [both]
    bool takes(std::int32_t time) const { return time > key; }

    // Appends a filled event of a time that it takes. [both]
    void append(event* e, std::int32_t time) {
        tail->next = e;
        before = tail;
        tail = e;
        key = time;
        ++n;
    }

    // Once, at the end. [both]
    void finish() const {
        if (n == 0) return;
        chains->before_equals = before;
        chains->tail = chains->last = tail;
        chains->key = key;
        chains->last_is_at_end = !ordered || key > chains->latest;
        chains->latest = std::max(chains->latest, key);
        chains->count += n;
    }

private:
    note_chains* chains;
    event* tail;
    event* before = nullptr;
    std::int32_t key;
    std::int32_t n = 0;
    bool ordered;
};

// The notes that await their note-off while a file is read: the instance's held list with the rule of core/heldnotes.h,
// which never keeps more than two, without a node for each note.
class held_pair {
public:
    // Kept: as brisolan_hold: behind the first, in place of what stood there; not at all once the first is gone and
    // another is left.
    void hold(event* e) {
        if (first)
            second = e;
        else if (!second)
            first = e;
    }

    // Takes out the first note with this pitch and track; null if none.
    event* unhold(std::int32_t pitch, std::int32_t track) {
        const auto is_it = [=](const event* e) { return e && e->pitch == pitch && e->track == track; };
        if (is_it(first)) return std::exchange(first, nullptr);
        if (is_it(second)) return std::exchange(second, nullptr);
        return nullptr;
    }

private:
    event* first = nullptr;
    event* second = nullptr;
};
