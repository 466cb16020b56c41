// tests/io/document_test.cpp: "read", "import" and "write": names, dialogs, kinds of file; the object's own documents.
// Test layer. Run by ctest.
#include "io/document.h"

#include <random>

#include "core/class.h"
#include "core/lifecycle.h"
#include "host/kernel/dispatch.h"
#include "io/embedding.h"
#include "tests/io/io_test.h"
#include "tests/io/midi_bytes.h"

namespace {

class document : public io_test {
protected:
    void SetUp() override {
        io_test::SetUp();
        put_file("a.mid", one_track(on(192, 60)));
    }
    static constexpr const char* metrical = "1000 60 100 10 1 1 0 0";
    static constexpr const char* halved = "96 60 100 10 1 1 0 0";

    // A document with this content behind its first line.
    static std::string document_of(const std::string& content) { return "#N brisolan \"\";\n" + content; }
};

TEST_F(document, read_and_import_are_the_same) {
    EXPECT_EQ(told("read a.mid"), text_lines{});
    EXPECT_EQ(events(), text_lines{metrical});
    send("clear");
    EXPECT_EQ(told("import a.mid"), text_lines{});
    EXPECT_EQ(events(), text_lines{metrical});
}

TEST_F(document, the_option_follows_the_name) {
    told("import a.mid 3");
    EXPECT_EQ(events(), text_lines{halved});
    told("import a.mid x");
    EXPECT_EQ(events(), text_lines{metrical}) << "a symbol is no option";
    told("import a.mid 3.5");
    EXPECT_EQ(events(), text_lines{metrical}) << "nor is a float";
}

TEST_F(document, without_a_name_the_user_is_asked) {
    answer("a.mid");
    EXPECT_EQ(told("import"), text_lines{});
    EXPECT_EQ(events(), text_lines{metrical});
    answer("a.mid");
    told("import 3");
    EXPECT_EQ(events(), text_lines{halved});
    answer("a.mid");
    told("import 3 5");
    EXPECT_EQ(events(), text_lines{halved});
    answer("a.mid");
    told("import 3.0 a.mid");
    EXPECT_EQ(events(), text_lines{metrical}) << "a float says nothing";
}

TEST_F(document, the_dialogs_offer_the_three_types) {
    const std::vector<file_type> three{MIDI_FILE, TEXT_FILE, BINARY_FILE};
    for (const char* reading : {"read", "import 3"}) {
        told(reading);
        EXPECT_FALSE(machine.asked.back().saving);
        EXPECT_EQ(machine.asked.back().types, three);
    }
    told("write");
    ASSERT_EQ(machine.asked.size(), 3U);
    EXPECT_TRUE(machine.asked.back().saving);
    EXPECT_EQ(machine.asked.back().proposed, "Untitled");
    EXPECT_EQ(machine.asked.back().types, three);
    told("read a.mid");
    told("write b.mid");
    EXPECT_EQ(machine.asked.size(), 3U) << "a name asks nobody";
}

TEST_F(document, a_file_without_an_ending_is_of_the_type_that_it_keeps) {
    const scratch_folder disk; // which keeps types where memory may not
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    answer("b", BINARY_FILE);
    told("write");
    if (kel_filetype("b") != BINARY_FILE) GTEST_SKIP() << "this file system keeps no types";
    send("clear");
    answer("b");
    EXPECT_EQ(told("read"), text_lines{});
    EXPECT_EQ(events(), text_lines{"5 60 64 100 1 1 0 0"});
    // One that is written anew is what the dialog proposes.
    answer("b");
    told("write");
    EXPECT_EQ(get_file("b").substr(0, 4), "MThd");
}

TEST_F(document, a_file_of_no_type_that_was_asked_for_is_not_opened) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    put_file("b", document_of("#X restore;\n#X stop;\n"));
    answer("b");
    EXPECT_EQ(told("read"), text_lines{"error host: b is of no type that was asked for"});
    answer("b.kel", host_type("what"));
    EXPECT_EQ(told("read"), text_lines{"error host: b.kel is of no type that was asked for"});
    EXPECT_EQ(events(), text_lines{"5 60 64 100 1 1 0 0"});
    answer("b", TEXT_FILE);
    EXPECT_EQ(told("read"), text_lines{});
    EXPECT_EQ(events(), text_lines{});
}

