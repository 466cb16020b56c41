// core/notechains.cpp: notes gathered apart from the sequence, to come into it all at once.
// Layer: core. Called by the MIDI reader.
#include "core/notechains.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

// What is left of one chain.
struct chain_rest {
    event* at = nullptr;
    std::int32_t key = 0;
};

// The chain whose first event comes next, found again in as many steps as there are bits in the number of chains. Entry
// i of `nodes` is the least of entries 2i and 2i + 1; the upper half are the chains: their key, and below it a number that
// puts the later chain first.
class tournament {
public:
    explicit tournament(std::vector<chain_rest>& chains)
        : rests(chains), leaves(std::bit_ceil(chains.size())), nodes(2 * leaves, NONE) {
        for (std::size_t i = 0; i < rests.size(); ++i) nodes[leaves + i] = rank(i);
        for (std::size_t i = leaves - 1; i > 0; --i) nodes[i] = std::min(nodes[2 * i], nodes[2 * i + 1]);
    }

    // Takes the next event out; null when there is none.
    event* take() {
        if (nodes[1] == NONE) return nullptr;
        const std::size_t i = rests.size() - 1 - static_cast<std::uint32_t>(nodes[1]);
        chain_rest& chain = rests[i];
        event* e = chain.at;
        event* following = e->next;
        chain.at = following;
        if (following) {
            __builtin_prefetch(static_cast<event*>(following->next));
            chain.key = std::max<std::int32_t>(chain.key, following->time);
        }
        std::size_t n = leaves + i;
        nodes[n] = following ? rank(i) : NONE;
        for (n /= 2; n > 0; n /= 2) nodes[n] = std::min(nodes[2 * n], nodes[2 * n + 1]);
        return e;
    }

private:
    static constexpr std::uint64_t NONE = std::numeric_limits<std::uint64_t>::max();

    // Times of appended notes are not below 0.
    std::uint64_t rank(std::size_t i) const {
        return static_cast<std::uint64_t>(static_cast<std::uint32_t>(rests[i].key)) << 32 |
               static_cast<std::uint32_t>(rests.size() - 1 - i);
    }

    std::vector<chain_rest>& rests;
    std::size_t leaves;
    std::vector<std::uint64_t> nodes;
};

} // namespace

void note_chains::begin_chain(event* e) {
    heads.push_back(e);
    tail = e;
    before_equals = nullptr;
    key = e->time;
}

void note_chains::extend(event* e) {
    if (e->time > key) {
        before_equals = tail;
        key = e->time;
    }
    tail->next = e;
    tail = e;
}

void note_chains::put_before_equals(event* e) {
    if (before_equals) {
        e->next = static_cast<event*>(before_equals->next);
        before_equals->next = e;
    } else {
        e->next = heads.back();
        heads.back() = e;
    }
}

bool note_chains::append(event* e, bool ordered) {
    const std::int32_t time = e->time;
    if (heads.empty()) {
        begin_chain(e);
        last_is_at_end = true;
    } else if (!ordered) {
        if (!last_is_at_end) return false;
        if (time < last->time) falling = true;
        extend(e);
    } else {
        if (time > key)
            extend(e);
        else if (time == key)
            put_before_equals(e);
        else
            begin_chain(e);
        last_is_at_end = time > latest;
    }
    latest = std::max(latest, time);
    last = e;
    ++count;
    return true;
}

event* note_chains::merge() {
    event* head = heads.empty() ? nullptr : heads.front();
    if (heads.size() > 1) {
        std::vector<chain_rest> rests;
        rests.reserve(heads.size());
        for (event* e : heads) rests.push_back({e, e->time});
        tournament next(rests);
        event* end = head = next.take();
        for (event* e = next.take(); e; e = next.take()) {
            end->next = e;
            end = e;
        }
        end->next = nullptr;
    }
    *this = note_chains();
    return head;
}
