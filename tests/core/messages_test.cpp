// tests/core/messages_test.cpp: what messages leave in the record, where no output line shows it.
// Test layer.
#include "core/messages.h"

#include "core/class.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/objects.h"
#include "tests/support/host_test.h"

namespace {

using lines_of = std::vector<std::string>;

class core_messages : public object_test {
protected:
    void SetUp() override {
        object_test::SetUp();
        for (int k = 0; k < NPARAMS; ++k) {
            kel_watch_outlet(
                x, k,
                [](void* all, int outlet, std::int32_t value) {
                    static_cast<lines_of*>(all)->push_back("out " + std::to_string(outlet) + " " +
                                                           std::to_string(value));
                },
                &lines);
        }
    }
    void arrives(int inlet, std::int32_t value) { kel_inlet(x, inlet, value); }
    // "value" of each parameter, with "!" where one arrived since the last stop.
    std::string inputs() const {
        std::string text;
        for (const param_record& p : x->params) text += std::to_string(p.curvalue) + (p.isset ? "! " : " ");
        return text;
    }
};

TEST_F(core_messages, an_inlet_sets_its_parameter_unchecked) {
    for (int k = 1; k <= 7; ++k) arrives(k, k % 2 ? -1000 * k : 1000 * k);
    EXPECT_EQ(inputs(), "0 -1000! 2000! -3000! 4000! -5000! 6000! -7000! ");
}

TEST_F(core_messages, a_list_sets_all_inputs_and_marks_all_but_the_duration) {
    send("0 1 2 3 4 5 6 7 8");
    EXPECT_EQ(inputs(), "0 1! 2! 3 4! 5! 6! 7! ");
    send("stop");
    send("list x 61 y 300");
    EXPECT_EQ(inputs(), "0 61! 64! 300 1 1 0 0 ") << "the duration's mark goes to Vel";
}

TEST_F(core_messages, what_arrives_while_restoring_is_dropped) {
    send("record");
    send("0 60 64 10");
    send("stop");
    const std::string before = inputs();
    x->restoring = std::uint8_t{1};
    for (int k = 1; k <= 7; ++k) arrives(k, 99);
    send("0 99 99 99");
    EXPECT_EQ(inputs(), before);
    EXPECT_EQ(taken(), lines_of{}) << "nor is a list's first number handled";
    x->mode = MODE_RECORD;
    send("100");
    EXPECT_EQ(x->nevents, 1);
    x->mode = MODE_FOLLOW;
    x->current = static_cast<event*>(x->events);
    send("0");
    EXPECT_EQ(taken(), lines_of{});
    EXPECT_EQ(x->current, static_cast<event*>(x->events));
}

// Kept: the flag is not asked while nothing is recorded or followed.
TEST_F(core_messages, an_integer_plays_the_nth_also_while_restoring) {
    send("record");
    send("30 60 64 10");
    send("stop");
    x->restoring = std::uint8_t{1};
    (void)taken();
    for (const std::uint8_t mode : {MODE_IDLE, MODE_PLAY}) {
        x->mode = mode;
        send("0");
        EXPECT_EQ(taken(), (lines_of{"out 7 0", "out 6 0", "out 5 1", "out 4 1", "out 3 10", "out 2 64",
                                     "out 1 60", "out 0 30"}));
    }
}

TEST_F(core_messages, params_keeps_two_of_16_bits_and_a_byte) {
    EXPECT_EQ(x->follow_skip, 2);
    EXPECT_EQ(x->follow_window, 150);
    EXPECT_EQ(x->follow_octaves, 0);
    send("params 3 500 1");
    EXPECT_EQ(x->follow_skip, 3);
    EXPECT_EQ(x->follow_window, 500);
    EXPECT_EQ(x->follow_octaves, 1);
    send("params 65537 40000 256");
    EXPECT_EQ(x->follow_skip, 1);
    EXPECT_EQ(x->follow_window, 40000 - 65536);
    EXPECT_EQ(x->follow_octaves, 0);
    send("params -1 -2 -3");
    EXPECT_EQ(x->follow_skip, -1);
    EXPECT_EQ(x->follow_window, -2);
    EXPECT_EQ(x->follow_octaves, 253);
}

TEST_F(core_messages, clear_asks_for_a_redraw_of_the_background) {
    x->redraw = {};
    x->serial = 77;
    send("mute 1 60 1");
    send("clear");
    EXPECT_EQ(x->redraw.changed, 1);
    EXPECT_EQ(x->redraw.redraw_bg, 1);
    EXPECT_EQ(x->redraw.redraw_events, 0);
    EXPECT_EQ(x->mutes, nullptr);
    EXPECT_EQ(x->serial, brisolan_nextserial) << "the stop inside gives a new one";
}

TEST_F(core_messages, unmute_takes_the_newest_of_its_kind) {
    send("mute 1 60 1");
    const mute_entry* const oldest = x->mutes;
    send("mute 2 64 1");
    send("mute 1 60 5");
    send("unmute 1 60");
    ASSERT_NE(x->mutes, nullptr);
    EXPECT_EQ(x->mutes->index, 2);
    EXPECT_EQ(x->mutes->next, oldest);
    send("unmute 1 61");
    send("unmute 3 60");
    EXPECT_EQ(x->mutes->next, oldest);
}

} // namespace
