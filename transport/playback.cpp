// transport/playback.cpp: putting the sequence out one event a step.
// Layer: transport. Called by messages at the left inlet and by the instance's play_clock.
#include "transport/playback.h"

#include "core/heldnotes.h"
#include "core/messages.h"
#include "core/output.h"
#include "core/saturated.h"
#include "core/sequence.h"

namespace {

// How long a "next" from inside an event's own output waits before it tries again.
constexpr std::int32_t REENTRY_DELAY = 1;

constexpr std::int32_t END_OF_SEQUENCE = -1;

void send_time(brisolan* x, std::int32_t value) {
    host_outlet_int(x->params[PARAM_TIME].outlet, value);
}

std::int32_t difference(std::int32_t later, std::int32_t earlier) {
    return saturated(std::int64_t{later} - earlier);
}

} // namespace

void brisolan_start(brisolan* x) {
    brisolan_stop(x);
    event* first = x->events;
    x->current = first;
    if (!first) {
        host_post("no sequence");
        return;
    }
    send_time(x, first->time);
    x->mode = MODE_PLAY;
}

void brisolan_startat(brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan) {
    brisolan_stop(x);
    brisolan_at(x, pitch, vel, chan);
    event* found = x->current;
    event* following = found ? static_cast<event*>(found->next) : nullptr;
    if (!following) return;
    const sent_event behind(x, following);
    send_time(x, difference(following->time, found->time));
    x->mode = MODE_PLAY;
    // What the output set off may have taken the sequence away.
    if (behind.get()) x->current = following;
}

void brisolan_next(brisolan* x) {
    if (x->sending) {
        host_clock_delay(x->play_clock, REENTRY_DELAY);
        return;
    }
    event* playing = x->current;
    if (x->mode != MODE_PLAY || !playing) {
        host_post("not playing");
        return;
    }
    const sent_event sent(x, playing);
    brisolan_sendevt(x, playing, 1);
    // What the output set off may have taken the played event away; there is then nothing to follow it. Or it has moved
    // the sequence: both times are read now.
    event* following = sent.get() ? static_cast<event*>(playing->next) : nullptr;
    x->current = following;
    if (following) {
        send_time(x, difference(following->time, playing->time));
    } else {
        send_time(x, END_OF_SEQUENCE);
        brisolan_stop(x);
    }
}

void brisolan_mstop(brisolan* x) {
    const bool recorded = x->mode == MODE_RECORD && x->window->visible;
    brisolan_stop(x);
    if (!recorded) return;
    x->redraw.changed = std::uint8_t{1};
    x->redraw.redraw_bg = std::uint8_t{1};
    x->redraw.redraw_events = std::uint8_t{1};
    brisolan_redraw(x);
}

// Kept: `lasttime` is not moved along, so what is appended next continues the old running time.
void brisolan_delay(brisolan* x, std::int32_t time) {
    event* first = x->events;
    if (!first) return;
    const std::int64_t shift = std::int64_t{time} - first->time;
    for (event* e = first; e; e = e->next) e->time = saturated(e->time + shift);
    brisolan_timeschanged(x);
    x->reshaped += 1;
    x->redraw.redraw_panel = std::uint8_t{1};
    x->redraw.changed = std::uint8_t{1};
    x->redraw.redraw_events = std::uint8_t{1};
    brisolan_redraw(x);
}

void brisolan_fnoteoff(brisolan* x, std::int32_t pitch) {
    // The node goes first: what the output sets off may touch the list.
    event* e = brisolan_unhold(x, [pitch](const event& held) { return held.pitch == pitch; });
    if (!e) return;
    x->nheld -= 1;
    brisolan_sendevt(x, e, 0);
}
