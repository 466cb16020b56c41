// tests/app/script_command_test.cpp: `brisolan script`: what it refuses, and that a printed line is one line.
// Test layer.
#include <filesystem>

#include "tests/app/command_test.h"

namespace {

class script_command_test : public command_test {
protected:
    finished script(const std::string& lines) { return run({"script", text("a.script", lines)}); }

    // What is wrong with this line, which must be refused with nothing done.
    std::string refused(const std::string& line) {
        const finished f = script("# the second line\n" + line + "\n:tracks\n");
        EXPECT_EQ(f.status, 2) << line;
        EXPECT_EQ(f.out, "") << line;
        const std::string start = "script: line 2: ";
        if (!f.err.starts_with(start) || f.err.find('\n') != f.err.size() - 1)
            return "not one line that names the line: " + f.err;
        return f.err.substr(start.size(), f.err.size() - start.size() - 1);
    }

    static constexpr const char* all_tracks = "tracks 11111111111111111111111111111111\n";
};

TEST_F(script_command_test, a_line_that_is_not_understood_ends_it) {
    EXPECT_EQ(refused(":quack"), "unknown command :quack");
    EXPECT_EQ(refused("start \"here"), "a quote is not closed");
    EXPECT_EQ(refused("nth 2147483648"), "integer out of range: 2147483648");
    const finished f = script(":tracks\n:quack\n:tracks\n");
    EXPECT_EQ(f.status, 2);
    EXPECT_EQ(f.out, all_tracks);
    EXPECT_EQ(f.err, "script: line 2: unknown command :quack\n");
}

TEST_F(script_command_test, wrong_words_of_a_command_end_it) {
    const std::pair<const char*, const char*> wrong[] = {
        {":in 0 1", ":in: no inlet 0"},
        {":in 8 1", ":in: no inlet 8"},
        {":in 1 x", ":in: a number is wanted: x"},
        {":in 1 2147483648", ":in: a number is wanted: 2147483648"},
        {":in 1", ":in: too few words"},
        {":in 1 2 3", ":in: too many words"},
        {":wait", ":wait: too few words"},
        {":wait -1", ":wait: milliseconds are wanted: -1"},
        {":wait soon", ":wait: milliseconds are wanted: soon"},
        {":new a b", ":new: too many words"},
        {":use 2", ":use: no instance 2"},
        {":use 0", ":use: no instance 0"},
        {":free 1", ":free: too many words"},
        {":loop", ":loop: too few words"},
        {":loop maybe", ":loop: on or off is wanted: maybe"},
        {":tie 8 bang", ":tie: no outlet 8"},
        {":tie 0", ":tie: too few words"},
        {":tie 0 nth 2147483648", ":tie: integer out of range: 2147483648"},
        {":untie 0", ":untie: too many words"},
        {":click 1", ":click: too few words"},
        {":click 1 x", ":click: a window point is wanted"},
        {":click 1 40000", ":click: a window point is wanted"},
        {":click 1 1 meta", ":click: unknown modifier"},
        {":drag 1", ":drag: too few words"},
        {":drag a b", ":drag: a window point is wanted"},
        {":release 1", ":release: a window point is wanted"},
        {":release a b", ":release: a window point is wanted"},
        {":hold 1 2 3", ":hold: window points are wanted"},
        {":hold a b", ":hold: a window point is wanted"},
        {":pointer in", ":pointer: a window point is wanted"},
        {":pointer 1 2 meta", ":pointer: unknown modifier"},
        {":pointer out meta", ":pointer: unknown modifier"},
        {":key", ":key: too few words"},
        {":resize 100", ":resize: too few words"},
        {":resize 0 100", ":resize: a width and a height from 1 to 16384 are wanted"},
        {":resize 100 16385", ":resize: a width and a height from 1 to 16384 are wanted"},
        {":update 1", ":update: too many words"},
        {":edit undo", ":edit: unknown command undo"},
        {":clipboard a b", ":clipboard: too many words"},
        {":choose", ":choose: too few words"},
        {":choose -1", ":choose: an item's number is wanted: -1"},
        {":answer", ":answer: too few words"},
        {":answer a.mid Text", ":answer: unknown type Text"},
        {":saveto", ":saveto: too few words"},
        {":saveto a.mid Midi", ":saveto: unknown form Midi"},
        {":patcher 1", ":patcher: too many words"},
        {":pstate 1", ":pstate: too many words"},
        {":assist inlet", ":assist: too few words"},
        {":assist inlet 8", ":assist: no inlet 8"},
        {":assist somewhere 1", ":assist: inlet or outlet is wanted: somewhere"},
        {":dump 1", ":dump: too many words"},
        {":params 1", ":params: too many words"},
        {":state 1", ":state: too many words"},
        {":tracks 1", ":tracks: too many words"},
        {":png", ":png: too few words"},
    };
    for (const auto& [line, why] : wrong) EXPECT_EQ(refused(line), why);
}

TEST_F(script_command_test, the_largest_window_is_as_large_as_asked_for) {
    const finished f = script("open\n:resize 16384 1\n:resize 1 16384\n:tracks\n");
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_EQ(f.out, all_tracks);
}

TEST_F(script_command_test, a_path_beyond_what_a_dialog_can_give_is_refused) {
    EXPECT_EQ(refused(":answer " + std::string(4096, 'a')), ":answer: a path is at most 4095 bytes long");
    EXPECT_EQ(script(":answer " + std::string(4095, 'a') + "\n").status, 0);
}

TEST_F(script_command_test, without_an_instance_only_those_lines_work_that_need_none) {
    EXPECT_EQ(script(":free\n:wait 1\n:new\n:tracks\n").out, all_tracks);
    const finished f = script(":free\nbang\n");
    EXPECT_EQ(f.status, 2);
    EXPECT_EQ(f.err, "script: line 2: no instance is addressed\n");
    EXPECT_EQ(script(":free\n:use 1\n").err, "script: line 2: :use: instance 1 was freed\n");
}

TEST_F(script_command_test, a_carriage_return_before_the_line_end_is_none_of_the_line) {
    const finished f = script("# a comment\r\n\r\n:tracks\r\n:quack\r\n");
    EXPECT_EQ(f.out, all_tracks);
    EXPECT_EQ(f.err, "script: line 4: unknown command :quack\n");
}

TEST_F(script_command_test, the_last_line_need_not_end) {
    EXPECT_EQ(script(":tracks").out, all_tracks);
    EXPECT_EQ(script("").status, 0);
}

TEST_F(script_command_test, a_byte_0_ends_it_and_cuts_no_word) {
    using namespace std::string_literals;
    EXPECT_EQ(refused("write \"a\0b.mid\""s), "a byte 0 is in it");
    EXPECT_EQ(refused(":tracks\0"s), "a byte 0 is in it");
    EXPECT_FALSE(std::filesystem::exists(file("a")));
}

TEST_F(script_command_test, a_printed_line_is_one_line_whatever_names_are_in_it) {
    const finished f = script("setparam 1 \"a\\nevent 1\" 2 0 127 60 12 4 0\n:assist outlet 1\n:params\n"
                              "\"foo\\rbar\x01\x7f\"\nwritekel \"no\\nfolder/a\"\n");
    EXPECT_EQ(f.status, 0) << f.err;
    const std::vector<std::string> lines = lines_of(f.out);
    ASSERT_EQ(lines.size(), 11U) << f.out;
    EXPECT_EQ(lines[0], "assist a\\nevent 1 Parameter Output");
    EXPECT_TRUE(lines[2].starts_with("param 1 a\\nevent 1 mode=")) << lines[2];
    EXPECT_EQ(lines[9], "error host: brisolan: no message \"foo\\rbar\\x01\\x7f\"");
    EXPECT_EQ(lines[10], "error no\\nfolder/a was not saved: no such file or folder");
    EXPECT_EQ(refused("\"a\n"), "a quote is not closed");
    EXPECT_EQ(refused(":\"a\\nb\""), "unknown command :a\\nb");
}

TEST_F(script_command_test, a_console_line_is_as_long_as_it_is) {
    const std::string name(3000, 'a');
    EXPECT_EQ(script(name + "\n").out, "error host: brisolan: no message \"" + name + "\"\n");
}

TEST_F(script_command_test, a_script_that_cannot_be_read_is_named_with_the_reason) {
    const std::pair<const char*, const char*> unread[] = {
        {"exec \"$0\" script <.", "standard input: Is a directory"},
        {"exec \"$0\" script <&-", "standard input: Bad file descriptor"},
        {"exec \"$0\" script .", ".: Is a directory"},
        {"exec \"$0\" script none", "none: No such file or directory"},
    };
    for (const auto& [line, why] : unread) {
        const finished f = shell(line);
        EXPECT_EQ(f.status, 1) << line;
        EXPECT_EQ(f.out, "") << line;
        EXPECT_EQ(f.err, std::string("brisolan: can't read ") + why + "\n");
    }
}

} // namespace
