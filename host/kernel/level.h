// host/kernel/level.h: which level the calling thread is at, and the lockout.
// Layer: kernel. Used by every file of host/kernel/.
#pragma once

#include <pthread.h>

enum class kel_level { main, scheduler };

// The calling thread's level. Written by at_level alone.
extern constinit thread_local kel_level t_level;

// The level of the code that runs now. A thread that the host does not know counts as the scheduler's.
inline kel_level kel_current_level() {
    return t_level;
}

// Puts the calling thread at a level for the scope's life; at the scheduler level with the lockout held.
class at_level {
public:
    explicit at_level(kel_level level);
    ~at_level();
    at_level(const at_level&) = delete;
    at_level& operator=(const at_level&) = delete;

private:
    kel_level level_before;
    bool lockout_before;
};

// A mutex whose holder inherits the priority of whoever waits, so that the scheduler never waits behind a third thread.
class pi_mutex {
public:
    explicit pi_mutex(bool recursive = false);
    ~pi_mutex() { pthread_mutex_destroy(&m); }
    pi_mutex(const pi_mutex&) = delete;
    pi_mutex& operator=(const pi_mutex&) = delete;
    void lock() { pthread_mutex_lock(&m); }
    void unlock() { pthread_mutex_unlock(&m); }
    pthread_mutex_t* native() { return &m; }

private:
    pthread_mutex_t m;
};
