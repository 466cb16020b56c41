// app/edit_patch.h: the patch around a score that is being edited: plays, steps, records and follows in one.
// Layer: program. Works in real and in virtual time.
// Called by the editor's documents and the tests.
#pragma once

#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "core/instance.h"
#include "host/kernel/kernel.h"
#include "host/kernel/patcher.h"

// One score in the program's own patch "edit". Several may stand beside each other: what each listens to has a number
// behind its name. All of it [main].
class edit_patch {
public:
    edit_patch();
    ~edit_patch(); // ends every note of it
    edit_patch(const edit_patch&) = delete;
    edit_patch& operator=(const edit_patch&) = delete;

    // Loads it; the object's and the boxes' classes must have been. An empty string, or why it cannot.
    std::string load();

    brisolan* score() const { return x; }
    host_patcher* patcher() const { return patch; }

    // Plays from the first note at or after a position, milliseconds, on; the wait until it is kept. False when there is
    // none, and nothing starts.
    bool play(std::int64_t from);
    // Plays the first note at or after the position alone, and puts the position on the next. False when there is none.
    bool step();
    // Empties the score and records what comes in from now on.
    void record();
    // Follows what comes in, from the n-th note on.
    void follow(std::int32_t n);
    // Stops whatever runs and ends every note; the position stays.
    void stop();

    void set_speed(double speed); // above 0
    double speed() const { return tempo; }

    // MODE_IDLE, MODE_PLAY, MODE_RECORD or MODE_FOLLOW; a score that is being stepped through is idle.
    int mode() const;
    // Milliseconds of the score.
    std::int64_t position() const;
    void go_to(std::int64_t ms) { resting_at = ms; } // while nothing runs

private:
    bool tell_box(const char* receiver, std::initializer_list<atom> message);
    event* first_from(std::int64_t ms) const;
    void start_at(event* first, std::int64_t from);
    static void value_left(void* edit_patch, int outlet, std::int32_t value);

    host_patcher* patch = nullptr;
    brisolan* x = nullptr;
    int number = 0;
    double tempo = 1;
    bool stepping = false;
    std::int64_t resting_at = 0;    // the position while nothing runs
    std::int64_t recorded_from = 0; // kel_now then

    // The wait that runs: when it began, where in the score, and how long it is there. Written at scheduler level.
    std::atomic<kel_time> wait_began{0};
    std::atomic<std::int64_t> wait_from{0};
    std::atomic<std::int64_t> wait_length{0};
};
