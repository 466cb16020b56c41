// tests/desktop/midi_sender_test.cpp: the thread between the scheduler and a MIDI device.
// Layer: tests.
#include "host/desktop/midi_sender.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/headless/headless.h"

namespace {

using message = std::array<int, 3>;

// What has gone down the wire, which may be held shut.
struct tape {
    std::mutex guard;
    std::condition_variable changed;
    std::vector<message> messages;
    bool shut = false;

    std::vector<message> all() {
        const std::lock_guard in(guard);
        return messages;
    }
    void set_shut(bool s) {
        const std::lock_guard in(guard);
        shut = s;
        changed.notify_all();
    }
};

class tape_wire : public midi_wire {
public:
    explicit tape_wire(tape& t) : to(t) {}
    void send(std::span<const std::uint8_t, 3> m) override {
        std::unique_lock in(to.guard);
        to.changed.wait(in, [this] { return !to.shut; });
        to.messages.push_back({m[0], m[1], m[2]});
    }

private:
    tape& to;
};

class midi_sender_thread_test : public testing::Test {
protected:
    void SetUp() override {
        headless_start(&machine);
        sender = std::make_unique<midi_sender>(std::make_unique<tape_wire>(wire));
        ASSERT_TRUE(sender->hears());
    }
    void TearDown() override {
        sender.reset();
        EXPECT_TRUE(headless_end());
    }
    void play(int channel, int pitch, int velocity) {
        const host_locked_out now;
        midi_send(1, channel, pitch, velocity);
    }
    void silence() {
        const host_locked_out now;
        sender->silence();
    }
    // Everything that went down the wire until its sender has ended.
    std::vector<message> end() {
        sender.reset();
        return wire.all();
    }

    headless machine;
    tape wire;
    std::unique_ptr<midi_sender> sender;
};

TEST_F(midi_sender_thread_test, notes_arrive_in_order) {
    play(1, 60, 100);
    play(1, 60, 0);
    play(16, 127, 127);
    play(16, 127, 0);
    const std::vector<message> got = end();
    ASSERT_GE(got.size(), 4U);
    EXPECT_EQ((std::vector<message>(got.begin(), got.begin() + 4)),
              (std::vector<message>{{0x90, 60, 100}, {0x80, 60, 64}, {0x9F, 127, 127}, {0x8F, 127, 64}}));
}

TEST_F(midi_sender_thread_test, the_end_ends_what_sounds_then_resets_the_channels_used) {
    play(1, 60, 100);
    play(3, 64, 90);
    play(3, 67, 90);
    play(3, 67, 0);
    const std::vector<message> got = end();
    ASSERT_EQ(got.size(), 10U);
    EXPECT_EQ(
        (std::vector<message>(got.begin() + 4, got.end())),
        (std::vector<message>{
            {0x80, 60, 64}, {0x82, 64, 64}, {0xB0, 123, 0}, {0xB0, 120, 0}, {0xB2, 123, 0}, {0xB2, 120, 0}}));
}

TEST_F(midi_sender_thread_test, where_nothing_was_played_nothing_is_ended) {
    EXPECT_TRUE(end().empty());
}

TEST_F(midi_sender_thread_test, a_second_silence_has_nothing_to_do) {
    play(2, 60, 100);
    silence();
    silence();
    EXPECT_EQ(end(), (std::vector<message>{{0x91, 60, 100}, {0x81, 60, 64}, {0xB1, 123, 0}, {0xB1, 120, 0}}));
}

TEST_F(midi_sender_thread_test, a_device_that_blocks_holds_nobody_up_and_loss_is_counted) {
    constexpr int MORE_THAN_FIT = 6000;
    wire.set_shut(true);
    const auto began = std::chrono::steady_clock::now();
    for (int i = 0; i < MORE_THAN_FIT; ++i) play(1, i % 128, 1);
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(20))
        << "it stays shut until after this";
    const auto lost = static_cast<int>(sender->lost());
    EXPECT_GT(lost, 0);
    wire.set_shut(false);
    const std::vector<message> got = end();
    constexpr int ENDING = 128 + 2;
    EXPECT_EQ(static_cast<int>(got.size()), MORE_THAN_FIT - lost + ENDING);
    for (int i = 0; i < 128; ++i)
        EXPECT_EQ(got[got.size() - ENDING + static_cast<std::size_t>(i)], (message{0x80, i, 64}));
}

TEST_F(midi_sender_thread_test, hears_no_more_once_it_has_ended) {
    end();
    play(1, 60, 100);
    EXPECT_TRUE(wire.all().empty());
}

} // namespace
