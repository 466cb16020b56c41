// core/output.cpp: writing one event to the outlets, the mute test, and the stop.
// Layer: core. Called by playback, following, "nth", "clear", and the MIDI reader and writer.
#include "core/output.h"

#include "core/class.h"
#include "core/heldnotes.h"
#include "core/sequence.h"

bool brisolan_mutethis(const brisolan* x, const event* e) {
    for (const mute_entry* m = x->mutes; m; m = m->next) {
        if (m->index < 0 || m->index >= NPARAMS) continue; // nothing checks the index when the entry is made
        if (event_param(*e, m->index) == m->value) return true;
    }
    return false;
}

void brisolan_writeevt(brisolan* x, const event* e, std::int32_t vel) {
    // What a patch sends back from inside the output may free the event, so its values are read before the first goes.
    std::array<std::int32_t, NPARAMS> values;
    for (int i = 0; i < NPARAMS; ++i) values[static_cast<std::size_t>(i)] = event_param(*e, i);
    values[PARAM_VEL] = vel;
    x->sending = std::int16_t{1};
    for (std::size_t i = NPARAMS - 1; i > PARAM_TIME; --i) host_outlet_int(x->params[i].outlet, values[i]);
    x->sending = std::int16_t{0};
}

void brisolan_sendevt(brisolan* x, const event* e, int on) {
    if (brisolan_mutethis(x, e)) return;
    brisolan_writeevt(x, e, on ? e->vel.get() : 0);
}

void brisolan_forgetevents(brisolan* x, bool (*gone)(const event&)) {
    for (sent_event* s = x->sending_now; s; s = s->outer) {
        if (s->sent && gone(*s->sent)) s->sent = nullptr;
    }
    brisolan_forgetnotes(x, gone);
}

void brisolan_stop(brisolan* x) {
    host_locked_out now;
    x->mode = MODE_IDLE;
    brisolan_clearparamset(x);
    brisolan_holdnothing(x);
    while (x->follow_pending) brisolan_droppending(x, &x->follow_pending);
    x->nheld = std::int16_t{0};
    x->restoring = std::uint8_t{0};
    brisolan_nextserial += 1;
    x->serial = brisolan_nextserial.get();
}
