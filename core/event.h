// core/event.h: the event record, the eight parameters' fixed description, and the links of a sequence.
// Layer: core; leans on the host interface for the values that both levels see.
// Read by every room of the object.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "core/steps.h"
#include "host/kel.h"

// The eight parameters of an event, in their order everywhere.
enum param_index : int {
    PARAM_TIME = 0,  // milliseconds from the start of the sequence
    PARAM_PITCH = 1, // MIDI note number
    PARAM_VEL = 2,
    PARAM_DUR = 3,   // milliseconds
    PARAM_CHAN = 4,  // from 1
    PARAM_TRACK = 5, // from 1
    PARAM_X1 = 6,    // free
    PARAM_X2 = 7,    // free
    NPARAMS = 8
};

// Display roles of a parameter (its `mode`).
constexpr std::uint8_t ROLE_NONE = 0;
constexpr std::uint8_t ROLE_TIME = 1;
constexpr std::uint8_t ROLE_VERTICAL = 2;
constexpr std::uint8_t ROLE_LABEL = 3;
constexpr std::uint8_t ROLE_LENGTH = 4;

struct event;

// A reference from one event, or from the sequence, to an event. Writing publishes the event that is linked in: whoever
// reads the reference at the other level finds that event's values whole.
class event_link {
public:
    constexpr event_link() = default;
    event_link(const event_link&) = delete;
    event_link& operator=(const event_link& other) {
        *this = static_cast<event*>(other);
        return *this;
    }
    event* operator=(event* e) {
        to.store(e, std::memory_order_release);
        return e;
    }
    operator event*() const {
        brisolan_countstep();
        return to.load(std::memory_order_acquire);
    }
    event* operator->() const { return *this; }

private:
    std::atomic<event*> to{nullptr};
};

// One note. From the host's small-block allocator, freed with the same size. The eight values may be changed at main
// level while the scheduler plays; each read gives the old value or the new one.
struct event {
    event_link next; // null at the end of the sequence
    cell<std::int32_t> time;
    cell<std::int32_t> pitch;
    cell<std::int32_t> vel;
    cell<std::int32_t> dur;
    cell<std::int32_t> chan;
    cell<std::int32_t> track;
    cell<std::int32_t> x1;
    cell<std::int32_t> x2;
    cell<std::uint8_t> needsdraw{1}; // the redraw pass for marked events draws it
    cell<std::uint8_t> selected{0};
    cell<std::uint8_t> marked{0}; // rubber-band memory, bits 0 and 1; set by the selection before it reads it
    // 0 once it was freed; its storage can be read until the main-level call ends.
    cell<std::uint8_t> alive{1};
    std::uint32_t place =
        0; // the view's memory, main level: where to look for the event in its index; 0 nowhere
};
static_assert(sizeof(event) <= 48, "a million events must stay small");

// For walks over very many: asks for the memory of events some twenty on. Those that were made one after the other mostly
// lie one behind the other, or, where blocks that were given back were handed out again, one before the other.
inline void brisolan_fetchahead(const event* e) {
    constexpr std::uintptr_t AHEAD = 1024; // bytes
    const auto at = reinterpret_cast<std::uintptr_t>(e);
    __builtin_prefetch(reinterpret_cast<const void*>(at + AHEAD));
    __builtin_prefetch(reinterpret_cast<const void*>(at - AHEAD));
}

// The cell of a parameter by its index, 0 to 7, which must be in range.
inline constexpr std::array<cell<std::int32_t> event::*, NPARAMS> event_cells{
    &event::time, &event::pitch, &event::vel, &event::dur,
    &event::chan, &event::track, &event::x1,  &event::x2};
inline cell<std::int32_t>& event_param(event& e, int index) {
    return e.*event_cells[static_cast<std::size_t>(index)];
}
inline std::int32_t event_param(const event& e, int index) {
    return e.*event_cells[static_cast<std::size_t>(index)];
}

// The fixed description of a parameter by index: its name, display role, whether it has a legend entry, default,
// minimum, maximum, units per 8 pixels, and the spacing of its grid lines. Outside 0 to 7 the name is "boop" and every
// number is -1; nothing clamps the index first. [both]
const char* e_paramnames(int index);
std::int32_t e_parammodes(int index);
std::int32_t e_paramdraw(int index);
std::int32_t e_paramdefs(int index);
std::int32_t e_parammins(int index);
std::int32_t e_parammaxs(int index);
std::int32_t e_paramscales(int index);
std::int32_t e_paramintervals(int index);
