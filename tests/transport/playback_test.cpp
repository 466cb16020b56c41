// tests/transport/playback_test.cpp: what playback asks of the window, and in which order it goes over to its new state.
// Test layer.
#include "transport/playback.h"

#include "host/kernel/windows.h"
#include "tests/support/host_test.h"

namespace {

class playback : public object_test {
protected:
    void SetUp() override {
        object_test::SetUp();
        send("record");
        send("100 60 64 10");
        send("200 62 64 10");
        send("stop");
        x->redraw = {};
        host_qelem_unset(x->redraw_qelem);
    }
    // The flags that the message leaves, in their order; a hidden window takes none away.
    std::string flags_after(const std::string& message) {
        x->redraw = {};
        send(message);
        const redraw_flags& r = x->redraw;
        std::string text;
        for (const auto& [flag, name] :
             {std::pair{&r.redraw_bg, "bg "}, std::pair{&r.redraw_events, "events "},
              std::pair{&r.redraw_panel, "panel "}, std::pair{&r.redraw_editmode, "editmode "},
              std::pair{&r.redraw_spare, "spare "}, std::pair{&r.changed, "changed "},
              std::pair{&r.redraw_marked, "marked "}, std::pair{&r.redraw_values, "values "},
              std::pair{&r.hide_check, "hide "}}) {
            if (*flag) text += name;
        }
        return text;
    }
};

TEST_F(playback, a_delay_to_the_time_that_it_has_is_drawn_anew_all_the_same) {
    EXPECT_EQ(flags_after("delay 100"), "events panel changed ");
    EXPECT_EQ(x->events->time, 100);
    EXPECT_EQ(x->events->next->time, 300);
    send("open");
    EXPECT_EQ(flags_after("delay 100"), "") << "with the window shown the redraw has taken them";
    send("wclose");
    send("clear");
    EXPECT_EQ(flags_after("delay 100"), "") << "an empty sequence has nothing to move";
}

TEST_F(playback, what_puts_events_out_draws_nothing) {
    EXPECT_EQ(flags_after("start"), "");
    EXPECT_EQ(flags_after("next"), "");
    EXPECT_EQ(flags_after("nth 1"), "");
    EXPECT_EQ(flags_after("startat 60 64 1"), "");
    EXPECT_EQ(flags_after("next"), "");
    EXPECT_EQ(flags_after("next"), "");
}

TEST_F(playback, a_stop_after_recording_draws_what_was_recorded_when_the_window_is_open) {
    EXPECT_EQ(flags_after("stop"), "");
    send("record");
    EXPECT_EQ(flags_after("stop"), "") << "the window is hidden";
    send("open");
    send("record");
    // The queue stands still: what the stop asks for is still to be done.
    x->redraw = {};
    brisolan_mstop(x);
    EXPECT_EQ(x->redraw.changed, 1);
    EXPECT_EQ(x->redraw.redraw_bg, 1);
    EXPECT_EQ(x->redraw.redraw_events, 1);
    EXPECT_EQ(x->redraw.redraw_panel, 0);
    kel_run_queue();
    EXPECT_EQ(x->redraw.redraw_bg, 0);
    x->redraw = {};
    brisolan_mstop(x);
    EXPECT_EQ(x->redraw.changed, 0) << "nothing was recorded";
    x->mode = MODE_FOLLOW;
    brisolan_mstop(x);
    EXPECT_EQ(x->redraw.changed, 0);
}

} // namespace
