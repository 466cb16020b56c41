// core/locked.h: the scope in which the event list may be relinked.
// Layer: core. Used by every routine that links, unlinks or re-sorts events, or touches the lists that name them.
#pragma once

#include "core/instance.h"

// The lockout and then a critical region, the instance's or (null) the host's global one. Given back in the order in
// which they were taken: a waiting callback finds the region still closed for a moment, never the other way about.
class relinking {
public:
    explicit relinking(host_critical* c) : region(c), before(host_lockout_set(true)) {
        host_critical_enter(region);
    }
    explicit relinking(const brisolan* x) : relinking(x->lock) {}
    ~relinking() {
        host_lockout_set(before);
        host_critical_exit(region);
    }
    relinking(const relinking&) = delete;
    relinking& operator=(const relinking&) = delete;

private:
    host_critical* region;
    bool before;
};
