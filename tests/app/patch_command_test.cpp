// tests/app/patch_command_test.cpp: `brisolan patch` and `brisolan follow` on files.
// Test layer.
#include <csignal>
#include <fstream>
#include <iterator>

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

TEST_F(patch_command_test, a_minus_is_standard_input) {
    const finished f = shell("exec \"$0\" patch - --for 500 <'" + clock() + "'");
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_EQ(f.out, "ms: 250\nms: 250\n");
    EXPECT_EQ(shell("exec \"$0\" patch - --for 500 <.").status, 1);
}

TEST_F(patch_command_test, a_long_line_of_the_scheduler_arrives_whole) {
    const std::string name(3000, 'a');
    const std::unique_ptr<process> p = start(
        {"patch", text("long.kel", "#N loadbang; #N delay 10; #N message " + name +
                                       "; #N delay; #P cord 0 0 1 0; #P cord 1 0 2 0; #P cord 2 0 3 0;\n")});
    const std::string told = "brisolan: host: delay: no message \"" + name + "\"\n";
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return p->err().size() >= told.size(); }));
    p->send(SIGINT);
    EXPECT_EQ(p->wait(PATIENCE_MS), 0);
    EXPECT_EQ(p->err(), told);
}

TEST_F(patch_command_test, the_example_of_its_documentation_plays) {
    std::ifstream in(std::string(BRISOLAN_SOURCE_DIR) + "/docs/patch-format.md");
    std::string page(std::istreambuf_iterator<char>(in), {});
    const std::string fence = "```\n";
    page.erase(0, page.find(fence) + fence.size());
    const finished f = run({"patch", text("tune.kel", page.substr(0, page.find(fence))), "--for", "2000"});
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.out, "pitch: 60\npitch: 64\npitch: 67\n");
    EXPECT_EQ(f.err, "");
}

TEST_F(patch_command_test, an_hour_passes_in_no_time) {
    const finished f = run({"patch", clock(), "--for", "3600000"});
    EXPECT_EQ(lines_of(f.out).size(), 14400U);
}

TEST_F(patch_command_test, real_time_runs_until_a_signal) {
    const std::unique_ptr<process> p = start({"patch", clock()});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return lines_of(p->out()).size() >= 2; })) << p->err();
    p->send(SIGINT);
    EXPECT_EQ(p->wait(PATIENCE_MS), 0);
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

constexpr const char* wants_to_write =
    "#N loadbang; #N message writekel here/a.kel , export here/a.mid; #N brisolan;\n"
    "#P cord 0 0 1 0; #P cord 1 0 2 0;\n";

TEST_F(patch_command_test, a_patch_writes_no_file_that_was_not_named) {
    std::filesystem::create_directory(folder / "here");
    std::filesystem::current_path(folder);
    const finished f = run({"patch", text("a.kel", wants_to_write), "--for", "0"});
    EXPECT_EQ(f.status, 0);
    EXPECT_NE(f.err.find("host: here/a.kel: not written: you did not name this file\n"), std::string::npos)
        << f.err;
    EXPECT_NE(f.err.find("host: here/a.mid: not written: you did not name this file\n"), std::string::npos)
        << f.err;
    EXPECT_TRUE(std::filesystem::is_empty(folder / "here"));
}

TEST_F(patch_command_test, a_patch_writes_into_the_folder_that_was_named_and_no_way_out_of_it) {
    std::filesystem::create_directory(folder / "here");
    std::filesystem::create_directory(folder / "there");
    std::filesystem::create_directory_symlink("../there", folder / "here" / "link");
    std::filesystem::create_symlink("../there/b.kel", folder / "here" / "b.kel");
    std::filesystem::current_path(folder);
    const finished f = run({"patch", text("a.kel", wants_to_write), "--for", "0", "--write-in", "here"});
    EXPECT_EQ(f.err, "");
    EXPECT_TRUE(std::filesystem::exists(folder / "here" / "a.kel"));
    EXPECT_TRUE(std::filesystem::exists(folder / "here" / "a.mid"));
    const std::string ways_out = "#N loadbang; #N message writekel here/../there/a.kel , writekel "
                                 "here/link/a.kel , writekel here/b.kel , "
                                 "writekel herefrom.kel; #N brisolan; #P cord 0 0 1 0; #P cord 1 0 2 0;\n";
    run({"patch", text("b.kel", ways_out), "--for", "0", "--write-in", "here"});
    EXPECT_TRUE(std::filesystem::is_empty(folder / "there"));
    EXPECT_FALSE(std::filesystem::exists(folder / "herefrom.kel"));
    const finished missing =
        run({"patch", text("a.kel", wants_to_write), "--for", "0", "--write-in", "none"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "brisolan: none: No such file or directory\n");
}

TEST_F(patch_command_test, a_document_writes_no_file_when_it_is_read) {
    std::filesystem::current_path(folder);
    const std::string bad =
        "#N brisolan;\n#X writekel stolen.kel;\n#X restore;\n#X 0 60 100 10 1 1 0 0;\n#X stop;\n";
    run({"list", text("bad.kel", bad)});
    run({"convert", file("bad.kel"), file("out.mid")});
    run({"render", file("bad.kel"), file("out.png")});
    EXPECT_FALSE(std::filesystem::exists(folder / "stolen.kel"));
}

// Seventeen pairs of message boxes, each pair banging both of the next: 2^17 notes out of two kilobytes.
std::string explosive_patch() {
    constexpr int PAIRS = 17;
    std::string patch = "#N loadbang;\n";
    const auto cord = [&patch](int from, int to) {
        patch += "#P cord " + std::to_string(from) + " 0 " + std::to_string(to) + " 0;\n";
    };
    for (int i = 0; i < 2 * PAIRS; ++i) patch += "#N message bang;\n";
    patch += "#N message 0 60 100 10;\n#N brisolan;\n#X restore;\n";
    for (int pair = 0; pair < PAIRS; ++pair) {
        for (const int to : {2 * pair + 1, 2 * pair + 2}) {
            if (pair == 0) cord(0, to);
            for (int from = 2 * pair - 1; pair > 0 && from <= 2 * pair; ++from) cord(from, to);
        }
    }
    for (const int from : {2 * PAIRS - 1, 2 * PAIRS}) cord(from, 2 * PAIRS + 1);
    cord(2 * PAIRS + 1, 2 * PAIRS + 2);
    return patch;
}

TEST_F(patch_command_test, memory_ends_where_it_was_told_to_with_one_line_and_the_rest_goes_on) {
    // Then the score is cleared, and what needs memory works again.
    const std::string later = "#N loadbang; #N delay 5; #N message clear; #N delay 9; #N print after;\n"
                              "#P cord 37 0 38 0; #P cord 37 0 40 0; #P cord 38 0 39 0; #P cord 39 0 36 0;\n"
                              "#P cord 40 0 41 0;\n";
    const std::string patch = explosive_patch() + later;
    const finished f = run({"patch", text("big.kel", patch), "--for", "10", "--memory", "2"});
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.err, "brisolan: host: no memory left: 2 MB are in use\n");
    EXPECT_EQ(f.out, "after: bang\n");
    EXPECT_EQ(run({"patch", file("big.kel"), "--for", "10"}).err, "");
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
