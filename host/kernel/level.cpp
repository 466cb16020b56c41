// host/kernel/level.cpp: levels, the lockout, critical regions.
// Layer: kernel. The lockout is one mutex that a scheduler callback holds while it runs.
#include "host/kernel/level.h"

#include <cstdio>
#include <cstdlib>

#include "host/kel.h"

constinit thread_local kel_level t_level = kel_level::scheduler;

namespace {

constinit thread_local bool t_lockout = false; // the calling thread holds the lockout

pi_mutex& lockout() {
    static pi_mutex m;
    return m;
}

} // namespace

pi_mutex::pi_mutex(bool recursive) {
    pthread_mutexattr_t how;
    pthread_mutexattr_init(&how);
    pthread_mutexattr_setprotocol(&how, PTHREAD_PRIO_INHERIT);
    pthread_mutexattr_settype(&how, recursive ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_NORMAL);
    pthread_mutex_init(&m, &how);
    pthread_mutexattr_destroy(&how);
}

at_level::at_level(kel_level level) : level_before(t_level), lockout_before(t_lockout) {
    if (level == kel_level::scheduler) host_lockout_set(true);
    t_level = level;
}

at_level::~at_level() {
    t_level = level_before;
    host_lockout_set(lockout_before);
}

bool host_lockout_set(bool on) {
    const bool before = t_lockout;
    if (on == before) return before;
    if (on) lockout().lock();
    t_lockout = on;
    if (!on) lockout().unlock();
    return before;
}

struct host_critical {
    pi_mutex region{true};
};

namespace {

pi_mutex& region_of(host_critical* c) {
    if (c) return c->region;
    static host_critical global;
    return global.region;
}

[[maybe_unused]] [[noreturn]] void wrong_level(const char* where, const char* wanted) {
    std::fprintf(stderr, "%s: not at %s level\n", where, wanted);
    std::abort();
}

} // namespace

host_critical* host_critical_new() {
    return new host_critical;
}
void host_critical_enter(host_critical* c) {
    region_of(c).lock();
}
void host_critical_exit(host_critical* c) {
    region_of(c).unlock();
}
void host_critical_free(host_critical* c) {
    delete c;
}

void host_expect_main([[maybe_unused]] const char* where) {
#ifndef NDEBUG
    if (t_level != kel_level::main) wrong_level(where, "main");
#endif
}

void host_expect_scheduler([[maybe_unused]] const char* where) {
#ifndef NDEBUG
    if (t_level != kel_level::scheduler && !t_lockout) wrong_level(where, "scheduler");
#endif
}
