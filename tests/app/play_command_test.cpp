// tests/app/play_command_test.cpp: `brisolan play` on a terminal and without one.
// Test layer.
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/app/command_test.h"

namespace {

using texts = std::vector<std::string>;

class play_command_test : public command_test {
protected:
    std::string tune() { return score("tune.kel", {{50, 60}, {150, 64}, {150, 67}, {300, 48, 100, 50}}); }
    // Two of its notes sound so long that a line which is written over shows them, whatever the machine does meanwhile.
    std::string long_tune() {
        return score("long.kel", {{50, 60}, {150, 64, 100, 4000}, {150, 67, 100, 4000}});
    }
};

TEST_F(play_command_test, each_moment_at_which_notes_begin_is_a_line_where_there_is_no_terminal) {
    const finished f = run({"play", tune()});
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.out, "");
    EXPECT_EQ(lines_of(f.err), (texts{"0:00.050  C3", "0:00.150  E3 G3", "0:00.300  C2"}));
}

TEST_F(play_command_test, speed_changes_how_long_it_takes_and_not_what_is_told) {
    const auto began = std::chrono::steady_clock::now();
    const finished f = run({"play", score("slow.kel", {{8000, 60, 100, 4000}}), "--speed", "4"});
    const auto took = std::chrono::steady_clock::now() - began;
    EXPECT_EQ(lines_of(f.err), (texts{"0:08.000  C3"}));
    EXPECT_GE(took, std::chrono::seconds(3));
    EXPECT_LT(took, std::chrono::seconds(12)) << "as long as without it";
}

TEST_F(play_command_test, from_begins_at_the_first_note_at_or_after_it) {
    EXPECT_EQ(lines_of(run({"play", tune(), "--from", "150"}).err),
              (texts{"0:00.150  E3 G3", "0:00.300  C2"}));
    EXPECT_EQ(lines_of(run({"play", tune(), "--from", "151"}).err), (texts{"0:00.300  C2"}));
}

TEST_F(play_command_test, quiet_shows_nothing) {
    const finished f = run({"play", tune(), "--quiet"});
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(lines_of(f.err), texts{});
}

TEST_F(play_command_test, what_cannot_be_played_is_one_line_that_names_the_file) {
    const std::string nothing = score("nothing.kel", {});
    const std::string broken = text("broken.mid", "MThd");
    const std::string empty = text("empty.mid", "");
    const std::string other = text("picture.gif", "GIF89a");
    for (const std::string& name : {file("none.mid"), folder.string(), nothing, broken, empty, other}) {
        SCOPED_TRACE(name);
        const finished f = run({"play", name});
        EXPECT_EQ(f.status, 1);
        EXPECT_EQ(f.out, "");
        const texts told = lines_of(f.err);
        ASSERT_EQ(told.size(), 1U) << f.err;
        EXPECT_TRUE(told[0].starts_with("brisolan: ")) << told[0];
        EXPECT_NE(told[0].find(name), std::string::npos) << told[0];
    }
    const finished f = run({"play", tune(), "--from", "301"});
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: " + file("tune.kel") + ": nothing begins at or after 301 ms\n")
        << "and nothing of the sound that is not needed then";
}

TEST_F(play_command_test, misuse_is_told_with_status_2) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"play"},
                                               {"play", tune(), "--speed", "0.2"},
                                               {"play", tune(), "--speed", "4.5"},
                                               {"play", tune(), "--speed", "0"},
                                               {"play", tune(), "--speed", "nan"},
                                               {"play", tune(), "--speed", "-NAN"},
                                               {"play", tune(), "--speed", "inf"},
                                               {"play", tune(), "--speed", "fast"},
                                               {"play", tune(), "--from", "-1"},
                                               {"play", tune(), "--from", "late"},
                                               {"play", tune(), "--from", "1.5"},
                                               {"play", tune(), "--from", "99999999999"},
                                               {"render", tune(), "a.png", "--at", "-1"},
                                               {"patch", tune(), "--for", "9999999999999999"},
                                               {"record", "a.mid", "--until", "soon"},
                                               {"follow", tune(), "--part", "0"},
                                               {"play", tune(), "--louder"},
                                               {"play", tune(), tune()}}) {
        const finished f = run(words);
        EXPECT_EQ(f.status, 2) << words.back();
        EXPECT_EQ(lines_of(f.err).size(), 1U) << f.err;
        EXPECT_LT(f.err.size(), 250U) << f.err;
    }
}

TEST_F(play_command_test, a_signal_ends_it_cleanly_and_is_told_by_the_status) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const std::unique_ptr<process> p = start({"play", score("long.kel", {{0, 60, 100, 60'000}})});
        ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return p->err().find("C3") != std::string::npos; }));
        p->send(signal);
        EXPECT_EQ(p->wait(PATIENCE_MS), 128 + signal);
        EXPECT_EQ(lines_of(p->err()), texts{"0:00.000  C3"});
    }
}

// Runs the program with a terminal for its standard error; what it wrote there.
std::string on_terminal(const std::vector<std::string>& words, const char* kind, bool colour) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal < 0 || grantpt(terminal) || unlockpt(terminal)) return "no terminal";
    const std::string end = ptsname(terminal);
    const pid_t child = fork();
    if (child == 0) {
        setenv("TERM", kind, 1);
        if (colour)
            unsetenv("NO_COLOR");
        else
            setenv("NO_COLOR", "1", 1);
        dup2(open(end.c_str(), O_RDWR | O_NOCTTY), 2);
        std::vector<std::string> all{BRISOLAN_PROGRAM};
        all.insert(all.end(), words.begin(), words.end());
        std::vector<char*> argv;
        for (std::string& w : all) argv.push_back(w.data());
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    std::string written;
    std::array<char, 4096> piece{};
    pollfd ready{terminal, POLLIN, 0};
    while (poll(&ready, 1, 30'000) > 0) {
        const ssize_t n = read(terminal, piece.data(), piece.size());
        if (n <= 0) break; // the child has gone
        written.append(piece.data(), static_cast<std::size_t>(n));
    }
    close(terminal);
    waitpid(child, nullptr, 0);
    return written;
}

TEST_F(play_command_test, a_terminal_gets_one_line_that_is_written_over) {
    const std::string written = on_terminal({"play", long_tune()}, "xterm", true);
    EXPECT_NE(written.find("\r0:00 / 0:04  \033[1m E3 G3\033[0m\033[K"), std::string::npos) << written;
    EXPECT_TRUE(written.ends_with("\r\033[K")) << "the line is taken away at the end";
    EXPECT_EQ(written.find("0:00.150"), std::string::npos);
}

TEST_F(play_command_test, no_color_keeps_the_line_plain) {
    const std::string written = on_terminal({"play", long_tune()}, "xterm", false);
    EXPECT_NE(written.find("\r0:00 / 0:04   E3 G3\033[K"), std::string::npos) << written;
    EXPECT_EQ(written.find("\033[1m"), std::string::npos);
}

TEST_F(play_command_test, a_terminal_that_cannot_write_over_a_line_gets_lines) {
    const std::string written = on_terminal({"play", tune()}, "dumb", true);
    EXPECT_NE(written.find("0:00.150  E3 G3"), std::string::npos) << written;
    EXPECT_EQ(written.find('\033'), std::string::npos);
}

} // namespace
