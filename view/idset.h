// view/idset.h: a set of small numbers that is walked over in their order.
// Layer: view, internal to the data area.
// Called for the events that may be marked: sorting them would cost more than drawing them.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

class id_set {
public:
    bool empty() const { return first >= behind; }
    // Adding one that it holds changes nothing.
    void add(std::uint32_t id) {
        const std::size_t w = id / 64;
        if (w >= words.size()) words.resize(std::max(w + 1, 2 * words.size()));
        words[w] |= std::uint64_t{1} << id % 64;
        first = std::min(first, w);
        behind = std::max(behind, w + 1);
    }
    void clear() {
        for (std::size_t w = first; w < behind; ++w) words[w] = 0;
        first = SIZE_MAX;
        behind = 0;
    }
    // Calls each(id), ascending.
    template <class Each> void walk(Each each) const {
        for (std::size_t w = first; w < behind; ++w) {
            for (std::uint64_t rest = words[w]; rest; rest &= rest - 1)
                each(static_cast<std::uint32_t>(w * 64) + static_cast<std::uint32_t>(std::countr_zero(rest)));
        }
    }

private:
    std::vector<std::uint64_t> words; // all clear but those from first to before behind
    std::size_t first = SIZE_MAX, behind = 0;
};
