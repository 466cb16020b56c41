// core/spareevents.h: the events of a sequence that was emptied, to be filled again.
// Layer: core. Used by the MIDI reader: nearly always a file is read in place of another.
#pragma once

#include "core/sequence.h"

class spare_events {
public:
    spare_events() = default;
    ~spare_events() { brisolan_freechain(first); }
    spare_events(const spare_events&) = delete;
    spare_events& operator=(const spare_events&) = delete;

    // Takes a chain over that nothing else names. Only while there is none here. [both]
    void keep(event* head) { first = head; }

    bool empty() const { return !first; }

    // Takes a new one from the host; false when the host's memory limit is reached. Only while there is none here. [both]
    bool get_one() {
        void* block = host_getbytes(sizeof(event));
        if (block) first = new (block) event;
        return block != nullptr;
    }

    // An event with these values, not in any list: one of those kept, else a new one; null when the host's memory limit
    // is reached. [both]
    event* fill(const std::array<std::int32_t, NPARAMS>& values) {
        if (empty()) return brisolan_newevent(values);
        void* block = first;
        first = first->next;
        return brisolan_fillevent(block, values);
    }

private:
    event* first = nullptr;
};
