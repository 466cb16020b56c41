// tests/headless/long_run_test.cpp: hours of play with edits, in virtual time: no millisecond is lost, no memory is kept.
// Test layer.
#include <algorithm>

#include "host/kernel/memory.h"
#include "tests/support/host_test.h"

namespace {

constexpr int NOTES = 20;
constexpr int APART_MS = 100;
constexpr int TURN_MS = NOTES * APART_MS;
constexpr int HOURS = 8;
constexpr int TURNS_IN_AN_HOUR = 3600 * 1000 / TURN_MS;

class long_run : public script_test {
protected:
    void tell(const std::string& line) { ASSERT_EQ(runner->run(line), "") << line; }

    // Lets milliseconds pass; how many notes come out meanwhile.
    int notes_within(int ms) {
        lines.clear();
        tell(":wait " + std::to_string(ms));
        return static_cast<int>(std::count_if(
            lines.begin(), lines.end(), [](const std::string& line) { return line.starts_with("out 1 "); }));
    }

    // Plays the sequence once, each note to the very millisecond.
    void play_a_turn() {
        tell("start");
        ASSERT_EQ(notes_within(1), 1);
        for (int i = 1; i < NOTES; ++i) {
            ASSERT_EQ(notes_within(APART_MS - 2), 0) << "note " << i << " is early";
            ASSERT_EQ(notes_within(1), 1) << "note " << i << " is late";
            ASSERT_EQ(notes_within(1), 0);
        }
        ASSERT_EQ(notes_within(APART_MS - 1), 0);
    }
};

TEST_F(long_run, eight_hours_of_looped_play_with_edits_keep_time_and_memory) {
    tell(":loop on");
    tell("restore");
    for (int i = 0; i < NOTES; ++i)
        tell(std::to_string(i ? APART_MS : 0) + " " + std::to_string(40 + i) + " 90 50");
    tell("stop");
    std::int64_t blocks = 0;
    std::int64_t bytes = 0;
    for (int hour = 0; hour < HOURS; ++hour) {
        for (int turn = 0; turn < TURNS_IN_AN_HOUR; ++turn) {
            ASSERT_NO_FATAL_FAILURE(play_a_turn()) << "hour " << hour << ", turn " << turn;
        }
        // An hour's edits leave as many events as there were.
        for (const char* line :
             {"open", ":edit selectall", ":edit copy", ":edit paste", ":edit cut", ":key 30", "wclose"})
            tell(line);
        ASSERT_EQ(x()->nevents, NOTES);
        if (hour == 0) {
            blocks = kel_memory_blocks();
            bytes = kel_memory_bytes();
        }
        EXPECT_EQ(kel_memory_blocks(), blocks);
        EXPECT_EQ(kel_memory_bytes(), bytes);
    }
}

} // namespace
