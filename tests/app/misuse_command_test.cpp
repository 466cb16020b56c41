// tests/app/misuse_command_test.cpp: what the program says of a command line that it does not understand.
// Test layer.
#include "tests/app/command_test.h"

namespace {

class misuse_command_test : public command_test {
protected:
    // What is wrong with these words, as the one line on standard error says it.
    std::string misuse(const std::vector<std::string>& words) {
        const finished f = run(words);
        EXPECT_EQ(f.status, 2) << f.err;
        EXPECT_EQ(f.out, "");
        EXPECT_EQ(f.err.find('\n'), f.err.size() - 1) << f.err;
        return f.err.substr(0, f.err.find(" ("));
    }
};

TEST_F(misuse_command_test, a_word_that_nobody_expected_is_named) {
    EXPECT_EQ(misuse({"bogus"}), "brisolan: no command and no file of that name: bogus");
    EXPECT_EQ(misuse({"-"}), "brisolan: no command and no file of that name: -");
    EXPECT_EQ(misuse({"a\nb"}), "brisolan: no command and no file of that name: a\\nb");
    EXPECT_EQ(misuse({"--bogus"}), "brisolan: no such option: --bogus");
    EXPECT_EQ(misuse({"list", "-x.mid"}), "brisolan list: no such option: -x.mid");
    EXPECT_EQ(misuse({"list", "a", "b"}), "brisolan list: The following argument was not expected: b");
    EXPECT_EQ(misuse({"list"}), "brisolan list: FILE is required");
}

TEST_F(misuse_command_test, a_file_that_looks_like_an_option_is_told_how_to_be_named) {
    text("-x.mid", "x");
    const finished f = shell("exec \"$0\" list -x.mid");
    EXPECT_EQ(f.status, 2);
    EXPECT_TRUE(f.err.starts_with(
        "brisolan list: no such option: -x.mid; the file is named by ./-x.mid (brisolan list --help"))
        << f.err;
}

TEST_F(misuse_command_test, a_number_too_large_is_told_the_range_that_holds) {
    EXPECT_EQ(misuse({"play", "x", "--from", "3000000000"}),
              "brisolan play: --from: Value 3000000000 not in range 0 to 2147483647");
    EXPECT_EQ(misuse({"follow", "x", "--port", "0", "--part", "3000000000"}),
              "brisolan follow: --part: Value 3000000000 not in range 1 to 2147483647");
}

TEST_F(misuse_command_test, an_empty_word_is_no_value) {
    const std::string wanted = ": a value is wanted, not an empty word";
    EXPECT_EQ(misuse({"play", "x", "--wav", ""}), "brisolan play: --wav" + wanted);
    EXPECT_EQ(misuse({"follow", "x", "--performance", ""}), "brisolan follow: --performance" + wanted);
    EXPECT_EQ(misuse({"follow", "x", "--port", "0", "--to-port", ""}), "brisolan follow: --to-port" + wanted);
    EXPECT_EQ(misuse({"patch", "x", "--write-in", ""}), "brisolan patch: --write-in" + wanted);
    EXPECT_EQ(misuse({"record", "x.mid", "--virtual", ""}), "brisolan record: --virtual" + wanted);
    EXPECT_EQ(misuse({"list", ""}), "brisolan list: FILE" + wanted);
    // An instance that has no name has the empty one.
    EXPECT_EQ(run({"script", "--name", "", text("a.script", ":tracks\n")}).status, 0);
}

TEST_F(misuse_command_test, the_version_is_told_behind_every_command) {
    const finished whole = run({"--version"});
    EXPECT_EQ(whole.status, 0);
    EXPECT_TRUE(whole.out.starts_with("brisolan ")) << whole.out;
    for (const char* command :
         {"edit", "play", "record", "follow", "patch", "list", "convert", "render", "ports", "script"}) {
        const finished f = run({command, "--version"});
        EXPECT_EQ(f.status, 0) << f.err;
        EXPECT_EQ(f.out, whole.out);
    }
}

TEST_F(misuse_command_test, a_minus_is_refused_where_a_file_is_wanted) {
    EXPECT_EQ(misuse({"edit", "-"}), "brisolan: edit: the editor opens files, not standard input\n");
    EXPECT_EQ(misuse({"record", "-", "--virtual", "a"}),
              "brisolan: record: a file is wanted, not standard output\n");
}

} // namespace
