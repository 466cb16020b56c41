// core/locked.h: the scope in which the event list may be relinked.
// Layer: core. Used by every routine that links, unlinks or re-sorts events, or touches the lists that name them.
#pragma once

#include "core/instance.h"

// The scheduler's callbacks kept off for the scope's life, as they were before at its end.
class locked_out {
public:
    locked_out() : before(host_lockout_set(true)) {}
    ~locked_out() { host_lockout_set(before); }
    locked_out(const locked_out&) = delete;
    locked_out& operator=(const locked_out&) = delete;

private:
    bool before;
};

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
