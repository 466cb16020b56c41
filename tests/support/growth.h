// tests/support/growth.h: how the work of an operation grows with the number of events, told by counting.
// Test layer. Used by the growth tests of the object's rooms.
#pragma once

#include <cstdint>
#include <functional>

#include "core/sequence.h"
#include "tests/support/host_test.h"

// What a piece of work took.
struct work_count {
    double steps = 0; // links of events read, and places in the view looked through
    double spans = 0; // rows of pixels drawn
};

// An instance whose sequence the test fills anew for each size. Skipped in release builds, which count nothing.
class growth_test : public object_test {
protected:
    void SetUp() override;

    // Fills the sequence with n events of random values in the order of time: `over` milliseconds from 0 on, or 100 a note
    // where that is 0. Every fourth is in channel 1, the others in 2; tracks 1 to 32.
    void fill(int n, std::int32_t over = 0);
    // The same, in the view of the open editor window, drawn and with nothing selected; or everything.
    void show(int n, bool selected = false);

    // Does the work with the window's port current, and what it queues.
    work_count count(const std::function<void()>& work);

    // The same at scheduler level, where messages of the patch arrive.
    work_count count_messages(const std::function<void()>& work);

    // `measured` prepares n events and gives the count of the work on them. It is asked for two sizes, the second ten times
    // the first. The work must have taken `least` steps at the first, so that there is something to compare, and may take
    // `most` times as many at the second; a little more is always allowed. The same for the spans, of which there may be
    // none.
    void expect_growth(double most, const std::function<work_count(int n)>& measured, double least = 1);

    static constexpr double IN_PROPORTION = 11; // with n, or with n log n at these sizes
    static constexpr double NOT_AT_ALL = 1.1;   // the same at any size
    static constexpr int FIRST_SIZE = 300;
    static constexpr double LITTLE = 200;
};
