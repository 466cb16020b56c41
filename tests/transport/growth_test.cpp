// tests/transport/growth_test.cpp: a step of playing, recording or following takes the same at any length of the sequence.
// Test layer.
#include "tests/support/growth.h"

#include "core/messages.h"
#include "transport/follow.h"
#include "transport/input.h"
#include "transport/playback.h"
#include "transport/record.h"

namespace {

class transport_growth : public growth_test {
protected:
    static constexpr int STEPS = 40;

    // From the middle on.
    void begin(int n) {
        fill(n);
        brisolan_follow(x, n / 2 / 4 * 4);
    }
    // The performer's i-th note from there on.
    std::int32_t note(int n, int i) const { return 30 + (n / 2 / 4 * 4 + 4 * i) % 60; }

    void expect_the_same(const std::function<void(int n)>& steps) {
        expect_growth(NOT_AT_ALL, [&](int n) {
            begin(n);
            return count_messages([&] { steps(n); });
        });
    }
    void play() {
        brisolan_start(x);
        for (int i = 0; i < STEPS; ++i) brisolan_next(x);
    }
};

TEST_F(transport_growth, playing) {
    expect_the_same([this](int) { play(); });
}

TEST_F(transport_growth, playing_with_mutes) {
    expect_the_same([this](int) {
        for (int i = 0; i < 8; ++i) brisolan_mute(x, PARAM_CHAN, 2 + i, 1);
        play();
    });
}

TEST_F(transport_growth, recording) {
    expect_growth(NOT_AT_ALL, [this](int n) {
        const auto record = [this](int notes) {
            for (int i = 0; i < notes; ++i) {
                brisolan_in1(x, 60);
                brisolan_in2(x, 64);
                brisolan_int(x, 5);
                brisolan_in2(x, 0);
                brisolan_int(x, 5);
            }
        };
        brisolan_record(x);
        count_messages([&] { record(n); });
        return count_messages([&] { record(STEPS); });
    });
}

TEST_F(transport_growth, following) {
    expect_the_same([this](int n) {
        for (int i = 0; i < STEPS / 4; ++i) brisolan_dofollow(x, note(n, i));
    });
}

TEST_F(transport_growth, following_late_notes) {
    expect_the_same([this](int n) {
        for (int i = 0; i < STEPS / 4; ++i) brisolan_dofollow(x, note(n, i ^ 1));
    });
}

TEST_F(transport_growth, following_wrong_notes) {
    expect_the_same([this](int) {
        for (int i = 0; i < STEPS; ++i) brisolan_dofollow(x, 127);
    });
}

} // namespace
