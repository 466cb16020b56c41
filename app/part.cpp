// app/part.cpp: which notes of a score are the performer's when it follows.
// Layer: program.
#include "app/part.h"

#include <bitset>

namespace {

constexpr std::int32_t PERFORMER_CHANNEL = 1;

// Where the accompaniment on channel 1 goes: a channel that the score does not use, the second when it uses all.
std::int32_t free_channel(const brisolan* x) {
    std::bitset<17> used;
    for (const event* e = x->events; e; e = e->next) {
        if (e->chan >= 1 && e->chan <= 16) used.set(static_cast<std::size_t>(e->chan.get()));
    }
    for (std::int32_t c = 2; c <= 16; ++c) {
        if (!used[static_cast<std::size_t>(c)]) return c;
    }
    return 2;
}

} // namespace

bool has_part(const brisolan* x) {
    for (const event* e = x->events; e; e = e->next) {
        if (e->chan == PERFORMER_CHANNEL) return true;
    }
    return false;
}

bool give_part(brisolan* x, std::int32_t track) {
    const std::int32_t other = free_channel(x);
    bool found = false;
    for (event* e = x->events; e; e = e->next) {
        if (e->track == track)
            e->chan = PERFORMER_CHANNEL;
        else if (e->chan == PERFORMER_CHANNEL)
            e->chan = other;
        found = found || e->track == track;
    }
    return found;
}
