// tests/app/output_command_test.cpp: what the program does where its output cannot go.
// Test layer.
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include "tests/app/command_test.h"

namespace {

namespace fs = std::filesystem;

class output_command_test : public command_test {
protected:
    std::string contents(const std::string& name) const {
        std::ifstream in(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    // What lies in a folder.
    static std::size_t files(const fs::path& where) {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(where), fs::directory_iterator()));
    }

    const std::string piece = example("prelude-in-c.mid");
    // No file beyond this shell's word may be written further than some hundreds of bytes.
    const std::string little_room = "ulimit -f 1 && exec \"$0\" ";
};

// A MIDI file with tracks has none for notes whose track is below 1 or above the parameter's range.
TEST_F(output_command_test, a_midi_file_gets_tracks_where_they_hold_every_note) {
    struct conversion {
        const char* range; // of the tracks
        int first, second; // track
        char format;
        const char* listed;
    };
    for (const conversion& c : {conversion{"1 255", 1, 2, 1, "0 60 64 125 1 1 0 0\n125 62 64 125 1 2 0 0\n"},
                                {"1 255", 1, 1, 0, "0 60 64 125 1 1 0 0\n125 62 64 125 1 1 0 0\n"},
                                {"1 1", 2, 2, 0, "0 60 64 125 1 1 0 0\n125 62 64 125 1 1 0 0\n"},
                                {"1 2", 2, 3, 0, "0 60 64 125 1 1 0 0\n125 62 64 125 1 1 0 0\n"},
                                {"1 255", 2, 0, 0, "0 60 64 125 1 1 0 0\n125 62 64 125 1 1 0 0\n"}}) {
        const std::string from =
            text("a.kel", std::string("#N brisolan;\n#X setparam 5 Track 0 ") + c.range +
                              " 1 8 1 0;\n#X restore;\n#X 0 60 64 125 1 " + std::to_string(c.first) +
                              " 0 0;\n#X 125 62 64 125 1 " + std::to_string(c.second) + " 0 0;\n#X stop;\n");
        EXPECT_EQ(run({"convert", from, file("a.mid"), "--force"}).err, "");
        EXPECT_EQ(contents("a.mid")[9], c.format) << c.range << " " << c.second;
        EXPECT_EQ(run({"list", file("a.mid")}).out, c.listed) << c.range << " " << c.second;
    }
}

TEST_F(output_command_test, an_old_picture_stands_when_the_new_one_cannot_be_written) {
    fs::create_directory(file("there"));
    text("there/a.png", "old");
    const finished f = shell(little_room + "render --force '" + piece + "' there/a.png");
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: there/a.png: no space left\n");
    EXPECT_EQ(contents("there/a.png"), "old");
    EXPECT_EQ(files(file("there")), 1U);
}

TEST_F(output_command_test, a_picture_goes_where_a_link_leads_and_keeps_the_rights) {
    const fs::path target = text("target.png", "old");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("target.png", file("a.png"));
    EXPECT_EQ(run({"render", "--force", piece, file("a.png")}).status, 0);
    EXPECT_TRUE(fs::is_symlink(file("a.png")));
    EXPECT_EQ(contents("target.png").substr(0, 4), "\x89PNG");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(output_command_test, a_picture_never_takes_a_devices_place) {
    const finished f = run({"render", "--force", piece, "/dev/full"});
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: /dev/full: a folder, or not to be opened as a file\n");
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(output_command_test, a_picture_on_standard_output_is_the_one_of_a_file) {
    EXPECT_EQ(run({"render", piece, file("a.png")}).status, 0);
    const finished f = run({"render", piece, "-"});
    EXPECT_EQ(f.status, 0);
    EXPECT_TRUE(f.out == contents("a.png"));
    EXPECT_EQ(f.err, "");
}

TEST_F(output_command_test, a_script_tells_a_picture_that_cannot_be_written_and_goes_on) {
    fs::create_directory(file("there"));
    text("there/a.png", "old");
    text("a.script", "open\n:png there/a.png\n:png no/a.png\n:png there\n:tracks\n");
    const finished f = shell(little_room + "script a.script");
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.out, "error host: can't write there/a.png: no space left\n"
                     "error host: can't write no/a.png: no such file or folder\n"
                     "error host: can't write there: a folder, or not to be opened as a file\n"
                     "tracks 11111111111111111111111111111111\n");
    EXPECT_EQ(contents("there/a.png"), "old");
    EXPECT_EQ(files(file("there")), 1U);
}

TEST_F(output_command_test, a_script_never_puts_a_picture_among_its_lines) {
    text("a.script", "open\n:png -\n:tracks\n");
    const finished f = shell("exec \"$0\" script a.script");
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.out, "tracks 11111111111111111111111111111111\n");
    EXPECT_EQ(contents("-").substr(0, 4), "\x89PNG");
}

TEST_F(output_command_test, a_reader_who_goes_leaves_no_temporary_folder_behind) {
    fs::create_directory(file("tmp"));
    // More than a pipe holds, so that the writing is still under way when its reader goes.
    score("many.kel", std::vector<command_note>(20'000));
    const finished f = shell("TMPDIR=tmp \"$0\" convert many.kel - --to kel | head -n 1");
    EXPECT_EQ(f.out, "#N brisolan \"\";\n");
    EXPECT_EQ(files(file("tmp")), 0U);
}

TEST_F(output_command_test, a_folder_for_temporary_files_that_is_missing_is_named) {
    finished f = shell("TMPDIR=no exec \"$0\" convert '" + piece + "' - --to kel");
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: standard output: nothing can be kept in no: No such file or directory\n");
    f = shell("TMPDIR=no exec \"$0\" list - <'" + piece + "'");
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: standard input: nothing can be kept in no: No such file or directory\n");
}

TEST_F(output_command_test, standard_output_that_takes_nothing_is_a_failure_told_in_one_line) {
    text("a.script", ":tracks\n");
    text("a.kel", "#N loadbang; #N print a; #P cord 0 0 1 0;\n");
    score("many.kel", std::vector<command_note>(20'000)); // more than is gathered before it is written
    for (const std::string command :
         {"script a.script", "patch a.kel --for 10", "patch a.kel", "list many.kel", "--help", "--version",
          "list --help", "convert many.kel - --to kel", "follow many.kel --performance many.kel --json"}) {
        const finished full = shell("exec \"$0\" " + command + " >/dev/full");
        EXPECT_EQ(full.status, 1) << command;
        EXPECT_EQ(full.err, "brisolan: standard output: No space left on device\n") << command;
        const finished closed = shell("exec \"$0\" " + command + " >&-");
        EXPECT_EQ(closed.status, 1) << command;
        EXPECT_EQ(closed.err, "brisolan: standard output: Bad file descriptor\n") << command;
    }
}

TEST_F(output_command_test, a_script_ends_when_nobody_can_read_what_it_prints) {
    // Without an end of its own: the lines that feed it go on for ever.
    const finished f = shell("while echo :tracks; do :; done 2>tmp | \"$0\" script >/dev/full");
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.err, "brisolan: standard output: No space left on device\n");
}

TEST_F(output_command_test, what_prints_nothing_needs_no_standard_output) {
    const finished f = shell("exec \"$0\" convert '" + piece + "' a.kel >&-");
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_EQ(f.err, "");
    EXPECT_TRUE(contents("a.kel").starts_with("#N brisolan"));
}

TEST_F(output_command_test, a_name_with_a_line_end_in_it_is_told_in_one_line) {
    EXPECT_EQ(run({"list", "no\nfile.mid"}).err, "brisolan: no\\nfile.mid: No such file or directory\n");
    EXPECT_EQ(run({"render", piece, "no\nfolder/a.png"}).err,
              "brisolan: no\\nfolder/a.png: no such file or folder\n");
    EXPECT_EQ(run({"convert", piece, "no\nfolder/a.kel"}).err,
              "brisolan: no\\nfolder/a.kel was not saved: no such file or folder\n");
}

} // namespace
