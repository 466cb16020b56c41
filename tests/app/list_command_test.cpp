// tests/app/list_command_test.cpp: `brisolan list`, and what the program says of files that it cannot read.
// Test layer.
#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/app/command_test.h"
#include "tests/io/midi_bytes.h"

namespace {

using texts = std::vector<std::string>;

class list_command_test : public command_test {
protected:
    // What `list` says of a file of this name and content that it must refuse, without the file's name in front.
    std::string refused(const std::string& name, const std::string& contents) {
        return refused(text(name, contents));
    }
    std::string refused(const std::string& path) {
        const finished f = run({"list", path});
        EXPECT_EQ(f.status, 1);
        EXPECT_EQ(f.out, "");
        const std::string start = "brisolan: " + path + ": ";
        const texts told = lines_of(f.err);
        if (told.size() != 1 || !told[0].starts_with(start))
            return "not one line that names the file: " + f.err;
        return told[0].substr(start.size());
    }
};

TEST_F(list_command_test, an_event_is_a_line_of_eight_integers) {
    const std::string name = text("a.mid", one_track(on(96, 60, 100, 2) + off(96, 60, 2) + on(0, 62, 90)));
    const finished f = run({"list", name});
    EXPECT_EQ(f.status, 0);
    EXPECT_EQ(f.out, "500 60 100 500 3 1 0 0\n1000 62 90 10 1 1 0 0\n");
    EXPECT_EQ(f.err, "");
    EXPECT_EQ(run({"list", name, "--import-option", "1"}).out, "48 60 100 48 3 1 0 0\n96 62 90 10 1 1 0 0\n");
}

TEST_F(list_command_test, a_file_that_cannot_be_read_is_named_with_the_reason) {
    std::filesystem::create_directory(file("folder.mid"));
    EXPECT_EQ(refused(file("none.mid")), "No such file or directory");
    EXPECT_EQ(refused(file("folder.mid")), "Is a directory");
    EXPECT_EQ(refused("empty.mid", ""), "the file is empty");
    EXPECT_EQ(refused("empty.kel", ""), "the file is empty");
    EXPECT_EQ(
        refused("tune", one_track(on(0, 60))),
        "not a kind that can be read: the name should end in .mid, .midi, .smf, .kar, .kel, .txt or .kelb");
    EXPECT_EQ(refused("text.mid", "Dear reader"), "bad midi file");
    EXPECT_EQ(refused("later.mid", midi_header(2, 1, 96) + chunk(end_of_track())),
              "MIDI File format 2 not supported");
    EXPECT_EQ(refused("sysex.mid", one_track(on(0, 60) + bytes({0, 0xF0, 2, 0x90, 1}))), "bad midi file");
    EXPECT_EQ(refused("other.kel", "#N other x;\n"), "not a brisolan file");
    EXPECT_EQ(refused("wrong.kel", "#N brisolan;\n#X what;\n"), "host: brisolan: no message \"what\"");
    EXPECT_EQ(refused("half.kel", "#N brisolan;\n#X restore;\n#X 1 2"),
              "the last message does not end with ';' in line 3");
}

TEST_F(list_command_test, a_document_need_not_restore_anything) {
    for (const char* lines : {"#N brisolan;\n", "#N brisolan a;\n#X setparam 1 Key 2 0 127 60 12 4 0;\n"}) {
        const finished f = run({"list", text("a.kel", lines)});
        EXPECT_EQ(f.status, 0) << f.err;
        EXPECT_EQ(f.out + f.err, "");
    }
    const finished f = run({"convert", file("a.kel"), "-", "--to", "kel"});
    EXPECT_EQ(f.status, 0) << f.err;
    EXPECT_NE(f.out.find("#X setparam 1 Key "), std::string::npos) << f.out;
    EXPECT_EQ(refused("broken.kel", "#N brisolan;\n#X setparam 1 Key"),
              "the last message does not end with ';' in line 2");
}

// Root may read everything, unless it gives up the rights by which it does.
TEST_F(list_command_test, a_file_that_may_not_be_read_is_named_with_the_reason) {
    const std::string name = text("mine.mid", one_track(on(0, 60)));
    std::filesystem::permissions(name, std::filesystem::perms::none);
    const std::string rights = "-dac_override,-dac_read_search";
    std::string without_rights;
    if (geteuid() == 0) without_rights = "setpriv --inh-caps=" + rights + " --bounding-set=" + rights + " ";
    if (shell(without_rights + "true").status != 0) GTEST_SKIP() << "who runs this may read everything";
    const finished f = shell(without_rights + "\"$0\" list mine.mid");
    EXPECT_EQ(f.status, 1);
    EXPECT_EQ(f.out, "");
    EXPECT_EQ(f.err, "brisolan: mine.mid: Permission denied\n");
}

TEST_F(list_command_test, a_midi_file_that_is_cut_off_anywhere_is_refused) {
    const std::string whole = one_track(on(0, 60) + bytes({0, 0xC0, 5}) + off(96, 60) + meta(0, 1, "text"));
    for (std::size_t n = 1; n < whole.size(); ++n) {
        SCOPED_TRACE(n);
        const std::string why = refused("cut.mid", whole.substr(0, n));
        const bool in_header = n < 14;
        EXPECT_TRUE(in_header ? why == "bad midi file" : why.starts_with("the file is cut off")) << why;
    }
    const finished f = run({"list", text("none.mid", midi_header(0, 0, 96))});
    EXPECT_EQ(f.status, 0) << "no track, and none was told of";
    EXPECT_EQ(f.out + f.err, "");
}

TEST_F(list_command_test, standard_input_is_called_so) {
    const std::string refused_format = midi_header(2, 1, 96);
    const std::string half_a_header = bytes({'M', 'T', 'h', 'd', 1});
    const std::string without_notes = midi_header(0, 0, 96);
    for (const auto& [command, contents] :
         {std::pair{"list", std::string("Dear reader\n")}, std::pair{"list", refused_format},
          std::pair{"list", half_a_header}, std::pair{"play", without_notes}}) {
        const std::string line =
            std::string(BRISOLAN_PROGRAM) + " " + command + " - < " + text("in", contents);
        process shell(folder, "shell", {"/bin/sh", "-c", line});
        EXPECT_EQ(shell.wait(60'000), 1);
        EXPECT_EQ(shell.out(), "");
        const texts told = lines_of(shell.err());
        ASSERT_EQ(told.size(), 1U);
        EXPECT_TRUE(told[0].starts_with("brisolan: standard input: ")) << told[0];
    }
}

TEST_F(list_command_test, a_signal_while_standard_input_is_read_leaves_no_temporary_file) {
    const std::filesystem::path temporary = folder / "temporary";
    std::filesystem::create_directory(temporary);
    const auto left = [&temporary] {
        return std::distance(std::filesystem::directory_iterator(temporary),
                             std::filesystem::directory_iterator());
    };
    const std::string pipe = file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    process list(
        folder, "list",
        {"/bin/sh", "-c",
         "TMPDIR='" + temporary.string() + "' exec '" + BRISOLAN_PROGRAM + "' list - < '" + pipe + "'"});
    // More than the program looks at before it keeps any of it, and then no end.
    const int to = open(pipe.c_str(), O_RDWR);
    const std::string much(100'000, ' ');
    ASSERT_EQ(write(to, much.data(), much.size()), static_cast<ssize_t>(much.size()));
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&left] { return left() == 1; }));
    list.send(SIGTERM);
    EXPECT_EQ(list.wait(PATIENCE_MS), 128 + SIGTERM);
    EXPECT_EQ(left(), 0);
    close(to);
}

TEST_F(list_command_test, misuse_is_told_with_status_2) {
    for (const texts& words : std::vector<texts>{
             {"list"}, {"list", "a", "b"}, {"list", "--all", "a"}, {"list", "a", "--import-option", "x"}}) {
        const finished f = run(words);
        EXPECT_EQ(f.status, 2);
        EXPECT_EQ(f.out, "");
        EXPECT_EQ(lines_of(f.err).size(), 1U) << f.err;
    }
}

} // namespace
