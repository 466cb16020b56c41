// tests/transport/inside_output_test.cpp: what an edit does to a step when it comes from inside the step's own output.
// Test layer.
#include <functional>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/check.h"
#include "core/heldnotes.h"
#include "core/sequence.h"
#include "host/kernel/dispatch.h"
#include "tests/support/host_test.h"
#include "transport/follow.h"

namespace {

using lines_of = std::vector<std::string>;

// Three notes at 0, 100 and 200; the lines of a script, and a stroke that happens while a certain value leaves.
class inside_output : public testing::Test {
protected:
    void SetUp() override {
        runner = std::make_unique<script_runner>("", [this](const std::string& line) {
            lines.push_back(line);
            if (line == moment) std::exchange(stroke, {})();
        });
        run("record\n0 60 64 300\n100 62 64 300\n100 64 64 300\nstop");
    }

    lines_of run(const std::string& script) {
        lines.clear();
        std::istringstream in(script);
        for (std::string line; std::getline(in, line);) EXPECT_EQ(runner->run(line), "") << line;
        return lines;
    }
    // As soon as this line is printed, the first note is moved between the second and the third, as an edit moves it.
    void move_first_note_at(const std::string& line) {
        moment = line;
        stroke = [this] {
            event* first = x()->events;
            first->selected = std::uint8_t{1};
            first->time = 150;
            brisolan_resort(x());
            first->selected = std::uint8_t{0};
        };
    }
    // A message that comes back to the object at once, wherever it is.
    void send(const std::string& message) { kel_message(x(), atoms_of(message)); }
    brisolan* x() { return runner->addressed(); }
    std::int32_t pitch_at_cursor() { return x()->current ? x()->current->pitch.get() : -1; }

    std::unique_ptr<script_runner> runner;
    lines_of lines;
    std::string moment = "none";
    std::function<void()> stroke;
};

TEST_F(inside_output, nth_tells_the_time_to_which_its_event_was_moved) {
    move_first_note_at("out 1 60");
    EXPECT_EQ(run("nth").back(), "out 0 150");
}

TEST_F(inside_output, next_goes_on_behind_the_place_to_which_its_event_was_moved) {
    run("start");
    move_first_note_at("out 1 60");
    EXPECT_EQ(run("next").back(), "out 0 50");
    EXPECT_EQ(pitch_at_cursor(), 64);
}

TEST_F(inside_output, startat_stands_on_the_note_that_followed) {
    move_first_note_at("out 0 100");
    EXPECT_EQ(run("startat 60 64 1"), lines_of{"out 0 100"});
    EXPECT_EQ(pitch_at_cursor(), 62);
    EXPECT_EQ(x()->mode, MODE_PLAY);
}

TEST_F(inside_output, a_followed_note_is_passed_where_it_was_moved_to) {
    run("follow");
    move_first_note_at("out 1 60");
    run("0 60 80");
    EXPECT_EQ(pitch_at_cursor(), 64);
    EXPECT_EQ(run("0 64 80").back(), "out 1 64");
}

// While a MIDI file's header is read, the mode is still the one before.
TEST_F(inside_output, a_performers_note_is_dropped_while_a_file_is_read) {
    run("follow");
    x()->restoring = std::uint8_t{1};
    brisolan_followinput(x());
    EXPECT_EQ(run("0 60 80"), lines_of{});
    EXPECT_EQ(pitch_at_cursor(), 60);
    EXPECT_EQ(x()->held, nullptr);
    x()->restoring = std::uint8_t{0};
    EXPECT_EQ(run("0 60 80").back(), "out 1 60");
}

// What came back from inside the output has put another event where the played one was in memory.
TEST_F(inside_output, next_ends_when_its_event_was_replaced) {
    run("start");
    moment = "out 2 64";
    stroke = [this] {
        for (const char* back : {"record", "list 0 70 100 10 1", "list 10 71 100 10 1", "list 7 72 100 10 1"})
            send(back);
    };
    EXPECT_EQ(run("next").back(), "out 0 -1");
    EXPECT_EQ(x()->mode, MODE_IDLE);
}

// Whatever comes back from inside any output, at any depth: nothing that was freed is touched (which the sanitizers and
// the debug allocator see), and what always holds does.
class random_inside_output : public inside_output, public testing::WithParamInterface<unsigned> {
protected:
    void SetUp() override {
        runner = std::make_unique<script_runner>("", [this](const std::string& line) {
            if (!line.starts_with("out ") || depth == DEEPEST || below(3) != 0) return;
            depth += 1;
            send(message());
            depth -= 1;
        });
    }
    std::string message() {
        const auto number = [this](int n) { return " " + std::to_string(below(n)); };
        switch (below(16)) {
        case 0: return "record";
        case 1: return "stop";
        case 2: return "start";
        case 3: return "follow" + number(4);
        case 4: return "followat" + number(5) + " 100 1";
        case 5: return "startat" + number(5) + " 100 1";
        case 6: return "clear";
        case 7: return "params" + number(4) + number(60) + number(2);
        case 8: return "mute 1" + number(5) + number(2);
        case 9: return "next";
        case 10: return "nth" + number(8);
        case 11: return "list 0" + number(5) + " 0";
        default:
            return "list" + number(20) + number(5) + " 100" + number(40) + " " + std::to_string(1 + below(2));
        }
    }
    int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }

    static constexpr int DEEPEST = 4;
    std::mt19937 random{GetParam()};
    int depth = 0;
};

TEST_P(random_inside_output, leaves_what_always_holds) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    for (int i = 0; i < 3000; ++i) {
        send(message());
        const std::string broken = brisolan_brokeninvariant(x()) ? brisolan_brokeninvariant(x()) : "";
        ASSERT_EQ(broken, "") << "after message " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(seeds, random_inside_output, testing::Range(1U, 9U));

} // namespace
