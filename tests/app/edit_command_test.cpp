// tests/app/edit_command_test.cpp: `brisolan edit` where there is no display, and with files that are not there.
// Test layer.
#include <cstdlib>

#include "tests/app/command_test.h"

namespace {

class edit_command_test : public command_test {
protected:
    void SetUp() override {
        command_test::SetUp();
        for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(variable);
    }
};

TEST_F(edit_command_test, says_in_one_line_that_there_is_no_display) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{}, {"edit"}, {example("prelude-in-c.mid")}}) {
        const finished f = run(words);
        EXPECT_EQ(f.status, 1);
        EXPECT_EQ(f.out, "");
        ASSERT_EQ(lines_of(f.err).size(), 1U) << f.err;
        EXPECT_NE(f.err.find(BRISOLAN_HAVE_QT ? "display" : "without its editor"), std::string::npos)
            << f.err;
    }
}

TEST_F(edit_command_test, names_a_file_that_is_not_there) {
    if (!BRISOLAN_HAVE_QT) GTEST_SKIP();
    const finished f = run({file("none.mid")});
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: " + file("none.mid") + ": No such file or directory\n");
}

TEST_F(edit_command_test, a_display_that_does_not_answer_is_told_of_in_one_line) {
    if (!BRISOLAN_HAVE_QT) GTEST_SKIP();
    setenv("DISPLAY", ":4077", 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    const finished f = run({"edit"});
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: the editor cannot be shown: could not connect to display :4077\n");
}

TEST_F(edit_command_test, a_word_that_is_neither_command_nor_file_is_misuse) {
    EXPECT_EQ(run({"frobnicate"}).status, 2);
}

} // namespace