TEST_F(document, a_cancelled_dialog_is_silent) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    cancel();
    EXPECT_EQ(told("import"), text_lines{});
    cancel();
    EXPECT_EQ(told("write"), text_lines{});
    cancel();
    EXPECT_EQ(told("writekel"), text_lines{});
    EXPECT_EQ(events().size(), 1U);
    EXPECT_EQ(folder.names(), text_lines{"a.mid"});
}

TEST_F(document, a_file_that_is_not_found_is_named) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    EXPECT_EQ(told("read missing.mid"), text_lines{"error brisolan: can't find missing.mid"});
    put_file("a.wav", "x");
    EXPECT_EQ(told("read a.wav"), text_lines{"error brisolan: can't find a.wav"});
    EXPECT_EQ(told("read \"\""), text_lines{"error brisolan: can't find "});
    EXPECT_EQ(events().size(), 1U);
}

TEST_F(document, a_file_that_cannot_be_opened_is_named_with_the_code) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    std::filesystem::create_directory("b.mid");
    EXPECT_EQ(told("read b.mid"), text_lines{"error brisolan: can't open b.mid, error -47"});
    kel_file_fault(2, HOST_ERR_PERMISSION);
    EXPECT_EQ(told("read a.mid"), text_lines{"error brisolan: can't open a.mid, error -54"});
    EXPECT_EQ(events().size(), 1U);
}

TEST_F(document, the_search_path_is_searched) {
    std::filesystem::create_directory("pieces");
    std::filesystem::rename("a.mid", "pieces/b.mid");
    EXPECT_EQ(told("read b.mid").size(), 1U);
    kel_setsearchpath({"pieces"});
    EXPECT_EQ(told("read b.mid"), text_lines{});
    kel_setsearchpath({});
    EXPECT_EQ(events(), text_lines{metrical});
}

// ---------------------------------------------------------------------------------------------------------------------
// Documents

TEST_F(document, a_document_replaces_sequence_and_descriptions) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    put_file("a.kel",
             document_of("#X setparam 1 Note 3 10 99 61 5 7 1;\n#X restore;\n#X 100 60 64 300 1 2 3 4;\n"
                         "#X 150 62 65 200 2 1 0 -1;\n#X stop;\n"));
    EXPECT_EQ(told("read a.kel"), text_lines{});
    EXPECT_EQ(events(), (text_lines{"100 60 64 300 1 2 3 4", "250 62 65 200 2 1 0 -1"}));
    const param_record& p = x->params[PARAM_PITCH];
    EXPECT_STREQ(p.name->name, "Note");
    EXPECT_EQ(p.mode, 2);
    EXPECT_EQ(p.min, 10);
    EXPECT_EQ(p.max, 99);
    EXPECT_EQ(p.defvalue, 61);
    EXPECT_EQ(p.interval, 5);
    EXPECT_EQ(p.scale, 7);
    EXPECT_EQ(p.notenames, 1);
    EXPECT_EQ(x->mode, MODE_IDLE);
    EXPECT_EQ(x->restoring, 0);
    EXPECT_EQ(g_restore_target, nullptr);
}

TEST_F(document, nothing_is_built_while_a_document_is_replayed) {
    const std::size_t before = kel_patcher_objects(patcher).size();
    put_file("a.kel", document_of("#X restore;\n#X stop;\n"));
    told("read a.kel");
    EXPECT_EQ(kel_patcher_objects(patcher).size(), before);
    EXPECT_EQ(host_symbol("#X")->thing, static_cast<host_object*>(x));
}

TEST_F(document, an_empty_document_empties_the_sequence) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    put_file("a.kel", document_of("#X restore;\n#X stop;\n"));
    EXPECT_EQ(told("read a.kel"), text_lines{});
    EXPECT_EQ(events(), text_lines{});
}

TEST_F(document, events_in_front_of_restore_are_ignored) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    put_file("a.kel", document_of("#X 100 60 64 300 1 1 0 0;\n#X stop;\n"));
    EXPECT_EQ(told("read a.kel"), text_lines{});
    EXPECT_EQ(events(), text_lines{"5 60 64 100 1 1 0 0"});
}

// Both follow from the recording of what is read; sequences with such events have always come back so.
TEST_F(document, an_event_of_velocity_zero_is_taken_as_a_note_off) {
    put_file("a.kel", document_of("#X restore;\n#X 0 60 64 300 1 1 0 0;\n#X 50 60 0 300 1 1 0 0;\n"
                                  "#X 50 61 64 300 1 1 0 0;\n#X 10 99 0 1 1 1 0 0;\n#X stop;\n"));
    told("read a.kel");
    EXPECT_EQ(events(), (text_lines{"0 60 64 50 1 1 0 0", "100 61 64 300 1 1 0 0"}));
    EXPECT_EQ(x->lasttime, 110);
}

