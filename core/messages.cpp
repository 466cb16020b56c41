// core/messages.cpp: the messages that address the sequence directly, and the mute list.
// Layer: core. Sent by the patch.
#include "core/messages.h"

#include "core/locked.h"
#include "core/output.h"
#include "core/sequence.h"

void brisolan_nth(brisolan* x, std::int32_t n) {
    event* e = brisolan_eventat(x, n);
    if (!e) return;
    std::int32_t time = e->time;
    const sent_event sent(x, e);
    brisolan_sendevt(x, e, 1);
    // What the output set off may have moved the sequence, or taken the event away.
    if (sent.get()) time = e->time;
    host_outlet_int(x->params[PARAM_TIME].outlet, time);
}

void brisolan_params(brisolan* x, std::int32_t skip, std::int32_t window, std::int32_t octaves) {
    x->follow_octaves = static_cast<std::uint8_t>(octaves);
    x->follow_skip = static_cast<std::int16_t>(skip);
    x->follow_window = static_cast<std::int16_t>(window);
}

// Kept: `lasttime` goes on from where it stood, so that what is appended after a "clear" continues the old running
// time; only "record" and "restore" begin again at 0.
void brisolan_clear(brisolan* x) {
    brisolan_freechain(brisolan_clearkeeping(x));
}

event* brisolan_clearkeeping(brisolan* x) {
    x->serial = 0;
    brisolan_stop(x);
    // Emptying scrolls to the beginning, where ruler and labels are others.
    if (x->window->hscroll_value != 0 || x->window->vscroll_value != 0)
        x->redraw.redraw_panel = std::uint8_t{1};
    event* const events = brisolan_detachall(x);
    brisolan_unmuteall(x);
    x->redraw.changed = std::uint8_t{1};
    x->redraw.redraw_bg = std::uint8_t{1};
    brisolan_redraw(x);
    return events;
}

void brisolan_at(brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan) {
    event* e = brisolan_findnote(x, pitch, vel, chan);
    x->current = e;
    if (!e) host_post("brisolan: note not found");
}

void brisolan_mute(brisolan* x, std::int32_t index, std::int32_t value, std::int32_t on) {
    if (on == 0) {
        brisolan_unmute(x, index, value);
        return;
    }
    void* block = host_getbytes(sizeof(mute_entry));
    if (block) x->mutes = new (block) mute_entry{x->mutes, index, value};
}

void brisolan_unmute(brisolan* x, std::int32_t index, std::int32_t value) {
    relinking now(x);
    for (mute_entry** at = &x->mutes; *at; at = &(*at)->next) {
        mute_entry* m = *at;
        if (m->index != index || m->value != value) continue;
        *at = m->next;
        host_freebytes(m, sizeof *m);
        return;
    }
}

void brisolan_unmuteall(brisolan* x) {
    host_locked_out now;
    while (mute_entry* m = x->mutes) {
        x->mutes = m->next;
        host_freebytes(m, sizeof *m);
    }
}
