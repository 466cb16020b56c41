// tests/boxes/real_time_test.cpp: patches in real time, the scheduler on its own thread, while the main level draws, saves,
// sends and takes apart. Told of by the thread sanitizer when two of them meet unguarded.
// Test layer.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <stop_token>
#include <thread>
#include <vector>

#include "app/live.h"
#include "app/play_patch.h"
#include "app/recording.h"
#include "app/session.h"
#include "core/sequence.h"
#include "host/boxes/boxes.h"
#include "host/boxes/midi_device.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/memory.h"
#include "host/kernel/objects.h"
#include "host/kernel/patchfile.h"
#include "tests/support/process.h"

namespace {

constexpr int NOTES = 300;
constexpr int APART_MS = 3;

constexpr const char* flooded = "error host: too many calls wait for the main level; some are dropped";

// What leaves, in the order in which it leaves. Written at scheduler level, read when everything is over.
struct heard_note {
    kel_time due;
    kel_time at;
    int pitch;
    int velocity;
};

class ear {
public:
    ear() {
        notes.reserve(std::size_t{NOTES} * 4);
        midi_device_add(&device);
    }
    ~ear() { midi_device_remove(&device); }
    ear(const ear&) = delete;
    ear& operator=(const ear&) = delete;

    std::vector<heard_note> notes;

    static kel_time clock() { // what the host's own time counts on
        return std::chrono::duration_cast<std::chrono::nanoseconds>(
                   std::chrono::steady_clock::now().time_since_epoch())
            .count();
    }

private:
    static void hear(void* e, int, int, int pitch, int velocity) {
        static_cast<ear*>(e)->notes.push_back({kel_now(), clock(), pitch, velocity});
    }
    midi_device device{this, hear};
};

// The host in real time with one of the program's own patches.
class real_time_patch {
public:
    explicit real_time_patch(const char* name) {
        session.print = [this](const std::string& line) { console.push_back(line); };
        if (*name) score = load_own_patch(name, &patcher, why);
    }
    ~real_time_patch() {
        if (patcher) kel_patcher_free(patcher);
    }
    real_time_patch(const real_time_patch&) = delete;
    real_time_patch& operator=(const real_time_patch&) = delete;

    void fill() {
        const host_locked_out now;
        event* chain = nullptr;
        for (int i = NOTES; i-- > 0;) {
            event* e = brisolan_newevent();
            e->time = 50 + i * APART_MS;
            e->pitch = 20 + i % 100;
            e->vel = 1 + i % 127;
            e->dur = 2 * APART_MS;
            e->chan = 1 + i % 4;
            e->track = 1;
            e->next = chain;
            chain = e;
        }
        brisolan_linkchain(score, chain);
    }
    void open_editor() {
        kel_private<"dblclick">(score);
        kel_run_queue();
    }
    void redraw() {
        SetPort(score->window->port);
        kel_private<"update">(score);
        session.wait(0);
    }

    std::vector<std::string> console;
    live_session session;
    host_patcher* patcher = nullptr;
    brisolan* score = nullptr;
    std::string why;
};

// The longest that a thread which does nothing but sleep was kept from going on: what the machine itself does.
class stalls_of_the_machine {
public:
    kel_time longest() const { return worst; }

private:
    void sleep_and_look(const std::stop_token& over) {
        constexpr std::chrono::milliseconds NAP{2};
        for (kel_time before = ear::clock(); !over.stop_requested();) {
            std::this_thread::sleep_for(NAP);
            const kel_time now = ear::clock();
            worst = std::max<kel_time>(worst, now - before);
            before = now;
        }
    }

