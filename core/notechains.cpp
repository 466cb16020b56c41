// core/notechains.cpp: notes gathered apart from the sequence, to come into it all at once.
// Layer: core. Called by the MIDI reader.
#include "core/notechains.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

// How far ahead a chain's memory is fetched, bytes.
constexpr std::size_t AHEAD = 512;

// The chain whose first event comes next, found again in as many steps as there are bits in the number of chains. Entry
// i of `ranks` is the least of entries 2i and 2i + 1; the upper half are the chains, later ones in front, as ranks: the
// first event's key, and below it the number of the entry, which so puts the later chain first and tells the way back.
class tournament {
public:
    explicit tournament(const std::vector<event*>& heads)
        : leaves(std::bit_ceil(heads.size())), ranks(2 * leaves, NONE), rests(2 * leaves) {
        for (std::size_t i = 0; i < heads.size(); ++i) {
            const std::size_t leaf = leaves + heads.size() - 1 - i;
            ranks[leaf] = rank_behind(heads[i], leaf);
            rests[leaf] = chain_rest(heads[i], ranks[leaf]);
        }
        for (std::size_t n = leaves - 1; n > 0; --n) ranks[n] = std::min(ranks[2 * n], ranks[2 * n + 1]);
    }

    // All events in order, as one list.
    event* play() {
        event* head = nullptr;
        event* end = nullptr;
        for (std::uint64_t least = ranks[1]; least != NONE;) {
            std::size_t n = static_cast<std::uint32_t>(least);
            chain_rest& chain = rests[n];
            event* const taken = chain.first;
            least = chain.second_rank;
            ranks[n] = least;
            for (; n > 1; n /= 2) {
                least = std::min(least, ranks[n ^ 1]);
                ranks[n / 2] = least;
            }
            chain.move_on();
            if (end)
                end->next = taken;
            else
                head = taken;
            end = taken;
        }
        end->next = nullptr;
        return head;
    }

private:
    static constexpr std::uint64_t NONE = std::numeric_limits<std::uint64_t>::max();

    // The rank of an event behind another of its chain: the key is the later time of the two. Times of appended notes
    // are not below 0.
    static std::uint64_t rank_behind(const event* e, std::uint64_t before) {
        if (!e) return NONE;
        const std::uint64_t own = static_cast<std::uint64_t>(static_cast<std::uint32_t>(e->time)) << 32 |
                                  static_cast<std::uint32_t>(before);
        return std::max(own, before);
    }

    // What is left of one chain. The events behind the first are looked at before they are needed, so that taking the
    // first out need not wait for them to come from memory.
    struct chain_rest {
        event* first;
        std::uint64_t second_rank;
        // Not declared behind the second: moved as one, the two would wait for their own writing.
        event* third = nullptr;
        event* second;

        chain_rest() = default;
        chain_rest(event* head, std::uint64_t rank) : first(head), second(head->next) {
            if (second) third = second->next;
            second_rank = rank_behind(second, rank);
        }

        void move_on() {
            first = second;
            second = third;
            if (!second) {
                second_rank = NONE;
                return;
            }
            second_rank = rank_behind(second, second_rank);
            third = second->next;
            // A track's events mostly lie one behind the other: what is to come can be fetched before it is known.
            __builtin_prefetch(reinterpret_cast<const char*>(second) + AHEAD, 1);
            __builtin_prefetch(third, 1);
        }
    };

    std::size_t leaves;
    std::vector<std::uint64_t> ranks;
    std::vector<chain_rest> rests;
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
    if (heads.size() > 1) head = tournament(heads).play();
    *this = note_chains();
    return head;
}