TEST_F(document, a_foreign_document_is_refused_by_its_class) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    const text_lines refused{"error brisolan: a.kel: not a brisolan file"};
    for (const char* text : {"#N other x;\n#X restore;\n", "#X restore;\n", "", ";\n", "#N;\n", "#N 5;\n",
                             "5 brisolan;\n", "brisolan #N;\n", "#N \"brisolan \";\n"}) {
        put_file("a.kel", text);
        EXPECT_EQ(told("read a.kel"), refused) << text;
    }
    EXPECT_EQ(events().size(), 1U);
    EXPECT_EQ(x->restoring, 0);
}

TEST_F(document, the_first_two_atoms_need_not_stand_in_one_line) {
    // The first two atoms are looked at, wherever lines end.
    put_file("a.kel", "#N;\nbrisolan;\n");
    EXPECT_EQ(told("read a.kel"), (text_lines{"error host: no object named \"brisolan\""}));
}

TEST_F(document, what_the_host_cannot_read_is_silent) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    put_file("a.kel", "#N brisolan \"\";\n#X restore;\n#X 99999999999");
    EXPECT_EQ(told("read a.kel"), text_lines{});
    put_file("b.kelb", "#N brisolan \"\";\n");
    EXPECT_EQ(told("read b.kelb"), text_lines{});
    EXPECT_EQ(events().size(), 1U);
    EXPECT_EQ(x->restoring, 0);
}

TEST_F(document, damaged_documents_are_refused_or_read) {
    send("clear");
    for (int i = 0; i < 20; ++i) {
        x->lasttime = i * 100;
        brisolan_append(x, 0, {0, 60 + i, 64, 100, 1, 1, 0, 0}, false);
    }
    kel_run_queue();
    ASSERT_EQ(brisolan_kelfile(x, "good.kel", 0, TEXT_FILE), HOST_OK);
    ASSERT_EQ(brisolan_kelfile(x, "good.kelb", 0, BINARY_FILE), HOST_OK);
    const text_lines before = events();
    std::mt19937 random(9);
    for (int round = 0; round < 400; ++round) {
        const bool binary = round % 2;
        std::string content = get_file(binary ? "good.kelb" : "good.kel");
        content[random() % content.size()] = static_cast<char>(random());
        if (random() % 2) content.resize(random() % content.size());
        put_file(binary ? "bad.kelb" : "bad.kel", content);
        const bool whole = content == get_file(binary ? "good.kelb" : "good.kel");
        const text_lines said = told(binary ? "read bad.kelb" : "read bad.kel");
        EXPECT_EQ(brisolan_brokeninvariant(x), nullptr);
        EXPECT_EQ(x->restoring, 0);
        const bool untouched = events() == before;
        EXPECT_TRUE(!binary || whole || untouched) << "round " << round;
        send("stop");
        told("read good.kelb");
        ASSERT_EQ(events(), before);
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// The queue

TEST_F(document, files_wait_for_the_main_level_reading_at_the_back_and_writing_at_the_front) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    const auto arrives = [this](const char* selector, const char* name) {
        const atom argument(host_symbol(name));
        kel_send(x, host_symbol(selector), {&argument, 1});
    };
    for (const char* reading : {"read", "import"}) {
        fill({{5, 60, 64, 100, 1, 1, 0, 0}});
        arrives(reading, "a.mid");
        arrives("write", "before.mid");
        arrives(reading, "before.mid");
        EXPECT_EQ(events(), text_lines{"5 60 64 100 1 1 0 0"}) << "not at once";
        EXPECT_FALSE(std::filesystem::exists("before.mid"));
        (void)taken();
        kel_run_queue();
        EXPECT_EQ(taken(), text_lines{"post finished"});
        EXPECT_EQ(events().size(), 1U);
        EXPECT_NE(events(), text_lines{metrical}) << "the writing came before the first reading";
        std::filesystem::remove("before.mid");
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// Writing

TEST_F(document, write_with_a_name_is_always_a_midi_file) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    EXPECT_EQ(told("write take1"), text_lines{"post finished"});
    EXPECT_EQ(get_file("take1").substr(0, 14), midi_header(0, 1, 0x60));
    EXPECT_EQ(told("write b.kel"), text_lines{"post finished"});
    EXPECT_EQ(get_file("b.kel").substr(0, 14), midi_header(0, 1, 0x60));
}

TEST_F(document, write_chooses_the_format_by_the_tracks) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}, {0, 60, 100, 500, 1, 2, 0, 0}});
    told("write b.mid");
    EXPECT_EQ(get_file("b.mid").substr(0, 14), midi_header(1, 2, 0x60));
    fill({{0, 60, 100, 500, 1, 2, 0, 0}});
    told("write b.mid");
    EXPECT_EQ(get_file("b.mid").substr(0, 14), midi_header(1, 1, 0x60));
    fill({{0, 60, 100, 500, 1, -2, 0, 0}});
    told("write b.mid");
    EXPECT_EQ(get_file("b.mid").substr(0, 14), midi_header(0, 1, 0x60));
    send("clear");
    told("write b.mid");
    EXPECT_EQ(get_file("b.mid").substr(0, 14), midi_header(0, 1, 0x60));
}

