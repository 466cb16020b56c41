// tests/boxes/edit_patch_test.cpp: the patch around a score that is being edited, in virtual time; two beside each other.
// Test layer.
#include "app/edit_patch.h"

#include <memory>

#include "app/session.h"
#include "host/boxes/boxes.h"
#include "host/kernel/dispatch.h"
#include "tests/boxes/boxes_test.h"

namespace {

using numbers = std::vector<std::int32_t>;

class edit_patch_test : public boxes_test {
protected:
    void SetUp() override {
        boxes_test::SetUp();
        load_brisolan();
        boxes_load();
        edit = made();
        fill(*edit, {{100, 60, 100, 200, 1}, {250, 64, 101, 300, 2}, {250, 67, 102, 100, 2}});
    }
    void TearDown() override {
        edit.reset();
        boxes_test::TearDown();
    }

    std::unique_ptr<edit_patch> made() {
        auto p = std::make_unique<edit_patch>();
        EXPECT_EQ(p->load(), "");
        EXPECT_EQ(taken(), texts{});
        return p;
    }
    // Appends notes: "delta pitch vel dur chan".
    void fill(edit_patch& p, const std::vector<numbers>& wanted) {
        kel_send(p.score(), host_symbol("record"), {});
        for (const numbers& n : wanted)
            kel_send(p.score(), host_symbol("list"), std::vector<atom>(n.begin(), n.end()));
        kel_send(p.score(), host_symbol("stop"), {});
        kel_run_queue();
        played();
    }
    static texts events(const edit_patch& p) {
        texts all;
        for (const event* e = p.score()->events; e; e = e->next) {
            std::string line;
            for (int i = 0; i <= PARAM_CHAN; ++i) line += (i ? " " : "") + std::to_string(event_param(*e, i));
            all.push_back(line);
        }
        return all;
    }

    std::unique_ptr<edit_patch> edit;
};

TEST_F(edit_patch_test, plays_from_a_position_and_tells_it) {
    ASSERT_TRUE(edit->play(200));
    EXPECT_EQ(edit->mode(), MODE_PLAY);
    wait(100);
    EXPECT_EQ(edit->position(), 300);
    EXPECT_EQ(played(), texts{});
    wait(100);
    EXPECT_EQ(played(), (texts{"150 on 2 64 101"}));
    EXPECT_EQ(edit->position(), 400);
    wait(5000);
    EXPECT_EQ(edit->mode(), MODE_IDLE);
    EXPECT_EQ(edit->position(), 200) << "where playing began";
    EXPECT_FALSE(edit->play(601));
}

TEST_F(edit_patch_test, stopping_ends_the_notes_and_keeps_the_position) {
    edit->play(0);
    wait(150);
    played();
    edit->stop();
    EXPECT_EQ(played(), (texts{"150 off 1 60"}));
    EXPECT_EQ(edit->position(), 150);
    wait(5000);
    EXPECT_EQ(played(), texts{});
}

TEST_F(edit_patch_test, the_position_runs_at_the_speed) {
    edit->set_speed(2);
    edit->play(0);
    wait(50);
    EXPECT_EQ(played(), (texts{"50 on 1 60 100"}));
    wait(50);
    EXPECT_EQ(edit->position(), 200);
}

TEST_F(edit_patch_test, a_step_plays_one_note_and_waits_for_the_next_step) {
    ASSERT_TRUE(edit->step());
    EXPECT_EQ(edit->position(), 350);
    EXPECT_EQ(edit->mode(), MODE_IDLE);
    wait(5000);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "200 off 1 60"}));
    ASSERT_TRUE(edit->step());
    EXPECT_EQ(edit->position(), 600);
    ASSERT_TRUE(edit->step());
    wait(5000);
    EXPECT_EQ(played(), (texts{"5000 on 2 64 101", "5000 on 2 67 102", "5100 off 2 67", "5300 off 2 64"}));
    EXPECT_FALSE(edit->step());
    edit->go_to(0);
    ASSERT_TRUE(edit->play(0));
    wait(100);
    EXPECT_EQ(played(), (texts{"10100 on 1 60 100"})) << "playing after stepping keeps time again";
}

TEST_F(edit_patch_test, a_step_while_it_plays_stops_the_clock) {
    edit->play(0);
    wait(120);
    played();
    ASSERT_TRUE(edit->step());
    const texts first = played();
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(first.back(), "120 on 2 64 101");
    wait(5000);
    for (const std::string& line : played()) EXPECT_EQ(line.find(" on "), std::string::npos) << line;
}

TEST_F(edit_patch_test, what_comes_in_is_recorded_while_it_records_alone) {
    note_in(1, 50, 80);
    note_in(1, 50, 0);
    EXPECT_EQ(played(), texts{}) << "an idle score does not answer";
    wait(1000);
    edit->record();
    EXPECT_EQ(edit->mode(), MODE_RECORD);
    wait(120);
    EXPECT_EQ(edit->position(), 120);
    note_in(3, 60, 80);
    wait(200);
    edit->stop();
    EXPECT_EQ(events(*edit), (texts{"120 60 80 200 3"})) << "the key that was held is let go";
    note_in(1, 64, 80);
    note_in(1, 64, 0);
    EXPECT_EQ(events(*edit).size(), 1U);
    edit->play(0);
    note_in(1, 64, 80);
    wait(1000);
    EXPECT_EQ(events(*edit).size(), 1U);
}

TEST_F(edit_patch_test, follows_from_a_note_on) {
    fill(*edit, {{0, 60, 100, 200, 1}, {500, 62, 100, 200, 1}, {0, 40, 90, 100, 2}});
    edit->follow(1);
    EXPECT_EQ(edit->mode(), MODE_FOLLOW);
    note_in(1, 62, 90);
    EXPECT_EQ(played(), (texts{"0 on 1 62 100"}));
    edit->stop();
    EXPECT_EQ(edit->mode(), MODE_IDLE);
    played();
    note_in(1, 60, 90);
    EXPECT_EQ(played(), texts{});
}

TEST_F(edit_patch_test, two_scores_do_not_hear_each_other) {
    const std::unique_ptr<edit_patch> other = made();
    fill(*other, {{0, 72, 100, 50, 5}});
    other->play(0);
    wait(0);
    EXPECT_EQ(played(), (texts{"0 on 5 72 100"}));
    EXPECT_EQ(edit->mode(), MODE_IDLE);
    edit->record();
    note_in(1, 61, 80);
    wait(30);
    note_in(1, 61, 0);
    edit->stop();
    EXPECT_EQ(events(*edit).size(), 1U);
    EXPECT_EQ(events(*other).size(), 1U);
}

class gate_test : public boxes_test {};

TEST_F(gate_test, lets_integers_through_while_it_is_open) {
    ASSERT_TRUE(load("#N gate; #N print out; #P cord 0 0 1 0;"));
    send(0, "1");
    EXPECT_EQ(taken(), texts{}) << "closed at first";
    to_inlet(0, 1, 5);
    send(0, "7");
    send(0, "-3");
    EXPECT_EQ(taken(), (texts{"post out: 7", "post out: -3"}));
    to_inlet(0, 1, 0);
    send(0, "8");
    EXPECT_EQ(taken(), texts{});
}

TEST_F(gate_test, an_argument_opens_it) {
    ASSERT_TRUE(load("#N gate 1; #N print out; #P cord 0 0 1 0;"));
    send(0, "7");
    EXPECT_EQ(taken(), (texts{"post out: 7"}));
}

} // namespace
