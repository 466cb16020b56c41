// tests/boxes/own_patches_test.cpp: the play, record and follow patches do their work, in virtual time.
// Test layer.
#include <filesystem>

#include <unistd.h>

#include "app/patch_files.h"
#include "app/performance.h"
#include "app/play_patch.h"
#include "app/recording.h"
#include "app/source.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "tests/boxes/boxes_test.h"

namespace {

class own_patch_test : public boxes_test {
protected:
    void use(const char* name) {
        kel_patcher_free(patcher);
        std::string why;
        score = load_own_patch(name, &patcher, why);
        ASSERT_NE(score, nullptr) << why;
        ASSERT_EQ(taken(), texts{});
    }
    // Fills the score: lines of "delta pitch vel dur chan".
    void fill(const std::vector<std::vector<std::int32_t>>& wanted) {
        tell("score", "record");
        for (const std::vector<std::int32_t>& n : wanted) {
            const std::vector<atom> values(n.begin(), n.end());
            kel_send(score, host_symbol("list"), values);
        }
        tell("score", "stop");
        kel_run_queue();
        played();
    }
    texts events() const {
        texts all;
        for (const event* e = score->events; e; e = e->next) {
            std::string line;
            for (int i = 0; i <= PARAM_CHAN; ++i) line += (i ? " " : "") + std::to_string(event_param(*e, i));
            all.push_back(line);
        }
        return all;
    }

