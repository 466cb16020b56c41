// tests/desktop/live_editor_window_test.cpp: the editor with a real pointer and real keys: drawn, moved, copied, saved.
// Test layer.
#include <csignal>
#include <cstdlib>

#include "tests/desktop/editor_on_screen.h"

namespace {

constexpr int LEFT_MARGIN = 48; // of the data area
constexpr int MS_A_PIXEL = 25;  // at the zoom that a score is opened with
constexpr int PIXELS_A_PITCH = 2;
constexpr int DATA_HEIGHT = 256; // 128 pitches
constexpr int CONTENT_TOP = 62;
constexpr int LEGEND_MIDDLE = 10;
constexpr int VEL_VALUE_X = 234;
constexpr int VEL_PICTURE_X = 204;
// A place in the data area of a new window, well away from its edges.
constexpr int MID_X = 448;
constexpr int MID_Y = 260;
constexpr int MID_TIME = (MID_X - LEFT_MARGIN) * MS_A_PIXEL;

enum { TIME, PITCH, VEL, DUR };

class live_editor_window : public editor_test {
protected:
    // A new score with one note of 80 pixels, saved under this name.
    void draw_one(const std::string& name) {
        editor->open({}, "Untitled");
        editor->screen->drag({{MID_X, MID_Y}, {MID_X + 40, MID_Y}, {MID_X + 80, MID_Y}});
        editor->save_as(name, "ctrl+s");
    }
    // The same, and a step to the right that is not saved. Waits until the title tells of it.
    void draw_one_and_move_it() {
        draw_one("one.kel");
        editor->screen->key("ctrl+a");
        editor->screen->key("Right");
        EXPECT_TRUE(holds_within(PATIENCE_MS, [this] { return editor->screen->has_window("one.kel\\*"); }));
    }
    // Starts the program again, which offers what it left, and takes it: the step to the right is there.
    void take_back_what_was_left() {
        editor->program =
            std::make_unique<process>(folder, "editor", std::vector<std::string>{BRISOLAN_PROGRAM});
        ASSERT_TRUE(editor->screen->focus("Unsaved scores")) << editor->program->err();
        editor->screen->key("Return");
        ASSERT_TRUE(editor->screen->focus("one.kel"));
        editor->save_as("again.kel");
        EXPECT_EQ(editor->list("again.kel")[0][TIME], MID_TIME + 50);
        editor->quit();
    }
    // Of unsaved scores, where the program keeps them.
    std::size_t copies() const {
        std::size_t n = 0;
        for (const auto& e : std::filesystem::recursive_directory_iterator(folder))
            n += e.path().extension() == ".kelb" ? 1 : 0;
        return n;
    }
    // What another program finds on the clipboard.
    std::string pasted_elsewhere() const {
        process p(folder, "xclip", {"xclip", "-selection", "clipboard", "-o"});
        EXPECT_EQ(p.wait(PATIENCE_MS), 0) << p.err();
        return p.out();
    }
};

TEST_F(live_editor_window, a_note_is_drawn_moved_copied_pasted_deleted_saved_and_read_again) {
    draw_one("one.kel");
    std::vector<note_row> notes = editor->list("one.kel");
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0][TIME], MID_TIME);
    EXPECT_EQ(notes[0][DUR], 80 * MS_A_PIXEL);
    const int pitch = notes[0][PITCH];

    // The arrow moves it by its middle: up, and not in time.
    editor->screen->key("1");
    editor->screen->drag({{MID_X + 40, MID_Y}, {MID_X + 40, MID_Y - 10}, {MID_X + 40, MID_Y - 24}});
    editor->save();
    notes = editor->list("one.kel");
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0][PITCH], pitch + 24 / PIXELS_A_PITCH);
    EXPECT_EQ(notes[0][TIME], MID_TIME);

    // A copy of all is pasted over it, and moved by an arrow key while it alone is selected.
    editor->screen->key("ctrl+a");
    editor->screen->key("ctrl+c");
    editor->screen->key("ctrl+v");
    editor->screen->key("Right");
    editor->save();
    notes = editor->list("one.kel");
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_EQ(notes[1][TIME], notes[0][TIME] + 50);
    EXPECT_EQ(notes[1][PITCH], notes[0][PITCH]);

    editor->screen->key("Delete");
    editor->save();
    EXPECT_EQ(editor->list("one.kel").size(), 1U);
    editor->quit();

    editor->open({editor->file("one.kel")}, "one.kel");
    editor->save_as("two.mid");
    const std::vector<note_row> same = editor->list("two.mid");
    ASSERT_EQ(same.size(), 1U);
    EXPECT_EQ(same[0][PITCH], notes[0][PITCH]);
    editor->quit();
}

TEST_F(live_editor_window, the_tweak_tool_moves_a_unit_a_pixel_and_puts_the_pointer_back) {
    draw_one("one.kel");
    const int pitch = editor->list("one.kel")[0][PITCH];
    editor->screen->tool({"keydown", "ctrl"});
    editor->screen->drag({{MID_X + 40, MID_Y}, {MID_X + 40, MID_Y - 3}, {MID_X + 40, MID_Y - 7}});
    editor->screen->tool({"keyup", "ctrl"});
    editor->save();
    EXPECT_EQ(editor->list("one.kel")[0][PITCH], pitch + 7);
    const std::string place = editor->screen->pointer();
    EXPECT_NE(place.find("x:" + std::to_string(MID_X + 40) + " y:" + std::to_string(MID_Y)),
              std::string::npos)
        << place;
}

