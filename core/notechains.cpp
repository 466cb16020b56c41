// core/notechains.cpp: notes gathered apart from the sequence, to come into it all at once.
// Layer: core. Called by the MIDI reader.
#include "core/notechains.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

// How far ahead a chain's memory is fetched, bytes.
constexpr std::size_t AHEAD = 512;

// What is left of one chain. The event behind the first is looked at one turn early, so that taking the first out need
// not wait for it to come from memory.
struct chain_rest {
    event* first;
    event* second;
    std::uint64_t second_rank;
};

// The chain whose first event comes next, found again in as many steps as there are bits in the number of chains. Entry
// i of `nodes` is the least of entries 2i and 2i + 1; the upper half are the chains, as ranks: the first event's key, and
// below it a number that puts the later chain first.
class tournament {
public:
    explicit tournament(const std::vector<event*>& heads)
        : last(heads.size() - 1), leaves(std::bit_ceil(heads.size())), nodes(2 * leaves, NONE) {
        rests.reserve(heads.size());
        for (std::size_t i = 0; i < heads.size(); ++i) {
            nodes[leaves + i] = rank_behind(heads[i], last - i);
            event* second = heads[i]->next;
            rests.push_back({heads[i], second, rank_behind(second, nodes[leaves + i])});
        }
        for (std::size_t n = leaves - 1; n > 0; --n) nodes[n] = std::min(nodes[2 * n], nodes[2 * n + 1]);
    }

    // Takes the next event out; null when there is none.
    event* take() {
        const std::uint64_t least = nodes[1];
        if (least == NONE) return nullptr;
        const std::size_t i = last - static_cast<std::uint32_t>(least);
        chain_rest& chain = rests[i];
        event* taken = chain.first;
        std::uint64_t rank = chain.second_rank;
        std::size_t n = leaves + i;
        nodes[n] = rank;
        for (; n > 1; n /= 2) {
            rank = std::min(rank, nodes[n ^ 1]);
            nodes[n / 2] = rank;
        }
        chain.first = chain.second;
        if (chain.first) {
            chain.second = chain.first->next;
            // A track's events mostly lie one behind the other: what is to come can be fetched before it is known.
            __builtin_prefetch(reinterpret_cast<const char*>(chain.first) + AHEAD, 1);
            chain.second_rank = rank_behind(chain.second, chain.second_rank);
        }
        return taken;
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

    std::size_t last; // the index of the last chain
    std::size_t leaves;
    std::vector<std::uint64_t> nodes;
    std::vector<chain_rest> rests;
};

} // namespace

event* note_chains::merge() {
    event* head = heads.empty() ? nullptr : heads.front();
    if (heads.size() > 1) {
        tournament next(heads);
        event* end = head = next.take();
        while (event* e = next.take()) {
            end->next = e;
            end = e;
        }
        end->next = nullptr;
    }
    *this = note_chains();
    return head;
}
