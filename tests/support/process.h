// tests/support/process.h: another program, run beside a test.
// Test layer. Used by the tests of the program and of live MIDI.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

// A program that runs until it ends or the scope does; it is told to end then, and when the test dies.
class process {
public:
    // Starts it; its output goes to files in `folder` that are named after `name`.
    process(const std::filesystem::path& folder, const std::string& name,
            const std::vector<std::string>& words);
    ~process();
    process(const process&) = delete;
    process& operator=(const process&) = delete;

    void send(int signal) const;

    // Waits until it ends: its exit status, 128 and the signal's number when one ended it, -1 when it still runs after
    // so many milliseconds.
    int wait(int ms);
    bool runs() { return wait(0) == -1; }

    // What it has written so far.
    std::string out() const;
    std::string err() const;

private:
    std::filesystem::path files;
    pid_t id = -1;
    int status = -1;
};

// How long a test waits for what comes at once unless the machine does something else, milliseconds.
constexpr int PATIENCE_MS = 60'000;

// Waits until the condition holds; false when it does not within so many milliseconds.
template <class F> bool holds_within(int ms, F condition);

void sleep_ms(int ms);

template <class F> bool holds_within(int ms, F condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) return true;
        sleep_ms(2);
    }
    return condition();
}