TEST_F(document, write_without_a_name_asks) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    answer("b.mid");
    EXPECT_EQ(told("write"), text_lines{"post finished"});
    EXPECT_EQ(get_file("b.mid").substr(0, 4), "MThd");
    answer("b.kel");
    EXPECT_EQ(told("write 5"), text_lines{});
    EXPECT_EQ(get_file("b.kel").substr(0, 2), "#N");
    x->window->save_format = 7;
    answer("b.kelb");
    EXPECT_EQ(told("write"), text_lines{});
    EXPECT_EQ(get_file("b.kelb").substr(0, 4), "kelb");
    EXPECT_EQ(x->window->save_format, 7) << "put back";
    x->window->save_format = 0;
}

TEST_F(document, what_the_user_names_without_ending_is_of_the_chosen_type) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    answer("b", TEXT_FILE);
    told("write");
    EXPECT_EQ(get_file("b").substr(0, 2), "#N");
    answer("c", BINARY_FILE);
    told("write");
    EXPECT_EQ(get_file("c").substr(0, 4), "kelb");
}

TEST_F(document, a_document_that_cannot_be_written_leaves_the_old_one_and_says_so) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    EXPECT_EQ(told("writekel missing/a"),
              text_lines{"error missing/a was not saved: no such file or folder"});
    for (int k = 1;; ++k) {
        put_file("b.kel", "old");
        kel_file_fault(k, HOST_ERR_FULL);
        const text_lines lines_told = told("writekel b.kel");
        const bool faulted = kel_file_faulted();
        kel_file_fault(0);
        EXPECT_EQ(folder.names(), (text_lines{"a.mid", "b.kel"}));
        if (!faulted) break;
        EXPECT_EQ(lines_told, text_lines{"error b.kel was not saved: no space left"}) << "operation " << k;
        EXPECT_EQ(get_file("b.kel"), "old") << "operation " << k;
    }
    EXPECT_EQ(get_file("b.kel").substr(0, 2), "#N");
}

TEST_F(document, every_read_that_fails_leaves_the_sequence_or_what_was_read) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    ASSERT_EQ(brisolan_kelfile(x, "b.kel", 0, TEXT_FILE), HOST_OK);
    ASSERT_EQ(brisolan_kelfile(x, "b.kelb", 0, BINARY_FILE), HOST_OK);
    fill({{7, 61, 64, 100, 1, 1, 0, 0}});
    for (const char* name : {"b.kel", "b.kelb"}) {
        for (int k = 1;; ++k) {
            kel_file_fault(k);
            const text_lines said = told(std::string("read ") + name);
            const bool faulted = kel_file_faulted();
            kel_file_fault(0);
            if (!faulted) break;
            EXPECT_LE(said.size(), 1U);
            EXPECT_EQ(x->restoring, 0);
            // Closing behind the type's reading is the one failure that loses nothing.
            if (events() != text_lines{"7 61 64 100 1 1 0 0"}) fill({{7, 61, 64, 100, 1, 1, 0, 0}});
        }
        EXPECT_EQ(events(), text_lines{"5 60 64 100 1 1 0 0"});
    }
    // A MIDI file whose reading fails ends there.
    for (int k = 1;; ++k) {
        kel_file_fault(k);
        told("read a.mid");
        const bool faulted = kel_file_faulted();
        kel_file_fault(0);
        EXPECT_EQ(x->restoring, 0);
        EXPECT_EQ(brisolan_brokeninvariant(x), nullptr);
        if (!faulted) break;
    }
    EXPECT_EQ(events(), text_lines{metrical});
}

} // namespace
