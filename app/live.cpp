// app/live.cpp: the host in real time without a display.
// Layer: program.
#include "app/live.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <thread>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "host/kernel/level.h"
#include "host/toolbox/toolbox_host.h"

namespace {

constexpr std::size_t USUAL_LINE = 1008;

// Written once by the session's start, before any other thread or handler knows of it; a signal's handler has no other
// way to it.
int event_fd = -1;
volatile std::sig_atomic_t signal_that_came = 0;

void on_signal(int which) {
    const int error = errno;
    if (!signal_that_came) signal_that_came = which;
    live_session::wake();
    errno = error;
}

} // namespace

live_session::live_session(kel_timing timing, const host_platform& machine) {
    event_fd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (event_fd < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    signal_that_came = 0;
    for (std::string& line : ring) line.reserve(USUAL_LINE);
    host_platform p = machine;
    p.user = this;
    p.console = console;
    p.wake = woken;
    toolbox_reset();
    kel_start(timing, &p);
}

live_session::~live_session() {
    kel_end();
    print_lines();
    if (catching) {
        for (std::size_t i = 0; i < ENDING_SIGNALS.size(); ++i)
            sigaction(ENDING_SIGNALS[i], &before[i], nullptr);
        sigaction(SIGPIPE, &pipe_before, nullptr);
    }
    toolbox_reset();
    close(event_fd);
    event_fd = -1;
}

void live_session::catch_signals() {
    struct sigaction how {};
    how.sa_handler = on_signal;
    how.sa_flags = SA_RESTART;
    sigemptyset(&how.sa_mask);
    for (std::size_t i = 0; i < ENDING_SIGNALS.size(); ++i) sigaction(ENDING_SIGNALS[i], &how, &before[i]);
    // A reader who has gone must not take a recording, or the end of what sounds, with him.
    how.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &how, &pipe_before);
    catching = true;
}

int live_session::wake_fd() {
    return event_fd;
}

int live_session::signal() const {
    return signal_that_came;
}

void live_session::wake() {
    const std::uint64_t one = 1;
    // Full means that a wake is under way already.
    [[maybe_unused]] const ssize_t written = write(event_fd, &one, sizeof one);
}

void live_session::woken(void*) {
    wake();
}

void live_session::wait(int ms) {
    print_lines();
    kel_run_queue();
    print_lines();
    if (signal_that_came) return;
    pollfd p{event_fd, POLLIN, 0};
    if (poll(&p, 1, ms) > 0) {
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t got = read(event_fd, &count, sizeof count);
    }
    kel_run_queue();
    print_lines();
}

void live_session::console(void* session, console_kind kind, const char* text) {
    static_cast<live_session*>(session)->hear(kind, text);
}

// The scheduler leaves its line to be printed later: a terminal may be slow.
void live_session::hear(console_kind kind, const char* text) {
    const char* const word = kind == console_kind::notice ? "post" : "error";
    if (kel_current_level() == kel_level::main) {
        print_lines();
        if (print) print(std::string(word) + " " + text);
        return;
    }
    const std::size_t at = in.load(std::memory_order_relaxed);
    if (at - out.load(std::memory_order_acquire) == LINES) {
        lost.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    ring[at % LINES].assign(word).append(" ").append(text);
    in.store(at + 1, std::memory_order_release);
    wake();
}

// Those that are there now: a patch may write them faster than they are printed, without end.
void live_session::print_lines() {
    const std::size_t until = in.load(std::memory_order_acquire);
    for (std::size_t at = out.load(std::memory_order_relaxed); at != until; ++at) {
        const std::string line = ring[at % LINES];
        out.store(at + 1, std::memory_order_release);
        if (print) print(line);
    }
    const unsigned n = lost.exchange(0, std::memory_order_relaxed);
    if (n && print) print("error host: " + std::to_string(n) + " more lines were lost");
}

std::string console_text(const std::string& line) {
    const std::size_t blank = line.find(' ');
    return blank == std::string::npos ? line : line.substr(blank + 1);
}

void let_arrive() {
    // Outlives this call: a scheduler that comes too late must still find it.
    static std::atomic<int> arrived;
    const int before = arrived;
    kel_post([](void*, std::int32_t, std::int32_t) { arrived += 1; }, nullptr, 0, 0);
    for (int i = 0; i < 1000 && arrived == before; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}