TEST_F(live_editor_window, a_legend_value_is_dragged_in_a_loop_of_the_toolbox) {
    draw_one("one.kel");
    const note_row before = editor->list("one.kel")[0];
    const int velocity = before[VEL];
    // Where the picture begins on the screen is told by the pitch that was drawn; the legend is its first row.
    const int picture_top = MID_Y - (DATA_HEIGHT + CONTENT_TOP - before[PITCH] * PIXELS_A_PITCH);
    const int y = picture_top + LEGEND_MIDDLE;
    editor->screen->drag({{VEL_VALUE_X, y}, {VEL_VALUE_X, y - 5}, {VEL_VALUE_X, y - 10}});
    editor->save();
    const int after = editor->list("one.kel")[0][VEL];
    EXPECT_EQ(after, velocity + 10);
}

TEST_F(live_editor_window, a_role_is_chosen_from_the_menu_that_pops_up_at_its_picture) {
    draw_one("one.kel");
    const int y = MID_Y - (DATA_HEIGHT + CONTENT_TOP - editor->list("one.kel")[0][PITCH] * PIXELS_A_PITCH);
    // Vel becomes the vertical axis: the pointer's arrow keys then move velocities.
    editor->screen->click(VEL_PICTURE_X, y + LEGEND_MIDDLE);
    editor->wait_for_menu();
    for (const char* key : {"Down", "Down", "Down", "Return"}) editor->screen->key(key);
    editor->screen->key("ctrl+a");
    const int velocity = editor->list("one.kel")[0][VEL];
    editor->screen->key("Up");
    editor->save();
    EXPECT_EQ(editor->list("one.kel")[0][VEL], velocity + 1);
    editor->quit();
}

TEST_F(live_editor_window, the_clipboard_is_text_for_other_programs_and_from_them) {
    draw_one("one.kel");
    const note_row note = editor->list("one.kel")[0];
    editor->screen->key("ctrl+a");
    editor->screen->key("ctrl+c");
    std::string line;
    for (const int n : note) line += (line.empty() ? "" : " ") + std::to_string(n);
    EXPECT_EQ(pasted_elsewhere(), line + "\n");

    process p(
        folder, "xclip",
        {"sh", "-c", "printf '0 50 90 300 2 3 0 0\\n100 52 91 300 2 3 0 0\\n' | xclip -selection clipboard"});
    ASSERT_EQ(p.wait(PATIENCE_MS), 0);
    editor->screen->key("ctrl+v");
    editor->save();
    const std::vector<note_row> notes = editor->list("one.kel");
    ASSERT_EQ(notes.size(), 3U);
    EXPECT_EQ(notes[0], (note_row{0, 50, 90, 300, 2, 3, 0, 0}));
    EXPECT_EQ(notes[1], (note_row{100, 52, 91, 300, 2, 3, 0, 0}));
}

TEST_F(live_editor_window, unsaved_changes_are_asked_for_unless_they_were_taken_back) {
    draw_one("one.kel");
    editor->screen->key("ctrl+a");
    editor->screen->key("Right");
    editor->screen->key("ctrl+w");
    ASSERT_TRUE(editor->screen->focus("Unsaved changes"));
    editor->screen->key("Escape");
    ASSERT_TRUE(holds_within(PATIENCE_MS, [this] { return !editor->screen->has_window("Unsaved changes"); }));
    ASSERT_TRUE(editor->screen->focus("one.kel"));
    editor->screen->key("Left");
    editor->screen->key("ctrl+w");
    EXPECT_EQ(editor->program->wait(PATIENCE_MS), 0) << "nothing is left to save";
    EXPECT_EQ(editor->list("one.kel").size(), 1U);
}

TEST_F(live_editor_window, the_program_ends_with_its_last_document_though_the_help_is_open) {
    for (const char* key : {"ctrl+q", "ctrl+w"}) {
        editor->open({}, "Untitled");
        editor->screen->key("F1");
        ASSERT_TRUE(editor->screen->focus("Keys and tools"));
        ASSERT_TRUE(editor->screen->focus("Untitled"));
        editor->screen->key(key);
        EXPECT_EQ(editor->program->wait(PATIENCE_MS), 0) << key;
    }
}

TEST_F(live_editor_window, a_signal_that_asks_to_end_leaves_what_was_not_saved_at_once) {
    draw_one_and_move_it();
    editor->program->send(SIGTERM);
    EXPECT_EQ(editor->program->wait(PATIENCE_MS), 0) << editor->program->err();
    EXPECT_EQ(editor->list("one.kel")[0][TIME], MID_TIME);
    take_back_what_was_left();
}

TEST_F(live_editor_window, a_screen_that_goes_leaves_what_was_not_saved_at_once) {
    draw_one_and_move_it();
    editor->screen->stop();
    EXPECT_EQ(editor->program->wait(PATIENCE_MS), 1) << editor->program->err();
    EXPECT_EQ(copies(), 1U);
    ASSERT_TRUE(editor->screen->start());
    take_back_what_was_left();
}

TEST_F(live_editor_window, what_was_not_saved_is_offered_after_the_program_was_killed) {
    editor->set("files", "copy-seconds=1");
    draw_one_and_move_it();
    // Copies are written each second here, else each half minute; that of a moment ago may lack the last change.
    ASSERT_TRUE(holds_within(PATIENCE_MS, [this] { return copies() == 1; }));
    sleep_ms(2500);
    editor->program->send(SIGKILL);
    EXPECT_EQ(editor->program->wait(PATIENCE_MS), 128 + SIGKILL);
    EXPECT_EQ(editor->list("one.kel")[0][TIME], MID_TIME);

    take_back_what_was_left();

    editor->open({}, "Untitled");
    EXPECT_FALSE(editor->screen->has_window("Unsaved scores"));
}

} // namespace
