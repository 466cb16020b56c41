// tests/app/editor_real_time_test.cpp: the editor's documents in real time, as windows use them while notes come and go.
// Told of by the thread sanitizer when the two levels meet unguarded.
// Test layer.
#include <filesystem>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "app/editor.h"
#include "core/check.h"
#include "core/instance.h"
#include "host/boxes/midi_device.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"
#include "tests/support/process.h"

namespace {

class real_time_editor : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "brisolan-documents-XXXXXX").string();
        folder = mkdtemp(name.data());
        host = std::make_unique<editor>(host_platform{});
        std::string why;
        document = host->make(why);
        ASSERT_NE(document, nullptr) << why;
        kel_private<"dblclick">(document->score());
        host->turn();
    }
    void TearDown() override {
        document.reset();
        host.reset();
        std::filesystem::remove_all(folder);
    }

    brisolan* score() const { return static_cast<brisolan*>(document->score()); }

    // Notes that a device's thread hands in, a few milliseconds apart, while `meanwhile` is done again and again.
    template <class F> void with_player(int notes, F meanwhile) {
        std::thread player([notes] {
            for (int i = 0; i < notes; ++i) {
                for (const int velocity : {100, 0}) {
                    kel_post(midi_arrived, nullptr, midi_place(1, 1 + i % 3),
                             midi_key(30 + i % 60, velocity));
                    std::this_thread::sleep_for(std::chrono::milliseconds(2));
                }
            }
        });
        for (int i = 0; i < notes; ++i) {
            meanwhile(i);
            host->turn();
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
        }
        player.join();
        host->turn();
    }
    // What a window does all the time.
    void look() {
        (void)document->transport();
        (void)document->unsaved();
        (void)document->nselected();
        (void)document->tracks();
    }

    std::filesystem::path folder;
    std::unique_ptr<editor> host;
    std::unique_ptr<desk_document> document;
};

TEST_F(real_time_editor, records_while_the_window_looks_scrolls_and_copies_are_kept) {
    constexpr int NOTES = 120;
    ASSERT_EQ(document->record(), "");
    with_player(NOTES, [this](int i) {
        look();
        if (i % 10 == 0) kel_window_update(document->editor());
        EXPECT_TRUE(i % 25 != 0 || document->keep_copy((folder / "copy.kelb").string()));
    });
    EXPECT_EQ(document->transport().mode, desk_mode::recording);
    document->stop();
    EXPECT_EQ(document->nnotes(), NOTES);
    EXPECT_EQ(document->transport().position, 0);
    brisolan_checkinvariants(score());
}

TEST_F(real_time_editor, plays_while_notes_are_selected_moved_saved_and_deleted) {
    document->record();
    with_player(80, [this](int) { look(); });
    document->stop();
    document->remember();
    ASSERT_EQ(document->play(0), "");
    with_player(60, [this](int i) {
        look();
        const kel_in_port port(document->editor());
        if (i % 6 == 0) kel_private<"selectall">(score());
        if (i % 6 == 1) kel_window_key(document->editor(), 29);
        EXPECT_TRUE(i % 6 != 2 || document->save((folder / "take.mid").string()).empty());
        if (i % 6 == 3) document->set_speed(1 + i % 3);
        if (i == 40) kel_private<"clr">(score());
    });
    document->stop();
    EXPECT_EQ(document->nnotes(), 0);
    brisolan_checkinvariants(score());
}

TEST_F(real_time_editor, steps_and_follows_while_a_player_plays) {
    document->record();
    with_player(60, [this](int) { look(); });
    document->stop();
    for (int i = 0; i < 20; ++i) EXPECT_EQ(document->step(), "");
    EXPECT_EQ(document->transport().mode, desk_mode::idle);
    ASSERT_EQ(document->follow(0), "");
    with_player(60, [this](int i) {
        look();
        if (i % 20 == 19) kel_window_update(document->editor());
    });
    document->stop();
    EXPECT_EQ(document->nnotes(), 60) << "what is played to a score that follows is not recorded";
    brisolan_checkinvariants(score());
}

TEST_F(real_time_editor, two_documents_play_at_once_and_one_is_closed) {
    const std::string piece = (folder / "a.kel").string();
    std::ofstream(piece) << "#N brisolan;\n#X restore;\n#X 0 60 64 100 1 1 0 0;\n#X 20 62 64 100 1 1 0 0;\n"
                            "#X 600000 64 64 100 1 1 0 0;\n#X stop;\n";
    std::string why;
    document = host->open(piece, why);
    ASSERT_NE(document, nullptr) << why;
    std::unique_ptr<desk_document> other = host->open(piece, why);
    ASSERT_NE(other, nullptr) << why;
    ASSERT_EQ(document->play(0), "");
    ASSERT_EQ(other->play(0), "");
    EXPECT_EQ(document->transport().mode, desk_mode::playing);
    sleep_ms(30);
    other.reset();
    host->turn();
    EXPECT_EQ(document->transport().mode, desk_mode::playing) << "the other goes on";
    document->stop();
}

} // namespace
