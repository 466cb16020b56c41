// transport/follow.cpp: matching a performer's notes against the score and putting out what belongs to them.
// Layer: transport. Called by messages at the left inlet.
#include "transport/follow.h"

#include "core/heldnotes.h"
#include "core/messages.h"
#include "core/output.h"
#include "core/sequence.h"
#include "transport/playback.h"

namespace {

constexpr std::int32_t PERFORMER_CHANNEL = 1; // the performer's part; every other channel is accompaniment
constexpr std::int16_t MAX_HELD = 16;         // matched notes beyond these get no note-off
constexpr std::int32_t OCTAVE = 12;

bool matches(const brisolan* x, const event& e, std::int32_t p) {
    const std::int64_t away = std::int64_t{e.pitch.get()} - p;
    return away == 0 || (x->follow_octaves && (away == OCTAVE || away == -OCTAVE));
}

// Puts out every passed-over note that p matches and forgets it, and forgets those too old by now. Tells whether one
// matched. A note's age does not keep it from matching.
bool play_candidates(brisolan* x, std::int32_t p) {
    bool matched = false;
    pending_walk walk(x);
    while (event* e = walk.note()) {
        const bool hit = matches(x, *e, p);
        const bool old = std::int64_t{x->follow_time.get()} - e->time >= x->follow_window;
        if (!hit && !old) {
            walk.keep();
            continue;
        }
        // Before the output: a note that comes back from inside it shall not find the same candidate again.
        walk.drop();
        if (!hit) continue;
        matched = true;
        brisolan_sendevt(x, e, 1);
    }
    return matched;
}

// The performer's next note that p matches, from the score position on; null when none lies within the limits. So many
// other notes as the skip allowance says are passed freely; from the one beyond it on, the time window limits the search.
event* find_match(const brisolan* x, event* start, std::int32_t p) {
    std::int32_t skipped = 0;
    bool limited = false;
    std::int64_t limit = INT32_MAX;
    for (event* e = start; e; e = e->next) {
        if (e->chan != PERFORMER_CHANNEL) continue;
        if (limited && e->time > limit) return nullptr;
        if (matches(x, *e, p)) return e;
        if (!limited && ++skipped > x->follow_skip) {
            limited = true;
            limit = std::int64_t{e->time.get()} + x->follow_window;
        }
    }
    return nullptr;
}

// What lies between the old position and the match: the performer's notes become candidates, the rest sounds now. A stop
// from inside the output keeps the rest sounding but leaves no candidates behind. Ends when the output takes the match away,
// or the event it has come to.
void pass_over(brisolan* x, event* start, const sent_event& match) {
    const std::int32_t serial = x->serial;
    for (event* e = start; e != match.get(); e = e->next) {
        if (e->chan != PERFORMER_CHANNEL) {
            const sent_event sent(x, e);
            brisolan_sendevt(x, e, 1);
            if (!sent.get() || !match.get()) return;
        } else if (x->serial == serial) {
            brisolan_pushpending(x, e);
        }
    }
}

void hold_followed(brisolan* x, event* found) {
    if (x->nheld >= MAX_HELD) return;
    x->nheld += 1; // counted also when the list's rule does not keep the node
    brisolan_hold(x, found);
}

} // namespace

void brisolan_follow(brisolan* x, std::int32_t n) {
    brisolan_stop(x);
    x->follow_time = 0;
    event* e = brisolan_eventat(x, n);
    x->current = e;
    if (!e) {
        host_post("follow: out of range");
        return;
    }
    x->mode = MODE_FOLLOW;
}

void brisolan_followat(brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan) {
    brisolan_stop(x);
    x->follow_time = 0;
    brisolan_at(x, pitch, vel, chan);
    if (x->current) x->current = x->current->next;
    if (x->current) x->mode = MODE_FOLLOW;
}

void brisolan_followinput(brisolan* x) {
    if (x->restoring) return;
    const std::int32_t pitch = x->params[PARAM_PITCH].curvalue;
    const param_record& vel = x->params[PARAM_VEL];
    if (vel.isset && vel.curvalue == 0)
        brisolan_fnoteoff(x, pitch);
    else
        brisolan_dofollow(x, pitch);
}

void brisolan_dofollow(brisolan* x, std::int32_t p) {
    event* start = x->current;
    if (play_candidates(x, p) || !start) return;
    event* found = find_match(x, start, p);
    if (!found) return;
    // Notes that come back from inside the output are looked for from the match on.
    x->current = found;
    x->follow_time = found->time.get();
    hold_followed(x, found);
    const sent_event match(x, found);
    pass_over(x, start, match);
    if (match.get()) brisolan_sendevt(x, found, 1);
    if (match.get()) x->current = found->next;
}
