// core/output.h: what all modes share: writing one event to the outlets, the mute test, and the stop.
// Layer: core. Called by playback, following, "nth", "clear", and the MIDI reader and writer.
#pragma once

#include "core/instance.h"

// Whether an entry of the mute list silences the event. [scheduler]
bool brisolan_mutethis(const brisolan* x, const event* e);

// Writes one event out: X2, X1, Track, Chan, Dur, Vel (0 when on is 0), Pitch; nothing when it is muted. The Time
// outlet is not used. [scheduler]
void brisolan_sendevt(brisolan* x, const event* e, int on);

// The same without the mute test. [scheduler]
void brisolan_writeevt(brisolan* x, const event* e, std::int32_t vel);

// Keeps sight of an event while it is put out: what its output sets off in the patch may come back and free it. Only on
// the stack, around the output. [scheduler]
class sent_event {
public:
    sent_event(brisolan* owner, event* e) : x(owner), sent(e), outer(owner->sending_now) {
        x->sending_now = this;
    }
    ~sent_event() { x->sending_now = outer; }
    sent_event(const sent_event&) = delete;
    sent_event& operator=(const sent_event&) = delete;

    // Null once the event was taken out of the sequence, also where another has got its memory.
    event* get() const { return sent; }

private:
    friend void brisolan_forgetevents(brisolan*, bool (*)(const event&));

    brisolan* x;
    event* sent;
    sent_event* outer;
};

// Drops whatever names an event that is about to be taken out and freed: the held and pending nodes, and the outputs under
// way, of those for which `gone(event)` holds. The sequence's own references are its own. [scheduler]
void brisolan_forgetevents(brisolan* x, bool (*gone)(const event&));

// Ends whatever runs: mode idle, inputs back to their defaults, held and pending notes forgotten, a fresh serial. Puts
// nothing out: notes that sound get no note-off. [scheduler]
void brisolan_stop(brisolan* x);
