// tests/desktop/editor_window_test.cpp: the editor with a real pointer and real keys: drawn, moved, copied, saved.
// Test layer.
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/desktop/x_screen.h"

#if BRISOLAN_HAVE_QT

namespace {

using row = std::vector<int>; // the eight numbers of a note

constexpr int LEFT_MARGIN = 48; // of the data area
constexpr int MS_A_PIXEL = 25;  // at the zoom that a score is opened with
constexpr int PIXELS_A_PITCH = 2;
// A place in the data area of a new window, well away from its edges.
constexpr int MID_X = 448;
constexpr int MID_Y = 260;

class live_editor_window_test : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string why = x_screen::why_not(); !why.empty()) {
            const char* const ci = std::getenv("CI");
            if (ci && std::string(ci) == "true") FAIL() << why;
            std::printf("the editor was not tested: %s\n", why.c_str());
            GTEST_SKIP();
        }
        std::string name = (std::filesystem::temp_directory_path() / "brisolan-editor-XXXXXX").string();
        folder = mkdtemp(name.data());
        for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME"})
            setenv(place, folder.c_str(), 1);
        setenv("QT_QPA_PLATFORM", "xcb", 1);
        screen = std::make_unique<x_screen>(folder, 1200, 900);
        ASSERT_TRUE(screen->start()) << "Xvfb does not answer";
    }
    void TearDown() override {
        program.reset();
        screen.reset();
        if (!folder.empty()) std::filesystem::remove_all(folder);
    }

    std::string file(const std::string& name) const { return (folder / name).string(); }

    void open(const std::vector<std::string>& files, const std::string& title) {
        std::vector<std::string> words{BRISOLAN_PROGRAM, "edit"};
        words.insert(words.end(), files.begin(), files.end());
        program = std::make_unique<process>(folder, "editor", words);
        ASSERT_TRUE(screen->focus(title)) << program->err();
        sleep_ms(300);
    }

    // The notes of a file, as `brisolan list` prints them.
    std::vector<row> list(const std::string& name) {
        process p(folder, "list", {BRISOLAN_PROGRAM, "list", file(name)});
        EXPECT_EQ(p.wait(10'000), 0) << p.err();
        std::istringstream lines(p.out());
        std::vector<row> rows;
        for (std::string line; std::getline(lines, line);) {
            std::istringstream numbers(line);
            rows.emplace_back();
            for (int n = 0; numbers >> n;) rows.back().push_back(n);
        }
        return rows;
    }

    // Saves what is open for the first time, under a name that was not there.
    void save_as(const std::string& name) {
        screen->key("ctrl+s");
        ASSERT_TRUE(screen->focus("Save as"));
        screen->key("ctrl+a");
        screen->type(file(name));
        screen->key("Return");
        ASSERT_TRUE(holds_within(5000, [&] { return std::filesystem::exists(file(name)); }));
        ASSERT_TRUE(screen->focus(name));
    }

    void quit() {
        screen->key("ctrl+q");
        EXPECT_EQ(program->wait(5000), 0) << program->err();
    }

    std::filesystem::path folder;
    std::unique_ptr<x_screen> screen;
    std::unique_ptr<process> program;
};

TEST_F(live_editor_window_test, a_note_is_drawn_and_moved_and_all_are_copied_pasted_deleted_and_saved) {
    open({}, "Untitled");
    // The pencil is the first tool: a note of 80 pixels.
    screen->drag({{MID_X, MID_Y}, {MID_X + 40, MID_Y}, {MID_X + 80, MID_Y}});
    save_as("one.kel");
    std::vector<row> notes = list("one.kel");
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0][0], (MID_X - LEFT_MARGIN) * MS_A_PIXEL);
    EXPECT_EQ(notes[0][3], 80 * MS_A_PIXEL);
    const int pitch = notes[0][1];

    // The arrow moves it by its middle: up, and not in time.
    screen->key("1");
    screen->drag({{MID_X + 40, MID_Y}, {MID_X + 40, MID_Y - 10}, {MID_X + 40, MID_Y - 24}});
    screen->key("ctrl+s");
    sleep_ms(300);
    notes = list("one.kel");
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0][1], pitch + 24 / PIXELS_A_PITCH);
    EXPECT_EQ(notes[0][0], (MID_X - LEFT_MARGIN) * MS_A_PIXEL);

    // A copy of all is pasted beside it, and moved by an arrow key while it alone is selected.
    screen->key("ctrl+a");
    screen->key("ctrl+c");
    screen->key("ctrl+v");
    screen->key("Right");
    screen->key("ctrl+s");
    sleep_ms(300);
    notes = list("one.kel");
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_EQ(notes[1][0], notes[0][0] + 50);
    EXPECT_EQ(notes[1][1], notes[0][1]);

    screen->key("Delete");
    screen->key("ctrl+s");
    sleep_ms(300);
    EXPECT_EQ(list("one.kel").size(), 1U);
    quit();

    open({file("one.kel")}, "one.kel");
    screen->key("ctrl+shift+s");
    ASSERT_TRUE(screen->focus("Save as"));
    screen->key("ctrl+a");
    screen->type(file("two.mid"));
    screen->key("Return");
    ASSERT_TRUE(holds_within(5000, [&] { return std::filesystem::exists(file("two.mid")); }));
    ASSERT_TRUE(screen->focus("two.mid"));
    const std::vector<row> same = list("two.mid");
    ASSERT_EQ(same.size(), 1U);
    EXPECT_EQ(same[0][1], notes[0][1]);
    quit();
}

} // namespace

#endif