    brisolan* score = nullptr;
};

class play_patch_test : public own_patch_test {
protected:
    void SetUp() override {
        own_patch_test::SetUp();
        use("play");
        fill({{100, 60, 100, 200, 1}, {250, 64, 101, 300, 2}, {0, 67, 102, 100, 2}, {250, 64, 103, 100, 2}});
    }
};

class record_patch_test : public own_patch_test {
protected:
    void SetUp() override {
        own_patch_test::SetUp();
        use("record");
    }
};

class follow_patch_test : public own_patch_test {
protected:
    void SetUp() override {
        own_patch_test::SetUp();
        use("follow");
    }
};

TEST_F(play_patch_test, notes_leave_at_their_times_and_end_after_their_durations) {
    ASSERT_TRUE(start_playing(score, 0, 1));
    wait(10'000);
    EXPECT_EQ(played(), (texts{"100 on 1 60 100", "300 off 1 60", "350 on 2 64 101", "350 on 2 67 102",
                               "450 off 2 67", "600 off 2 64", "600 on 2 64 103", "700 off 2 64"}));
    EXPECT_TRUE(playing_is_over(score));
    EXPECT_EQ(taken(), texts{}) << "the end of the sequence starts no further step";
}

TEST_F(play_patch_test, speed_scales_waits_and_durations) {
    ASSERT_TRUE(start_playing(score, 0, 2));
    wait(10'000);
    EXPECT_EQ(played(), (texts{"50 on 1 60 100", "150 off 1 60", "175 on 2 64 101", "175 on 2 67 102",
                               "225 off 2 67", "300 off 2 64", "300 on 2 64 103", "350 off 2 64"}));
}

TEST_F(play_patch_test, playing_begins_at_the_first_note_at_or_after_a_time) {
    ASSERT_TRUE(start_playing(score, 350, 1));
    wait(0);
    EXPECT_EQ(played(), (texts{"0 on 2 64 101", "0 on 2 67 102"}));
    tell("halt", "bang");
    played();
    ASSERT_TRUE(start_playing(score, 500, 1));
    wait(10'000);
    EXPECT_EQ(played(), (texts{"100 on 2 64 103", "200 off 2 64"}));
    EXPECT_TRUE(start_playing(score, 600, 1));
    tell("halt", "bang");
    EXPECT_FALSE(start_playing(score, 601, 1));
    EXPECT_TRUE(playing_is_over(score));
}

TEST_F(play_patch_test, halt_ends_every_note_and_calls_off_the_wait) {
    ASSERT_TRUE(start_playing(score, 0, 1));
    wait(360);
    played();
    tell("halt", "bang");
    EXPECT_EQ(played(), (texts{"360 off 2 64", "360 off 2 67"}));
    wait(10'000);
    EXPECT_EQ(played(), texts{});
    EXPECT_TRUE(playing_is_over(score));
    EXPECT_EQ(taken(), texts{});
}

TEST_F(play_patch_test, an_empty_score_does_not_start) {
    tell("score", "clear");
    kel_run_queue();
    EXPECT_FALSE(start_playing(score, 0, 1));
}

TEST_F(play_patch_test, a_thousand_waits_at_an_odd_speed_end_at_their_sum) {
    std::vector<std::vector<std::int32_t>> wanted;
    for (int i = 0; i < 1001; ++i) wanted.push_back({i ? 100 : 0, 60 + i % 12, 100, 20, 1});
    fill(wanted);
    ASSERT_TRUE(start_playing(score, 0, 3));
    wait(40'000);
    const texts all = played();
    ASSERT_EQ(all.size(), 2002U);
    EXPECT_TRUE(all[2000].starts_with("33333 on ")) << all[2000];
}

TEST_F(play_patch_test, the_patch_is_found_where_the_environment_says_and_else_in_the_tree_or_built_in) {
    const std::string folder = testing::TempDir() + "brisolan-own-patches";
    std::filesystem::create_directories(folder);
    setenv("BRISOLAN_PATCHES", folder.c_str(), 1);
    EXPECT_NE(own_patch("play").called, folder + "/play.kel");
    FILE* f = std::fopen((folder + "/play.kel").c_str(), "w");
    std::fputs("#N print;\n", f);
    std::fclose(f);
    EXPECT_EQ(own_patch("play").called, folder + "/play.kel");
    EXPECT_EQ(own_patch("play").text, "#N print;\n");
    host_patcher* p = nullptr;
    std::string why;
    EXPECT_EQ(load_own_patch("play", &p, why), nullptr);
    EXPECT_EQ(why, folder + "/play.kel: the patch has no score in it");
    kel_patcher_free(p);
    unsetenv("BRISOLAN_PATCHES");
    std::filesystem::remove_all(folder);
}

TEST_F(play_patch_test, what_is_built_in_is_what_lies_in_the_tree) {
    ASSERT_EQ(built_in_patches().size(), 4U);
    for (const built_in_patch& p : built_in_patches()) {
        setenv("BRISOLAN_PATCHES", (std::string(BRISOLAN_SOURCE_DIR) + "/patches").c_str(), 1);
        EXPECT_EQ(own_patch(std::string(p.name).c_str()).text, p.text);
    }
    unsetenv("BRISOLAN_PATCHES");
}

TEST_F(record_patch_test, notes_are_recorded_with_the_time_between_them_and_their_durations) {
    wait(5000);
    tell("go", "bang");
    wait(120);
    note_in(3, 60, 80);
    wait(200);
    note_in(3, 60, 0);
    wait(50);
    note_in(3, 64, 70);
    wait(75);
    note_in(3, 64, 0);
    tell("halt", "bang");
    EXPECT_EQ(events(), (texts{"120 60 80 200 3", "370 64 70 75 3"}));
    EXPECT_EQ(taken(), texts{});
}

TEST_F(record_patch_test, keys_still_held_at_the_end_are_let_go) {
    tell("go", "bang");
    note_in(1, 60, 80);
    wait(400);
    tell("halt", "bang");
    EXPECT_EQ(events(), (texts{"0 60 80 400 1"}));
    EXPECT_EQ(score->mode, MODE_IDLE);
}

TEST_F(record_patch_test, what_comes_in_before_and_after_is_not_recorded) {
    note_in(1, 60, 80);
    note_in(1, 60, 0);
    tell("go", "bang");
    wait(10);
    note_in(1, 62, 80);
    wait(10);
    note_in(1, 62, 0);
    tell("halt", "bang");
    note_in(1, 64, 80);
    EXPECT_EQ(events(), (texts{"10 62 80 10 1"}));
}

TEST_F(follow_patch_test, the_score_answers_with_accompaniment_and_the_matched_note) {
    fill({{0, 60, 100, 200, 1}, {0, 36, 50, 400, 2}, {500, 62, 100, 200, 1}, {500, 64, 100, 200, 1}});
    tell("go", "bang");
    EXPECT_EQ(score->mode, MODE_FOLLOW);
    wait(100);
    note_in(1, 60, 90);
    EXPECT_EQ(played(), (texts{"100 on 1 60 100"}));
    wait(100);
    note_in(1, 60, 0);
    EXPECT_EQ(played(), (texts{"200 off 1 60"})) << "the player lets go: the note ends, and only once";
    wait(200);
    note_in(1, 62, 90);
    EXPECT_EQ(played(), (texts{"400 on 2 36 50", "400 on 1 62 100"}));
    wait(1000);
    EXPECT_EQ(played(), (texts{"600 off 1 62", "800 off 2 36"}));
    tell("halt", "bang");
    EXPECT_EQ(score->mode, MODE_IDLE);
}

TEST_F(follow_patch_test, a_performance_is_told_apart_into_matched_late_and_never) {
    fill({{0, 60, 100, 200, 1},
          {0, 36, 50, 400, 2},
          {500, 62, 100, 200, 1},
          {500, 64, 100, 200, 1},
          {500, 65, 100, 200, 1}});
    tell("go", "bang");
    // 60 in place, 64 past 62, 62 late, a wrong 99; 65 is never played.
    const follow_report r = perform(score, {{0, 1, 60, 90},
                                            {100, 1, 60, 0},
                                            {500, 1, 64, 90},
                                            {600, 1, 62, 90},
                                            {700, 1, 99, 90},
                                            {800, 1, 64, 0}});
    EXPECT_EQ(r.summary.performer_notes, 4);
    EXPECT_EQ(r.summary.accompaniment_notes, 1);
    EXPECT_EQ(r.summary.matched, 2);
    EXPECT_EQ(r.summary.late, 1);
    EXPECT_EQ(r.summary.never(), 1);
    EXPECT_EQ(r.summary.accompaniment, 1);
    EXPECT_EQ(r.summary.wrong, 1);
    texts outputs;
    for (const follow_output& o : r.outputs)
        outputs.push_back(std::to_string(o.ms) + " " + name_of(o.kind) + " " + std::to_string(o.pitch) + " " +
                          std::to_string(o.vel) + " " + std::to_string(o.dur) + " " + std::to_string(o.chan));
    EXPECT_EQ(outputs, (texts{"0 matched 60 100 200 1", "100 off 60 0 200 1", "500 accompaniment 36 50 400 2",
                              "500 matched 64 100 200 1", "600 late 62 100 200 1", "800 off 64 0 200 1"}));
}

TEST_F(follow_patch_test, a_performance_becomes_keys_in_order_of_time) {
    fill({{10, 60, 100, 90, 1},
          {90, 60, 100, 0, 1},
          {0, 200, 100, 50, 1},
          {5, 61, 0, 50, 1},
          {5, 62, 200, 50, 2}});
    texts keys;
    for (const performed_key& k : keys_of(score))
        keys.push_back(std::to_string(k.ms) + " " + std::to_string(k.channel) + " " +
                       std::to_string(k.pitch) + " " + std::to_string(k.velocity));
    EXPECT_EQ(keys, (texts{"10 1 60 100", "100 1 60 0", "100 1 60 100", "101 1 60 0", "110 2 62 127",
                           "160 2 62 0"}));
}

// A recording, its file, and every way out of it.
class recording_test : public boxes_test {
protected:
    void SetUp() override {
        boxes_test::SetUp();
        folder =
            std::filesystem::temp_directory_path() / ("brisolan-recording-test-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
    }
    void TearDown() override {
        std::filesystem::remove_all(folder);
        boxes_test::TearDown();
    }
    write_target file(const char* name, file_type type) { return {(folder / name).string(), type}; }
    void play_something() {
        note_in(1, 60, 80);
        wait(250);
        note_in(1, 60, 0);
    }
    // The pitches in a file.
    texts pitches(const std::string& name) {
        host_patcher* const p = kel_patcher_new();
        kel_patcher_build(p);
        auto* const x = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {}));
        EXPECT_EQ(read_into(machine.print, x, name), "");
        texts all;
        for (const event* e = x->events; e; e = e->next) all.push_back(std::to_string(e->pitch));
        kel_patcher_free(p);
        return all;
    }

    std::filesystem::path folder;
};

TEST_F(recording_test, what_was_played_is_saved_in_each_kind) {
    for (const auto& [name, type] :
         {std::pair{"a.mid", TYPE_MIDI}, {"a.kel", TYPE_TEXT}, {"a.kelb", TYPE_KELB}}) {
        SCOPED_TRACE(name);
        const write_target to = file(name, type);
        recording r(machine.print, to);
        ASSERT_EQ(r.start(), "");
        play_something();
        EXPECT_EQ(r.save(), "");
        EXPECT_EQ(pitches(to.file), texts{"60"});
    }
}

TEST_F(recording_test, leaving_the_scope_saves) {
    const write_target to = file("a.mid", TYPE_MIDI);
    try {
        recording r(machine.print, to);
        ASSERT_EQ(r.start(), "");
        play_something();
        throw std::runtime_error("something else went wrong");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(pitches(to.file), texts{"60"});
}

TEST_F(recording_test, a_key_that_is_held_when_it_ends_is_in_the_file) {
    const write_target to = file("a.mid", TYPE_MIDI);
    recording r(machine.print, to);
    ASSERT_EQ(r.start(), "");
    note_in(1, 60, 80);
    wait(300);
    EXPECT_EQ(r.save(), "");
    EXPECT_EQ(r.score()->events->dur, 300);
}

TEST_F(recording_test, nothing_played_saves_nothing) {
    const write_target to = file("a.mid", TYPE_MIDI);
    recording r(machine.print, to);
    ASSERT_EQ(r.start(), "");
    EXPECT_EQ(r.save(), "no note came in; nothing was saved");
    EXPECT_FALSE(std::filesystem::exists(to.file));
}

TEST_F(recording_test, a_file_that_cannot_be_written_is_saved_elsewhere_and_told) {
    setenv("TMPDIR", folder.c_str(), 1);
    const write_target to{(folder / "no-such-folder" / "a.mid").string(), TYPE_MIDI};
    recording r(machine.print, to);
    ASSERT_EQ(r.start(), "");
    play_something();
    const std::string why = r.save();
    unsetenv("TMPDIR");
    const std::string other = (folder / ("brisolan-recording-" + std::to_string(getpid()) + ".mid")).string();
    EXPECT_NE(why.find("no-such-folder/a.mid"), std::string::npos) << why;
    EXPECT_TRUE(why.ends_with("; the recording is in " + other)) << why;
    EXPECT_EQ(pitches(other), texts{"60"});
}

} // namespace
