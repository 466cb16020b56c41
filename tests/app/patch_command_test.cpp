// tests/app/patch_command_test.cpp: `brisolan patch` and `brisolan follow` on files.
// Test layer.
#include <csignal>

#include "tests/app/command_test.h"

namespace {

using texts = std::vector<std::string>;

class patch_command_test : public command_test {
protected:
    std::string clock() {
        return text("clock.kel", "#N loadbang; #N delay 250; #N timer; #N print ms;\n"
                                 "#P cord 0 0 1 0; #P cord 1 0 1 0; #P cord 1 0 2 0; #P cord 2 0 3 0;\n");
    }
};

TEST_F(patch_command_test, virtual_time_runs_at_once_and_the_notices_are_printed) {
    const finished f = run({"patch", clock(), "--for", "1000"});
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_EQ(f.out, "ms: 250\nms: 250\nms: 250\nms: 250\n");
    EXPECT_EQ(f.err, "");
}

TEST_F(patch_command_test, an_hour_passes_in_no_time) {
    const finished f = run({"patch", clock(), "--for", "3600000"});
    EXPECT_EQ(lines_of(f.out).size(), 14400U);
}

TEST_F(patch_command_test, real_time_runs_until_a_signal) {
    const std::unique_ptr<process> p = start({"patch", clock()});
    ASSERT_TRUE(holds_within(10'000, [&] { return lines_of(p->out()).size() >= 2; })) << p->err();
    p->send(SIGINT);
    EXPECT_EQ(p->wait(5000), 0);
}

TEST_F(patch_command_test, a_wrong_line_is_told_and_the_rest_runs) {
    const finished f = run(
        {"patch", text("a.kel", "#N nothing;\n#N loadbang; #N print;\n#P cord 1 0 2 0;\n"), "--for", "0"});
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.out, "print: bang\n");
    EXPECT_EQ(f.err, "brisolan: host: " + file("a.kel") + ": line 1: no class named \"nothing\"\n");
}

TEST_F(patch_command_test, a_file_that_is_no_patch_fails_with_one_line) {
    const finished none = run({"patch", file("none.kel"), "--for", "0"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "brisolan: host: " + file("none.kel") + ": no such file or folder\n");
    const finished bad = run({"patch", text("bad.kel", "#N print"), "--for", "0"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err,
              "brisolan: host: " + file("bad.kel") + ": line 1: the last message does not end with ';'\n");
    EXPECT_EQ(run({"patch", clock(), "--for", "-1"}).status, 2);
}

TEST_F(patch_command_test, the_messages_of_a_patch_that_feeds_itself_end) {
    const finished f =
        run({"patch", text("loop.kel", "#N loadbang; #N message bang; #P cord 0 0 1 0; #P cord 1 0 1 0;"),
             "--for", "100"});
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.err, "brisolan: host: messages nested too deep\n");
}

class follow_command_test : public command_test {
protected:
    std::string tune() {
        return score("tune.kel", {{0, 60}, {0, 36, 50, 400, 2, 2}, {500, 62}, {1000, 64}, {1500, 65}});
    }
};

TEST_F(follow_command_test, each_output_and_the_summary_are_printed) {
    const std::string player = score("player.kel", {{0, 60}, {500, 64}, {600, 62}, {700, 99}});
    const finished f = run({"follow", tune(), "--performance", player});
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_EQ(f.out, "0 matched 60 100 100 1\n"
                     "100 off 60 0 100 1\n"
                     "500 accompaniment 36 50 400 2\n"
                     "500 matched 64 100 100 1\n"
                     "600 off 64 0 100 1\n"
                     "600 late 62 100 100 1\n"
                     "notes matched: 2 of 4\n"
                     "played late: 1\n"
                     "never matched: 1\n"
                     "accompaniment played: 1 of 1\n"
                     "wrong notes: 1\n");
}

TEST_F(follow_command_test, the_example_is_followed_through_its_slips) {
    const finished f =
        run({"follow", example("minuet-in-g.mid"), "--performance", example("minuet-performance.mid")});
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_NE(f.out.find("notes matched: 123 of 126\nplayed late: 1\nnever matched: 2\n"
                         "accompaniment played: 73 of 75\nwrong notes: 1\n"),
              std::string::npos)
        << f.out.substr(f.out.size() - 200);
}

TEST_F(follow_command_test, json_is_one_object) {
    const finished f = run({"follow", tune(), "--performance", score("player.kel", {{0, 60}}), "--json"});
    EXPECT_EQ(f.out,
              "{\"outputs\": [\n"
              "  {\"time\": 0, \"kind\": \"matched\", \"pitch\": 60, \"vel\": 100, \"dur\": 100, "
              "\"chan\": 1},\n"
              "  {\"time\": 100, \"kind\": \"off\", \"pitch\": 60, \"vel\": 0, \"dur\": 100, \"chan\": 1}\n"
              "], \"summary\": {\"performer_notes\": 4, \"matched\": 1, \"late\": 0, \"never\": 3, "
              "\"accompaniment_notes\": 1, \"accompaniment\": 0, \"wrong\": 0}}\n");
}

TEST_F(follow_command_test, octaves_skip_and_window_widen_the_search) {
    const std::string high = score("high.kel", {{0, 72}});
    EXPECT_NE(run({"follow", tune(), "--performance", high}).out.find("wrong notes: 1"), std::string::npos);
    EXPECT_NE(run({"follow", tune(), "--performance", high, "--octaves"}).out.find("notes matched: 1 of 4"),
              std::string::npos);
    // 65 is the fourth note: three lie before it, each half a second from the next.
    const std::string last = score("last.kel", {{0, 65}});
    EXPECT_NE(run({"follow", tune(), "--performance", last}).out.find("wrong notes: 1"), std::string::npos);
    EXPECT_NE(run({"follow", tune(), "--performance", last, "--skip", "3"}).out.find("notes matched: 1 of 4"),
              std::string::npos);
    EXPECT_NE(
        run({"follow", tune(), "--performance", last, "--window", "500"}).out.find("notes matched: 1 of 4"),
        std::string::npos);
}

TEST_F(follow_command_test, part_puts_a_track_on_channel_1_and_the_others_off_it) {
    const std::string player = score("player.kel", {{0, 36}});
    const finished f = run({"follow", tune(), "--performance", player, "--part", "2"});
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_EQ(f.out, "0 accompaniment 60 100 100 3\n"
                     "0 matched 36 50 400 1\n"
                     "100 off 36 0 400 1\n"
                     "notes matched: 1 of 1\nplayed late: 0\nnever matched: 0\n"
                     "accompaniment played: 1 of 4\nwrong notes: 0\n");
    const finished none = run({"follow", tune(), "--performance", player, "--part", "7"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "brisolan: " + file("tune.kel") + ": no notes on track 7; its tracks are 1, 2\n");
}

TEST_F(follow_command_test, what_cannot_be_followed_is_one_line) {
    const std::string player = score("player.kel", {{0, 60}});
    const finished none = run({"follow", file("none.kel"), "--performance", player});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "brisolan: " + file("none.kel") + ": No such file or directory\n");
    const finished empty = run({"follow", score("empty.kel", {}), "--performance", player});
    EXPECT_EQ(empty.err, "brisolan: " + file("empty.kel") + ": there is no note in it\n");
    const finished off =
        run({"follow", score("off.kel", {{0, 60, 100, 100, 5, 3}}), "--performance", player});
    EXPECT_EQ(off.err,
              "brisolan: " + file("off.kel") +
                  ": no notes on channel 1 to follow; choose the performer's track with --part, of 3\n");
    EXPECT_EQ(run({"follow", tune()}).status, 2);
    EXPECT_EQ(run({"follow", tune(), "--performance", player, "--skip", "-1"}).status, 2);
}

} // namespace