    std::atomic<kel_time> worst{0};
    std::jthread sleeper{[this](const std::stop_token& over) { sleep_and_look(over); }};
};

// Notes wait for nothing that the main level does: the piece falls into its sleep. They may be late by a second, which is less
// than they would wait for its end, and by as long as the machine let nobody run.
TEST(real_time_play, a_main_level_that_stands_still_for_seconds_delays_no_note) {
    real_time_patch p("play");
    ASSERT_NE(p.score, nullptr) << p.why;
    p.fill();
    p.open_editor();
    ear hears;
    const stalls_of_the_machine stalls;
    const kel_time host_start = ear::clock() - kel_now();
    ASSERT_TRUE(start_playing(p.score, 0, 1));
    std::this_thread::sleep_for(std::chrono::seconds(4)); // the piece takes one
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return playing_is_over(p.score); }));
    EXPECT_EQ(hears.notes.size(), std::size_t{NOTES} * 2);
    const kel_time latest = 1000 * NS_PER_MS + stalls.longest();
    for (const heard_note& n : hears.notes) EXPECT_LT(n.at - host_start - n.due, latest);
}

TEST(real_time_play, every_note_leaves_in_its_order_and_never_early_while_the_main_level_redraws) {
    real_time_patch p("play");
    ASSERT_NE(p.score, nullptr) << p.why;
    p.fill();
    p.open_editor();
    ear hears;
    const kel_time host_start =
        ear::clock() - kel_now() - NS_PER_MS / 10; // the two clocks were read one after the other
    ASSERT_TRUE(start_playing(p.score, 0, 1));
    int redraws = 0;
    for (; !playing_is_over(p.score); ++redraws) {
        p.redraw();
        // A save walks the events without a lock, and an edit changes one in place.
        host_atombuf* const lines = host_atombuf_new();
        kel_private<"save">(p.score, lines);
        host_atombuf_free(lines);
        if (event* e = p.score->events) e->x1 = redraws;
    }
    EXPECT_GT(redraws, 0);
    std::vector<heard_note> on;
    std::copy_if(hears.notes.begin(), hears.notes.end(), std::back_inserter(on),
                 [](const heard_note& n) { return n.velocity > 0; });
    ASSERT_EQ(on.size(), static_cast<std::size_t>(NOTES));
    for (std::size_t i = 0; i < on.size(); ++i) {
        EXPECT_EQ(on[i].pitch, 20 + static_cast<int>(i) % 100);
        EXPECT_EQ(on[i].due - on[0].due, static_cast<kel_time>(i) * APART_MS * NS_PER_MS)
            << "due times drift";
        EXPECT_GE(on[i].at - host_start, on[i].due) << "a note left early";
    }
    EXPECT_EQ(hears.notes.size(), std::size_t{NOTES} * 2) << "each note ends once";
    EXPECT_EQ(p.console, std::vector<std::string>{});
}

TEST(real_time_play, halt_from_the_main_level_ends_every_note_whenever_it_comes) {
    real_time_patch p("play");
    ASSERT_NE(p.score, nullptr) << p.why;
    p.fill();
    for (int i = 0; i < 40; ++i) {
        ear hears;
        ASSERT_TRUE(start_playing(p.score, i * 20, 4));
        std::this_thread::sleep_for(std::chrono::milliseconds(i % 7));
        tell("halt", "bang");
        EXPECT_TRUE(playing_is_over(p.score));
        std::array<int, 128> sounding{};
        for (const heard_note& n : hears.notes)
            sounding[static_cast<std::size_t>(n.pitch)] += n.velocity ? 1 : -1;
        EXPECT_EQ(sounding, (std::array<int, 128>{}));
    }
}

TEST(real_time_record, what_a_devices_thread_hands_in_is_recorded_while_the_main_level_redraws) {
    const std::string file = testing::TempDir() + "brisolan-real-time-record.kel";
    real_time_patch p("");
    {
        recording r(p.session.print, {file, TYPE_TEXT});
        ASSERT_EQ(r.start(), "");
        p.score = const_cast<brisolan*>(r.score());
        p.open_editor();
        std::atomic<bool> done{false};
        std::thread player([&done] {
            for (int i = 0; i < NOTES; ++i) {
                kel_post(midi_arrived, nullptr, midi_place(1, 2), midi_key(i % 128, 64));
                std::this_thread::sleep_for(std::chrono::microseconds(200));
                kel_post(midi_arrived, nullptr, midi_place(1, 2), midi_key(i % 128, 0));
            }
            done = true;
        });
        while (!done) p.redraw();
        player.join();
        EXPECT_EQ(r.save(), "");
        std::int32_t last = 0;
        int i = 0;
        for (const event* e = r.score()->events; e; e = e->next) {
            EXPECT_EQ(e->pitch, i++ % 128);
            EXPECT_GE(e->time, last);
            last = e->time;
        }
        EXPECT_EQ(i, NOTES);
        p.score = nullptr;
    }
    std::remove(file.c_str());
    EXPECT_EQ(p.console, std::vector<std::string>{});
}

