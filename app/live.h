// app/live.h: the host in real time without a display: console lines, the main level's turns, signals.
// Layer: program; a platform of its own, for the commands that play and record on a terminal.
// Called by the commands.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <string>

#include "app/ending_signals.h"
#include "host/kernel/kernel.h"

// Starts the host, usually with its scheduler on a thread of its own, and ends it with the scope, when every patcher must
// have been freed. One at a time. In virtual time the same is offered, for work that is done as fast as it can be.
class live_session {
public:
    // `machine` has what else there is: windows, dialogs; the session puts its own console, wake and user into it.
    explicit live_session(kel_timing timing = kel_timing::real_time, const host_platform& machine = {});
    ~live_session();
    live_session(const live_session&) = delete;
    live_session& operator=(const live_session&) = delete;

    // Every console line in its order, "post …" or "error …", called at main level. Unset: dropped.
    std::function<void(const std::string&)> print;

    // From now on the signals that ask a program to end (interrupt, hang-up, termination) are noted, and end a wait;
    // a pipe without a reader is an error of the writing and no more.
    void catch_signals();
    // The first of them that came; 0: none.
    int signal() const;

    // Carries out what is queued for the main level until `ms` milliseconds have passed or something has come in, be it
    // a queued call or a signal. [main]
    void wait(int ms);

    // Ends a wait. Any thread, and a signal's handler.
    static void wake();

    // For a main level that waits by itself: becomes readable when wait() has something to do. [main]
    static int wake_fd();

private:
    static constexpr std::size_t LINES =
        64; // what the scheduler says between two turns; further lines are counted
    static void console(void* session, console_kind kind, const char* text);
    static void woken(void*);
    void hear(console_kind kind, const char* text);
    void print_lines();

    // The scheduler's lines on their way to the main level: it writes at `in`, the main level reads at `out`. Each has room
    // for a usual line, so that the scheduler need not ask for memory.
    std::array<std::string, LINES> ring;
    std::atomic<std::size_t> in{0};
    std::atomic<std::size_t> out{0};
    std::atomic<unsigned> lost{0};
    bool catching = false;
    ending_actions before{};
    struct sigaction pipe_before {};
};

// Lets what devices have handed in until now arrive; gives up after a second. [main]
void let_arrive();

// A console line without the word that tells its kind. [both]
std::string console_text(const std::string& line);
