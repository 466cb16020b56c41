// tests/desktop/play_wav_test.cpp: `brisolan play --wav`, as it is run.
// Layer: tests.
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/support/process.h"

#if BRISOLAN_HAVE_FLUIDSYNTH

namespace {

namespace fs = std::filesystem;

class play_wav : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "brisolan-wav-XXXXXX").string();
        folder = mkdtemp(name.data());
    }
    void TearDown() override { fs::remove_all(folder); }

    std::unique_ptr<process> play(const std::vector<std::string>& words) {
        std::vector<std::string> all{BRISOLAN_PROGRAM, "play"};
        all.insert(all.end(), words.begin(), words.end());
        return std::make_unique<process>(folder, "program", all);
    }
    std::string out(const std::string& name) const { return (folder / name).string(); }
    std::string contents(const std::string& name) const {
        std::ifstream in(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    // Files beside what the program wrote to its standard streams.
    std::size_t files() const {
        std::size_t n = 0;
        for (const fs::directory_entry& e : fs::directory_iterator(folder))
            n += e.path().stem() == "program" ? 0 : 1;
        return n;
    }

    const std::string piece = std::string(BRISOLAN_SOURCE_DIR) + "/examples/prelude-in-c.mid";
    fs::path folder;
};

TEST_F(play_wav, a_piece_is_rendered_much_faster_than_it_plays_and_twice_the_same) {
    const std::unique_ptr<process> length = std::make_unique<process>(
        folder, "program", std::vector<std::string>{BRISOLAN_PROGRAM, "list", piece});
    ASSERT_EQ(length->wait(PATIENCE_MS), 0);
    const std::string events = length->out();
    const double last = std::stod(events.substr(events.rfind('\n', events.size() - 2) + 1)) / 1000;
    for (const char* name : {"a.wav", "b.wav"}) {
        const std::unique_ptr<process> p = play({piece, "--wav", out(name)});
        EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
        EXPECT_EQ(p->err(), "");
        EXPECT_EQ(p->out(), "");
    }
    EXPECT_TRUE(contents("a.wav") == contents("b.wav"));
    const double seconds = static_cast<double>(contents("a.wav").size() - 44) / (44100 * 4);
    EXPECT_GT(seconds, last);
    EXPECT_LT(seconds, last + 15);
    EXPECT_EQ(files(), 2U);
}

TEST_F(play_wav, twice_the_speed_is_half_the_length) {
    EXPECT_EQ(play({piece, "--wav", out("a.wav"), "--from", "20000"})->wait(PATIENCE_MS), 0);
    EXPECT_EQ(play({piece, "--wav", out("b.wav"), "--from", "20000", "--speed", "2"})->wait(PATIENCE_MS), 0);
    const auto tail = 5 * 44100 * 4.0;
    EXPECT_NEAR(static_cast<double>(contents("a.wav").size()),
                2 * static_cast<double>(contents("b.wav").size()), tail);
}

TEST_F(play_wav, a_file_that_exists_is_replaced_with_force_alone) {
    std::ofstream(folder / "a.wav") << "old";
    const std::unique_ptr<process> refused = play({piece, "--wav", out("a.wav")});
    EXPECT_EQ(refused->wait(PATIENCE_MS), 1);
    EXPECT_EQ(refused->err(), "brisolan: " + out("a.wav") + ": exists; --force replaces it\n");
    EXPECT_EQ(contents("a.wav"), "old");
    EXPECT_EQ(play({piece, "--wav", out("a.wav"), "--force"})->wait(PATIENCE_MS), 0);
    EXPECT_EQ(contents("a.wav").substr(0, 4), "RIFF");
}

TEST_F(play_wav, a_minus_is_standard_output) {
    EXPECT_EQ(play({piece, "--wav", out("a.wav"), "--from", "60000"})->wait(PATIENCE_MS), 0);
    const std::unique_ptr<process> p = play({piece, "--wav", "-", "--from", "60000"});
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    EXPECT_EQ(p->out().substr(0, 4), "RIFF");
    EXPECT_TRUE(p->out() == contents("a.wav"));
    EXPECT_EQ(p->err(), "");
    EXPECT_EQ(files(), 1U);
}

TEST_F(play_wav, what_is_missing_is_said_in_one_line_and_leaves_nothing) {
    const std::unique_ptr<process> font = play({piece, "--wav", out("a.wav"), "--soundfont", "/no/font.sf2"});
    EXPECT_EQ(font->wait(PATIENCE_MS), 1);
    EXPECT_EQ(font->err(), "brisolan: sound font /no/font.sf2: No such file or directory\n");
    const std::unique_ptr<process> place = play({piece, "--wav", "/no/a.wav"});
    EXPECT_EQ(place->wait(PATIENCE_MS), 1);
    EXPECT_EQ(place->err(), "brisolan: /no/a.wav: no such file or folder\n");
    EXPECT_EQ(files(), 0U);
}

TEST_F(play_wav, an_interrupt_leaves_nothing_half_written) {
    const std::unique_ptr<process> p = play({piece, "--wav", out("a.wav"), "--speed", "0.25"});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [this] { return files() == 1; }));
    p->send(SIGINT);
    EXPECT_EQ(p->wait(PATIENCE_MS), 128 + SIGINT) << p->err();
    EXPECT_EQ(files(), 0U);
}

TEST_F(play_wav, words_that_exclude_one_another_are_misuse) {
    EXPECT_EQ(play({piece, "--wav", out("a.wav"), "--synth"})->wait(PATIENCE_MS), 2);
    EXPECT_EQ(play({piece, "--wav", out("a.wav"), "--port", "0"})->wait(PATIENCE_MS), 2);
    EXPECT_EQ(play({piece, "--force"})->wait(PATIENCE_MS), 2);
    EXPECT_EQ(play({piece, "--port", "0", "--virtual", "a"})->wait(PATIENCE_MS), 2);
}

} // namespace

#endif