TEST(real_time_boxes, patches_are_built_rewired_sent_to_and_taken_apart_while_their_clocks_run) {
    real_time_patch p("");
    load_brisolan();
    boxes_load();
    for (int i = 0; i < 60; ++i) {
        host_patcher* const patch = kel_patcher_new();
        ASSERT_TRUE(
            kel_patch_parse(patch,
                            "#N loadbang; #N delay 1; #N timer; #N print ms; #N makenote 100 3; #N noteout;\n"
                            "#P cord 0 0 1 0; #P cord 1 0 1 0; #P cord 1 0 2 0; #P cord 2 0 3 0;\n"
                            "#P cord 2 0 4 0; #P cord 4 0 5 0; #P cord 4 1 5 1; #P cord 4 2 5 2;\n",
                            "test"));
        const std::vector<kel_box>& boxes = kel_patcher_patch(patch).boxes;
        for (int turn = 0; turn < 5; ++turn) {
            p.session.wait(1);
            kel_disconnect(boxes[2].object, 0, boxes[3].object, 0);
            kel_connect(boxes[2].object, 0, boxes[3].object, 0);
            kel_number(boxes[1].object, atom(turn));
        }
        if (i % 2) kel_patcher_remove(patch, boxes[3].object);
        kel_patcher_free(patch);
    }
    EXPECT_FALSE(p.console.empty());
    // With a delay of 0 the delay sets itself again at once, and prints faster than anyone can take it.
    for (const std::string& line : p.console)
        EXPECT_TRUE(line.starts_with("post ms: ") || line == flooded) << line;
}

TEST(real_time_boxes, a_patch_that_prints_without_pause_leaves_the_main_level_its_turn) {
    real_time_patch p("");
    load_brisolan();
    boxes_load();
    host_patcher* const patch = kel_patcher_new();
    ASSERT_TRUE(kel_patch_parse(patch,
                                "#N loadbang; #N delay 0; #N print on;\n"
                                "#P cord 0 0 1 0; #P cord 1 0 1 0; #P cord 1 0 2 0;\n",
                                "test"));
    const std::int64_t before = kel_memory_bytes();
    constexpr int TURNS = 300;
    for (int i = 0; i < TURNS; ++i) p.session.wait(1);
    EXPECT_LT(kel_memory_bytes() - before, std::int64_t{64} << 20);
    kel_patcher_free(patch);
    kel_run_queue();
    EXPECT_GT(std::count(p.console.begin(), p.console.end(), "post on: bang"), TURNS);
}

TEST(real_time_console, lines_of_the_scheduler_are_printed_at_main_level_in_their_order) {
    real_time_patch p("");
    load_brisolan();
    // "next" while it does not play makes the object say so, at scheduler level.
    for (int i = 0; i < 20; ++i) {
        host_patcher* const patch = kel_patcher_new();
        boxes_load();
        ASSERT_TRUE(kel_patch_parse(patch,
                                    "#N loadbang; #N delay 0; #N message next; #N brisolan;\n"
                                    "#P cord 0 0 1 0; #P cord 1 0 2 0; #P cord 2 0 3 0;\n",
                                    "test"));
        const auto before = p.console.size();
        for (int turn = 0; turn < 2000 && p.console.size() == before; ++turn) p.session.wait(5);
        kel_patcher_free(patch);
    }
    EXPECT_EQ(p.console, std::vector<std::string>(20, "post not playing"));
}

} // namespace
