// tests/boxes/patchfile_test.cpp: patches read and written: round trips, broken boxes, what wrong lines do.
// Test layer.
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include <unistd.h>

#include "host/kernel/files.h"
#include "host/kernel/objects.h"
#include "host/kernel/patchfile.h"
#include "tests/boxes/boxes_test.h"

namespace {

namespace fs = std::filesystem;

class patchfile_test : public boxes_test {
protected:
    // The text comes back byte for byte.
    void expect_round_trip(const std::string& text) {
        EXPECT_TRUE(load(text));
        EXPECT_EQ(saved(), text);
    }
    void expect_silence() { EXPECT_EQ(taken(), texts{}); }
};

std::string contents(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST_F(patchfile_test, boxes_cords_and_window_come_back_as_they_were_written) {
    expect_round_trip("#P window 10 20 300 200;\n"
                      "#N delay 500;\n"
                      "#P box 20 30;\n"
                      "#N message start , 1 0.5 \"two words\" \"\" \"60\";\n"
                      "#P box 20 60 120;\n"
                      "#N print \"a \\\"quoted\\\" name\";\n"
                      "#P box -5 0;\n"
                      "#P cord 0 0 1 0;\n"
                      "#P cord 1 0 2 0;\n");
    expect_silence();
}

TEST_F(patchfile_test, an_instances_own_lines_stand_in_the_patch_as_it_saves_them) {
    const std::string instance = "#N brisolan tune;\n"
                                 "#X setparam 0 Time 0 0 0 0 1000 10 0;\n"
                                 "#X setparam 1 Pitch 0 0 127 60 12 1 1;\n"
                                 "#X setparam 2 Vel 0 0 127 64 10 1 0;\n"
                                 "#X setparam 3 Dur 0 0 0 100 1000 10 0;\n"
                                 "#X setparam 4 Chan 0 1 16 1 1 1 0;\n"
                                 "#X setparam 5 Track 0 1 32 1 1 1 0;\n"
                                 "#X setparam 6 X1 0 0 127 0 10 1 0;\n"
                                 "#X setparam 7 X2 0 0 127 0 10 1 0;\n"
                                 "#X restore;\n"
                                 "#X 100 60 64 300 1 1 0 0;\n"
                                 "#X 150 64 64 300 2 1 0 0;\n"
                                 "#X stop;\n"
                                 "#P box 40 50;\n";
    expect_round_trip("#P window 0 0 640 400;\n" + instance +
                      "#N print out;\n#P box 40 90;\n#P cord 0 1 1 0;\n");
    expect_silence();
    const auto* const x = static_cast<const brisolan*>(box(0));
    EXPECT_STREQ(x->name->name, "tune");
    ASSERT_NE(static_cast<event*>(x->events), nullptr);
    EXPECT_EQ(x->events->next->time, 250);
    EXPECT_EQ(x->mode, MODE_IDLE);
    send(0, "nth 1");
    EXPECT_EQ(taken(), texts{"post out: 64"});
}

TEST_F(patchfile_test, an_unknown_class_is_a_broken_box_that_is_written_back_unchanged) {
    const std::string text = "#P window 0 0 640 400;\n"
                             "#N print one;\n"
                             "#P box 0 0;\n"
                             "#N harmonizer 3 \"a b\" -0.5;\n"
                             "#X depth 12;\n"
                             "#X 1 2 3;\n"
                             "#P box 20 30 88;\n"
                             "#N loadbang;\n"
                             "#P box 0 0;\n"
                             "#P cord 2 0 1 0;\n"
                             "#P cord 2 0 0 0;\n"
                             "#P cord 1 0 0 0;\n";
    EXPECT_TRUE(load(text));
    EXPECT_EQ(taken(), (texts{"error host: test.kel: line 4: no class named \"harmonizer\"",
                              "error host: test.kel: line 10: a cord to a broken box",
                              "error host: test.kel: line 12: a cord to a broken box", "post one: bang"}));
    EXPECT_EQ(box(1), nullptr);
    EXPECT_EQ(saved(), text);
}

TEST_F(patchfile_test, a_box_whose_arguments_do_not_fit_is_broken_too) {
    const std::string text = "#P window 0 0 640 400;\n#N delay soon;\n#P box 0 0;\n";
    EXPECT_TRUE(load(text));
    EXPECT_EQ(taken(), (texts{"error host: delay: new: argument 1 must be an integer",
                              "error host: test.kel: line 2: this box cannot be made"}));
    EXPECT_EQ(saved(), text);
}

TEST_F(patchfile_test, the_hosts_own_classes_are_no_boxes) {
    EXPECT_TRUE(load("#N #N;\n#X print;\n#N patcher;\n"));
    EXPECT_EQ(taken(), (texts{"error host: test.kel: line 1: no class named \"#N\"",
                              "error host: test.kel: line 3: no class named \"patcher\""}));
    EXPECT_EQ(kel_patcher_patch(patcher).boxes.size(), 2U);
}

TEST_F(patchfile_test, messages_to_a_box_that_does_not_save_itself_are_sent_and_kept) {
    const std::string text =
        "#P window 0 0 640 400;\n#N tempo;\n#X speed 2.;\n#P box 0 0;\n#N print;\n#P box 0 "
        "0;\n#P cord 0 0 1 0;\n";
    expect_round_trip(text);
    send(0, "500");
    EXPECT_EQ(taken(), texts{"post print: 250"});
}

TEST_F(patchfile_test, a_line_that_an_instance_does_not_take_is_told_and_kept) {
    ASSERT_TRUE(load("#N brisolan;\n#X swing 60;\n#X stop;\n"));
    EXPECT_EQ(taken(), (texts{"error host: brisolan: no message \"swing\"",
                              "error host: test.kel: line 2: the box does not take this message"}));
    const std::string text = saved();
    EXPECT_NE(text.find("#X stop;\n#X swing 60;\n#P box 0 0;\n"), std::string::npos) << text;
}

TEST_F(patchfile_test, each_wrong_line_is_told_with_its_place_and_reason_and_the_rest_is_read) {
    ASSERT_TRUE(load("#X 1 2;\n"
                     "#P box 1 2;\n"
                     "\n"
                     "#N print; #N 7;\n"
                     "12 13;\n"
                     "score clear;\n"
                     "#P box 1;\n"
                     "#P box 1 2 3 4;\n"
                     "#P window 1 2 3;\n"
                     "#P cord 0 0\n"
                     "   1;\n"
                     "#P zoom 2;\n"
                     "#P;\n"
                     "#N message \"a ; b\" c\\;d; #P cord 0 0 9 0;\n"
                     "#P cord 1 0 0 1; #P cord 1 1 0 0; #P cord -1 0 0 0;\n"
                     "\\#Q 1;"));
    EXPECT_EQ(taken(), (texts{
                           "error host: test.kel: line 1: #X has no box before it",
                           "error host: test.kel: line 2: #P box has no box before it",
                           "error host: test.kel: line 4: #N wants the name of a class",
                           "error host: test.kel: line 5: a patch's lines begin with #N, #X or #P",
                           "error host: test.kel: line 6: a patch's lines begin with #N, #X or #P",
                           "error host: test.kel: line 7: #P box wants left, top and perhaps width",
                           "error host: test.kel: line 8: #P box wants left, top and perhaps width",
                           "error host: test.kel: line 9: #P window wants left, top, width and height",
                           "error host: test.kel: line 10: #P cord wants box, outlet, box and inlet",
                           "error host: test.kel: line 12: an unknown #P line",
                           "error host: test.kel: line 13: an unknown #P line",
                           "error host: test.kel: line 14: a cord to a box that is not there",
                           "error host: test.kel: line 15: a cord to an inlet that is not there",
                           "error host: test.kel: line 15: a cord from an outlet that is not there",
                           "error host: test.kel: line 15: a cord to a box that is not there",
                           "error host: test.kel: line 16: a patch's lines begin with #N, #X or #P",
                       }));
    EXPECT_EQ(saved(), "#P window 40 40 640 400;\n"
                       "#X 1 2;\n#P box 1 2;\n#N 7;\n12 13;\nscore clear;\n#P box 1;\n#P box 1 2 3 4;\n"
                       "#P window 1 2 3;\n#P cord 0 0 1;\n#P zoom 2;\n#P;\n#Q 1;\n"
                       "#N print;\n#P box 0 0;\n"
                       "#N message \"a ; b\" \"c;d\";\n#P box 0 0;\n"
                       "#P cord 0 0 9 0;\n#P cord 1 0 0 1;\n#P cord 1 1 0 0;\n#P cord -1 0 0 0;\n");
}

TEST_F(patchfile_test, a_text_without_form_makes_nothing) {
    EXPECT_FALSE(load("#N print;\n#N print \"open;\n"));
    EXPECT_FALSE(load("#N print 99999999999;\n"));
    EXPECT_FALSE(load("#N print"));
    EXPECT_EQ(taken(), (texts{"error host: test.kel: line 2: a control character",
                              "error host: test.kel: line 1: a number out of range",
                              "error host: test.kel: line 1: the last message does not end with ';'"}));
    EXPECT_TRUE(kel_patcher_objects(patcher).empty());
}

TEST_F(patchfile_test, an_empty_text_is_an_empty_patch) {
    EXPECT_TRUE(load(""));
    EXPECT_EQ(saved(), "#P window 40 40 640 400;\n");
}

TEST_F(patchfile_test, a_cord_told_twice_is_one_cord) {
    ASSERT_TRUE(load("#N message 1; #N print; #P cord 0 0 1 0; #P cord 0 0 1 0;"));
    send(0, "bang");
    EXPECT_EQ(taken(), texts{"post print: 1"});
}

TEST_F(patchfile_test, a_box_that_goes_takes_its_cords_along_and_the_others_keep_theirs) {
    ASSERT_TRUE(load("#N print gone; #N message 1; #N print here; #P cord 1 0 0 0; #P cord 1 0 2 0;"));
    kel_patcher_remove(patcher, box(0));
    EXPECT_EQ(saved(), "#P window 40 40 640 400;\n#N message 1;\n#P box 0 0;\n#N print here;\n#P box 0 0;\n"
                       "#P cord 0 0 1 0;\n");
    send(0, "bang");
    EXPECT_EQ(taken(), texts{"post here: 1"});
}

TEST_F(patchfile_test, a_patch_just_read_is_unchanged) {
    ASSERT_TRUE(load("#N print;"));
    EXPECT_FALSE(kel_patcher_changed(patcher));
    EXPECT_EQ(taken(), texts{});
}

TEST_F(patchfile_test, the_programs_own_patches_come_back_byte_for_byte) {
    for (const char* name : {"play", "record", "follow"}) {
        SCOPED_TRACE(name);
        const std::string text =
            contents(fs::path(BRISOLAN_SOURCE_DIR) / "patches" / (std::string(name) + ".kel"));
        ASSERT_NE(text, "");
        host_patcher* const before = patcher;
        patcher = kel_patcher_new();
        EXPECT_TRUE(load(text));
        EXPECT_EQ(taken(), texts{});
        // The score is empty and has no lines in the file; saved, it tells its parameters.
        std::string out = saved();
        const std::size_t from = out.find("#X setparam");
        const std::size_t to = out.find("#X stop;\n") + 9;
        ASSERT_NE(from, std::string::npos);
        out.erase(from, to - from);
        EXPECT_EQ(out, text);
        kel_patcher_free(patcher);
        patcher = before;
    }
}

// Both document forms, through files.
class patch_files_test : public patchfile_test {
protected:
    void SetUp() override {
        patchfile_test::SetUp();
        folder = fs::temp_directory_path() / ("brisolan-patch-" + std::to_string(getpid()));
        fs::create_directories(folder);
    }
    void TearDown() override {
        fs::remove_all(folder);
        patchfile_test::TearDown();
    }
    std::string file(const char* name) const { return (folder / name).string(); }

    fs::path folder;
};

TEST_F(patch_files_test, a_patch_is_written_and_read_in_both_forms) {
    const std::string text =
        "#P window 0 0 640 400;\n#N delay 500;\n#P box 20 30;\n#N print \"a b\";\n#P box 0 "
        "0;\n#P cord 0 0 1 0;\n";
    ASSERT_TRUE(load(text));
    ASSERT_EQ(kel_patch_write(patcher, file("a.kel").c_str(), host_default_path(), ATOMBUF_TEXT), HOST_OK);
    ASSERT_EQ(kel_patch_write(patcher, file("a.kelb").c_str(), host_default_path(), ATOMBUF_BINARY), HOST_OK);
    EXPECT_EQ(contents(file("a.kel")), text);
    for (const char* name : {"a.kel", "a.kelb"}) {
        SCOPED_TRACE(name);
        kel_patcher_free(patcher);
        patcher = kel_patcher_new();
        EXPECT_TRUE(kel_patch_read(patcher, file(name).c_str(), host_default_path()));
        EXPECT_EQ(saved(), text);
    }
    expect_silence();
}

TEST_F(patch_files_test, a_file_that_cannot_be_read_gives_one_line) {
    EXPECT_FALSE(kel_patch_read(patcher, file("none.kel").c_str(), host_default_path()));
    std::ofstream(file("bad.kelb")) << "kel";
    EXPECT_FALSE(kel_patch_read(patcher, file("bad.kelb").c_str(), host_default_path()));
    EXPECT_FALSE(kel_patch_read(patcher, folder.string().c_str(), host_default_path()));
    const texts printed = taken();
    ASSERT_EQ(printed.size(), 3U);
    EXPECT_EQ(printed[0], "error host: " + file("none.kel") + ": no such file or folder");
    EXPECT_TRUE(printed[1].starts_with("error host: " + file("bad.kelb") + ": ")) << printed[1];
    EXPECT_TRUE(printed[2].starts_with("error host: " + folder.string() + ": ")) << printed[2];
}

TEST_F(patch_files_test, a_wrong_message_of_the_binary_form_is_told_by_its_number) {
    ASSERT_TRUE(load("#N print; #N nothing;"));
    ASSERT_EQ(kel_patch_write(patcher, file("a.kelb").c_str(), host_default_path(), ATOMBUF_BINARY), HOST_OK);
    taken();
    kel_patcher_free(patcher);
    patcher = kel_patcher_new();
    EXPECT_TRUE(kel_patch_read(patcher, file("a.kelb").c_str(), host_default_path()));
    EXPECT_EQ(taken(), texts{"error host: " + file("a.kelb") + ": message 4: no class named \"nothing\""});
}

// Whatever stands in a patch, what was once read and written comes back byte for byte; nothing crashes.
TEST_F(patchfile_test, random_lines_once_written_come_back_byte_for_byte) {
    const unsigned seed = std::random_device{}();
    std::printf("seed %u\n", seed);
    std::mt19937 random(seed);
    const std::vector<std::string> words{"#N",    "#X",     "#P",      "box",      "cord", "window",
                                         "delay", "print",  "message", "tempo",    "0",    "1",
                                         "2",     "-7",     "0.5",     "\"a b\"",  "\"\"", ",",
                                         "$1",    "notein", "nosuch",  "makenote", "bang", "comment"};
    for (int i = 0; i < 300; ++i) {
        std::string text;
        for (unsigned line = 0; line < 12; ++line) {
            text += words[random() % 3];
            for (auto n = random() % 6; n-- > 0;) text += " " + words[random() % words.size()];
            text += ";\n";
        }
        host_patcher* const before = patcher;
        patcher = kel_patcher_new();
        ASSERT_TRUE(load(text)) << text;
        const std::string once = saved();
        kel_patcher_free(patcher);
        patcher = kel_patcher_new();
        ASSERT_TRUE(load(once)) << text;
        ASSERT_EQ(saved(), once) << text;
        kel_patcher_free(patcher);
        patcher = before;
        taken();
    }
}

} // namespace
