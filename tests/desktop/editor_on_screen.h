// tests/desktop/editor_on_screen.h: the editor on a screen that nobody sees, and what it saved.
// Test layer. Used by the tests of the desktop editor.
#pragma once

#include <gtest/gtest.h>

#include "tests/desktop/x_screen.h"

using note_row = std::vector<int>; // the eight numbers of a note

class editor_on_screen {
public:
    // Settings, copies and everything else that the editor keeps go to the folder.
    explicit editor_on_screen(const std::filesystem::path& folder);

    // Why it cannot be tested here; empty when it can.
    static std::string why_not();

    // Starts the screen, then the editor with these files; waits for its window and gives it the keys. A failure fails the
    // test.
    void open(const std::vector<std::string>& files, const std::string& title);
    // Ends it by a key; a status other than 0 fails the test.
    void quit();

    // Saves under a name in the folder, which the dialog asks for; ctrl+s where there is no name yet.
    void save_as(const std::string& name, const std::string& key = "ctrl+shift+s");
    // Saves again what save_as saved.
    void save();
    // The notes of a file in the folder, as `brisolan list` prints them.
    std::vector<note_row> list(const std::string& name) const;
    std::string file(const std::string& name) const { return (folder / name).string(); }
    // Writes a setting, "group/key", before the editor is started.
    void set(const std::string& group, const std::string& lines) const;

    // Waits until a menu is open, which takes the keys from then on; a failure fails the test.
    void wait_for_menu() const;

    std::unique_ptr<x_screen> screen;
    std::unique_ptr<process> program;

private:
    std::filesystem::path folder;
    std::filesystem::path saved;
};

// The fixture of tests that need nothing else: skipped, and saying so, where there is no screen to be had; in continuous
// integration that is a failure.
class editor_test : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    std::filesystem::path folder;
    std::unique_ptr<editor_on_screen> editor;
};

// Says that this test is left out and why; fails where that may not be.
void skip_editor_test(const std::string& why);
