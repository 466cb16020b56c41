// tests/boxes/message_boxes_test.cpp: message, print, receive, load bang, and cords that carry messages.
// Test layer.
#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "tests/boxes/boxes_test.h"

namespace {

class message_boxes_test : public boxes_test {};

TEST_F(message_boxes_test, a_bang_sends_what_stands_in_the_box) {
    load("#N message startat 60 100 1; #N print; #P cord 0 0 1 0;");
    send(0, "bang");
    EXPECT_EQ(taken(), texts{"post print: startat 60 100 1"});
}

TEST_F(message_boxes_test, what_is_printed_may_be_long) {
    std::string numbers;
    for (int i = 0; i < 1000; ++i) numbers += " " + std::to_string(1'000'000 + i);
    load("#N message list" + numbers + "; #N print; #P cord 0 0 1 0;");
    send(0, "bang");
    EXPECT_EQ(taken(), texts{"post print:" + numbers});
}

TEST_F(message_boxes_test, a_click_is_a_bang) {
    load("#N message next; #N print; #P cord 0 0 1 0;");
    EXPECT_EQ(kel_private<"click">(box(0), Point{}, 0), 1);
    kel_run_queue();
    EXPECT_EQ(taken(), texts{"post print: next"});
}

TEST_F(message_boxes_test, a_comma_parts_several_messages) {
    load("#N message start , 60 64 , 12 , 0.5 , , bang; #N print; #P cord 0 0 1 0;");
    send(0, "bang");
    EXPECT_EQ(taken(), (texts{"post print: start", "post print: 60 64", "post print: 12", "post print: 0.5",
                              "post print: bang"}));
}

TEST_F(message_boxes_test, a_number_fills_the_places_kept_for_it) {
    load("#N message mute 1 $1 1 , $1; #N print; #P cord 0 0 1 0;");
    send(0, "62");
    send(0, "0.5");
    send(0, "bang");
    EXPECT_EQ(taken(), (texts{"post print: mute 1 62 1", "post print: 62", "post print: mute 1 0.5 1",
                              "post print: 0.5", "post print: mute 1 0 1", "post print: 0"}));
}

TEST_F(message_boxes_test, an_empty_box_sends_nothing) {
    load("#N message; #N print; #P cord 0 0 1 0;");
    send(0, "bang");
    EXPECT_EQ(taken(), texts{});
}

TEST_F(message_boxes_test, what_the_receiver_does_not_take_is_told_and_the_next_message_goes_out) {
    load("#N message boo , 20; #N delay; #N print; #P cord 0 0 1 0; #P cord 1 0 2 0;");
    send(0, "bang");
    wait(20);
    EXPECT_EQ(taken(), (texts{"error host: delay: no message \"boo\"", "post print: bang"}));
}

TEST_F(message_boxes_test, only_integers_arrive_at_inlets_beyond_the_leftmost) {
    load("#N message 30 , boo , 1 2; #N delay; #N print; #P cord 0 0 1 1; #P cord 1 0 2 0;");
    send(0, "bang");
    EXPECT_EQ(taken(), (texts{"error host: delay: inlet 1 takes integers, not \"boo\"",
                              "error host: delay: inlet 1 takes integers, not \"list\""}));
    send(1, "bang");
    wait(30);
    EXPECT_EQ(taken(), texts{"post print: bang"});
}

TEST_F(message_boxes_test, cords_carry_in_their_order_and_depth_first) {
    load("#N message bang; #N message a; #N print; #N message b; #N print; #P cord 0 0 1 0; #P cord 1 0 2 0; "
         "#P cord 0 0 3 0; #P cord 3 0 4 0;");
    send(0, "bang");
    EXPECT_EQ(taken(), (texts{"post print: a", "post print: b"}));
}

TEST_F(message_boxes_test, a_patch_that_feeds_itself_is_ended) {
    load("#N message bang; #N message bang; #P cord 0 0 1 0; #P cord 1 0 0 0;");
    send(0, "bang");
    EXPECT_EQ(taken(), texts{"error host: messages nested too deep"});
    send(0, "bang");
    EXPECT_EQ(taken(), texts{"error host: messages nested too deep"});
}

TEST_F(message_boxes_test, print_has_a_prefix) {
    load("#N print wait; #N print;");
    send(0, "12");
    send(0, "1.5");
    send(0, "list 1 2");
    send(0, "symbol");
    send(1, "bang");
    EXPECT_EQ(taken(), (texts{"post wait: 12", "post wait: 1.5", "post wait: 1 2", "post wait: symbol",
                              "post print: bang"}));
}

TEST_F(message_boxes_test, receive_puts_out_what_is_sent_to_its_name) {
    load("#N receive tempo; #N print; #P cord 0 0 1 0;");
    symbol* const name = host_symbol("tempo");
    const std::vector<atom> message{atom(host_symbol("speed")), atom(1.5F)};
    EXPECT_TRUE(kel_message(name, message));
    const atom number(7);
    EXPECT_TRUE(kel_message(name, {&number, 1}));
    kel_run_queue();
    EXPECT_EQ(taken(), (texts{"post print: speed 1.5", "post print: 7"}));
    kel_patcher_remove(patcher, box(0));
    EXPECT_EQ(name->thing, nullptr);
}

TEST_F(message_boxes_test, a_name_that_is_taken_stays_with_who_has_it) {
    load("#N receive go; #N receive go; #N print; #P cord 1 0 2 0;");
    EXPECT_EQ(taken(), texts{"error receive: go: already exists"});
    const atom number(7);
    kel_message(host_symbol("go"), {&number, 1});
    kel_run_queue();
    EXPECT_EQ(taken(), texts{});
}

TEST_F(message_boxes_test, loadbang_bangs_after_the_last_line) {
    load("#N loadbang; #N delay 10; #N print loaded; #P cord 0 0 1 0; #P cord 1 0 2 0;");
    wait(10);
    EXPECT_EQ(taken(), texts{"post loaded: bang"});
    send(0, "bang");
    wait(10);
    EXPECT_EQ(taken(), texts{"post loaded: bang"});
}

} // namespace
