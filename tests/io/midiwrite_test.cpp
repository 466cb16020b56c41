// tests/io/midiwrite_test.cpp: writing MIDI files, byte for byte.
// Test layer. Run by ctest.
#include "io/midiwrite.h"

#include <algorithm>
#include <random>

#include "io/bufferedfile.h"
#include "tests/io/io_test.h"
#include "tests/io/midi_bytes.h"

namespace {

using values = std::array<std::int32_t, NPARAMS>;

class midiwrite : public io_test {
protected:
    // Exports with these two flags; the file's bytes.
    std::string written(int timecode, int multitrack) {
        said = told("export a.mid " + std::to_string(timecode) + " " + std::to_string(multitrack));
        return get_file("a.mid");
    }
    text_lines said;
};

const std::string tempo_120 = bytes({0, 0xFF, 0x51, 3, 0x07, 0xA1, 0x20});

TEST_F(midiwrite, one_note_in_the_metrical_base) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    EXPECT_EQ(written(0, 0), midi_header(0, 1, 0x60) + chunk(bytes({0x00, 0x90, 0x3C, 0x64, 0x60, 0x90, 0x3C,
                                                                    0x00, 0x00, 0xFF, 0x2F, 0x00})));
    EXPECT_EQ(said, text_lines{"post finished"});
}

TEST_F(midiwrite, one_note_in_the_time_code_base) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    EXPECT_EQ(written(1, 0),
              midi_header(0, 1, 0xE728) + chunk(bytes({0x00, 0x90, 0x3C, 0x64, 0x87, 0x68, 0x90, 0x3C, 0x00,
                                                       0x00, 0xFF, 0x2F, 0x00})));
}

TEST_F(midiwrite, format_one_tells_its_tempo_in_the_first_track) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    EXPECT_EQ(written(0, 1),
              midi_header(1, 1, 0x60) + chunk(tempo_120 + on(0, 60) + on(96, 60, 0) + end_of_track()));
    EXPECT_EQ(said, (text_lines{"post there are 1 tracks", "post highest track numbered 1",
                                "post done with all tracks", "post finished"}));
    EXPECT_EQ(written(1, 1), midi_header(1, 1, 0xE728) + chunk(on(0, 60) + on(1000, 60, 0) + end_of_track()))
        << "not with time code";
}

TEST_F(midiwrite, parts_of_a_tick_are_carried_on) {
    fill({{1, 60, 1, 1000000, 1, 1, 0, 0},
          {2, 60, 1, 1000000, 1, 1, 0, 0},
          {3, 60, 1, 1000000, 1, 1, 0, 0},
          {4, 60, 1, 1000000, 1, 1, 0, 0},
          {5, 60, 1, 1000000, 1, 1, 0, 0},
          {6, 60, 1, 1000000, 1, 1, 0, 0}});
    const std::string file = written(0, 0);
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(file[22 + 4 * i], i == 5 ? 1 : 0) << i;
}

TEST_F(midiwrite, tracks_between_used_ones_are_written_empty) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}, {0, 61, 100, 500, 1, 3, 0, 0}});
    EXPECT_EQ(written(0, 1), midi_header(1, 2, 0x60) +
                                 chunk(tempo_120 + on(0, 60) + on(96, 60, 0) + end_of_track()) +
                                 chunk(end_of_track()) + chunk(on(0, 61) + on(96, 61, 0) + end_of_track()));
    EXPECT_EQ(said, (text_lines{"post there are 2 tracks", "post highest track numbered 3",
                                "post done with all tracks", "post finished"}));
}

TEST_F(midiwrite, a_track_of_zero_counts_as_one_and_is_not_written) {
    fill({{0, 60, 100, 500, 1, 0, 0, 0}, {0, 61, 100, 500, 1, -7, 0, 0}});
    EXPECT_EQ(written(0, 1), midi_header(1, 1, 0x60) + chunk(tempo_120 + end_of_track()));
    EXPECT_EQ(written(0, 0), midi_header(0, 1, 0x60) + chunk(on(0, 60) + on(0, 61) + on(96, 61, 0) +
                                                             on(0, 60, 0) + end_of_track()));
}

TEST_F(midiwrite, a_track_beyond_the_maximum_counts_as_that_and_is_not_written) {
    x->params[PARAM_TRACK].max = 2;
    fill({{0, 60, 100, 500, 1, 9, 0, 0}});
    EXPECT_EQ(written(0, 1),
              midi_header(1, 1, 0x60) + chunk(tempo_120 + end_of_track()) + chunk(end_of_track()));
    EXPECT_EQ(said[1], "post highest track numbered 2");
    // The maximum is taken as 16 bits, and below 1 counts as 1.
    x->params[PARAM_TRACK].max = 0x10000;
    EXPECT_EQ(written(0, 1), midi_header(1, 1, 0x60) + chunk(tempo_120 + end_of_track()));
    x->params[PARAM_TRACK].max = -3;
    EXPECT_EQ(written(0, 1), midi_header(1, 1, 0x60) + chunk(tempo_120 + end_of_track()));
    EXPECT_EQ(said[0], "post there are 1 tracks");
}

TEST_F(midiwrite, an_empty_sequence_in_format_one_has_no_track_and_one_chunk) {
    EXPECT_EQ(written(0, 1), midi_header(1, 0, 0x60) + chunk(tempo_120 + end_of_track()));
    EXPECT_EQ(said, (text_lines{"post there are 0 tracks", "post highest track numbered 0",
                                "post done with all tracks", "post finished"}));
    EXPECT_EQ(written(0, 0), midi_header(0, 1, 0x60) + chunk(end_of_track()));
}

TEST_F(midiwrite, a_note_off_at_the_time_of_a_note_on_comes_behind_it) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}, {500, 62, 100, 500, 1, 1, 0, 0}});
    EXPECT_EQ(written(0, 0), midi_header(0, 1, 0x60) + chunk(on(0, 60) + on(96, 62) + on(0, 60, 0) +
                                                             on(96, 62, 0) + end_of_track()));
}

TEST_F(midiwrite, of_notes_that_end_together_the_later_one_ends_first) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}, {0, 61, 100, 500, 1, 1, 0, 0}, {250, 62, 100, 250, 1, 1, 0, 0}});
    EXPECT_EQ(written(0, 0),
              midi_header(0, 1, 0x60) + chunk(on(0, 60) + on(0, 61) + on(48, 62) + on(48, 62, 0) +
                                              on(0, 61, 0) + on(0, 60, 0) + end_of_track()));
}

TEST_F(midiwrite, a_channel_counts_from_the_chan_minimum) {
    fill({{0, 60, 100, 500, 16, 1, 0, 0}});
    EXPECT_EQ(written(0, 0),
              midi_header(0, 1, 0x60) + chunk(on(0, 60, 100, 15) + on(96, 60, 0, 15) + end_of_track()));
    x->params[PARAM_CHAN].min = 0;
    fill({{0, 60, 100, 500, 5, 1, 0, 0}});
    EXPECT_EQ(written(0, 0),
              midi_header(0, 1, 0x60) + chunk(on(0, 60, 100, 5) + on(96, 60, 0, 5) + end_of_track()));
}

TEST_F(midiwrite, values_are_written_as_their_low_bytes) {
    fill({{0, 60 + 256, 100 + 512, 500, 1 + 0x70, 1, 0, 0}});
    EXPECT_EQ(written(0, 0),
              midi_header(0, 1, 0x60) + chunk(bytes({0, 0x00, 60, 100, 96, 0x00, 60, 0}) + end_of_track()));
}

TEST_F(midiwrite, ticks_are_masked_to_28_bits) {
    // 0x7FFFFFFE ticks.
    fill({{0x3FFFFFFF, 60, 100, 1, 1, 1, 0, 0}});
    EXPECT_EQ(written(1, 0),
              midi_header(0, 1, 0xE728) +
                  chunk(bytes({0xFF, 0xFF, 0xFF, 0x7E, 0x90, 60, 100, 2, 0x90, 60, 0}) + end_of_track()));
}

TEST_F(midiwrite, an_end_beyond_32_bits_wraps) {
    // The first note's end is far in the past, so its note-off comes at once: 0x1000 ms on, and the next note as many back.
    fill({{0x7FFFF000, 60, 100, 0x1000, 1, 1, 0, 0}, {0x7FFFF000, 61, 100, 1, 1, 1, 0, 0}});
    EXPECT_EQ(written(1, 0),
              midi_header(0, 1, 0xE728) + chunk(on(0x0FFFE000, 60) + on(0x2000, 60, 0) + on(0x0FFFE000, 61) +
                                                on(2, 61, 0) + end_of_track()));
}

TEST_F(midiwrite, a_note_that_ends_on_the_last_millisecond_has_no_note_off) {
    fill({{0x7FFFFFFF, 60, 100, 0, 1, 1, 0, 0}});
    EXPECT_EQ(written(1, 0), midi_header(0, 1, 0xE728) +
                                 chunk(bytes({0xFF, 0xFF, 0xFF, 0x7E, 0x90, 60, 100}) + end_of_track()));
}

TEST_F(midiwrite, quantities_have_as_many_bytes_as_they_need) {
    const std::pair<std::int32_t, std::string> rows[] = {{0, bytes({0})},
                                                         {0x7F, bytes({0x7F})},
                                                         {0x80, bytes({0x81, 0})},
                                                         {0x3FFF, bytes({0xFF, 0x7F})},
                                                         {0x4000, bytes({0x81, 0x80, 0})},
                                                         {0x1FFFFF, bytes({0xFF, 0xFF, 0x7F})},
                                                         {0x200000, bytes({0x81, 0x80, 0x80, 0})},
                                                         {0x0FFFFFFF, bytes({0xFF, 0xFF, 0xFF, 0x7F})},
                                                         {0x10000001, bytes({1})},
                                                         {-1, bytes({0xFF, 0xFF, 0xFF, 0x7F})}};
    for (const auto& [value, expected] : rows) {
        ASSERT_EQ(t_open("a", 0, TYPE_MIDI), HOST_OK);
        wbytes = 5;
        writevar(value);
        EXPECT_EQ(wbytes, 5 + static_cast<std::int32_t>(expected.size()));
        t_close();
        EXPECT_EQ(get_file("a"), expected) << value;
    }
}

TEST_F(midiwrite, arguments_of_export) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    told("export a.mid");
    EXPECT_EQ(get_file("a.mid").substr(0, 14), midi_header(1, 1, 0x60)) << "metrical, by tracks";
    told("export a.mid 1");
    EXPECT_EQ(get_file("a.mid").substr(0, 14), midi_header(1, 1, 0xE728));
    told("export a.mid x 0");
    EXPECT_EQ(get_file("a.mid").substr(0, 14), midi_header(0, 1, 0x60)) << "a symbol is no time base";
    told("export a.mid 1 x");
    EXPECT_EQ(get_file("a.mid").substr(0, 14), midi_header(1, 1, 0xE728));
    answer("b.mid");
    told("export 1 0");
    EXPECT_EQ(get_file("b.mid").substr(0, 14), midi_header(0, 1, 0xE728));
    answer("b.mid");
    told("export 1");
    EXPECT_EQ(get_file("b.mid").substr(0, 14), midi_header(1, 1, 0xE728));
    answer("c.mid");
    told("export");
    EXPECT_EQ(get_file("c.mid").substr(0, 14), midi_header(1, 1, 0x60));
    answer("d.mid");
    told("export 1.5 0");
    EXPECT_EQ(get_file("d.mid").substr(0, 14), midi_header(1, 1, 0x60)) << "a float says nothing";
    cancel();
    EXPECT_EQ(told("export"), text_lines{});
    ASSERT_EQ(machine.asked.size(), 5U);
    EXPECT_TRUE(machine.asked.back().saving);
    EXPECT_EQ(machine.asked.back().proposed, "");
    EXPECT_EQ(machine.asked.back().types, std::vector<file_type>{TYPE_MIDI});
}

TEST_F(midiwrite, an_open_that_fails_is_told_and_nothing_else_happens) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    send("start");
    EXPECT_EQ(told("export missing/a.mid"), text_lines{"error can't open missing/a.mid, error -43"});
    EXPECT_EQ(x->mode, MODE_PLAY);
    told("export a.mid");
    EXPECT_EQ(x->mode, MODE_IDLE);
}

TEST_F(midiwrite, a_file_that_cannot_be_written_leaves_the_old_one) {
    fill({{0, 60, 100, 500, 1, 1, 0, 0}});
    for (int k = 1;; ++k) {
        put_file("a.mid", "old");
        kel_file_fault(k, HOST_ERR_FULL);
        const text_lines lines_told = told("export a.mid 0 0");
        const bool faulted = kel_file_faulted();
        kel_file_fault(0);
        EXPECT_EQ(folder.names(), text_lines{"a.mid"});
        if (!faulted) {
            EXPECT_EQ(lines_told, text_lines{"post finished"});
            break;
        }
        if (lines_told.size() == 1) {
            EXPECT_EQ(lines_told[0], "error can't open a.mid, error -34") << "operation " << k;
        } else {
            EXPECT_EQ(lines_told, (text_lines{"error a.mid was not saved: no space left", "post finished"}))
                << "operation " << k;
        }
        EXPECT_EQ(get_file("a.mid"), "old") << "operation " << k;
    }
    EXPECT_EQ(get_file("a.mid").size(), 34U);
}

TEST_F(midiwrite, counting_tracks) {
    std::int32_t count = -1;
    std::int32_t highest = -1;
    brisolan_counttracks(x, &count, &highest);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(highest, 0);
    fill({{0, 60, 1, 1, 1, 5, 0, 0},
          {0, 60, 1, 1, 1, 5, 0, 0},
          {0, 60, 1, 1, 1, 99, 0, 0},
          {0, 60, 1, 1, 1, -1, 0, 0}});
    brisolan_counttracks(x, &count, &highest);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(highest, 32);
}

// ---------------------------------------------------------------------------------------------------------------------
// Against a slow twin that keeps the sounding notes in a list, newest first, and walks the whole sequence for each track

struct twin_message {
    std::int32_t time, pitch, vel, chan;
};

std::vector<twin_message> twin_track(const std::vector<values>& events) {
    std::vector<twin_message> out;
    std::vector<values> pending; // newest first
    std::size_t at = 0;
    for (;;) {
        const std::int32_t next = at < events.size() ? events[at][0] : 0x7FFFFFFF;
        const auto end = [](const values& v) {
            return static_cast<std::int32_t>(static_cast<std::uint32_t>(v[0]) +
                                             static_cast<std::uint32_t>(v[3]));
        };
        auto best = pending.end();
        for (auto p = pending.begin(); p != pending.end(); ++p) {
            if (end(*p) < next && (best == pending.end() || end(*p) < end(*best))) best = p;
        }
        if (best != pending.end()) {
            out.push_back({end(*best), (*best)[1], 0, (*best)[4]});
            pending.erase(best);
        } else if (at < events.size()) {
            const values& v = events[at++];
            out.push_back({v[0], v[1], v[2], v[4]});
            pending.insert(pending.begin(), v);
        } else {
            return out;
        }
    }
}

std::string twin_bytes(const std::vector<values>& events, bool timecode, bool with_tempo) {
    std::string content = with_tempo ? tempo_120 : "";
    std::int32_t last = 0;
    double carry = 0;
    for (const twin_message& m : twin_track(events)) {
        const std::int32_t delta =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(m.time) - static_cast<std::uint32_t>(last));
        last = m.time;
        const double f = delta / 125.0 * 24.0 + carry;
        std::uint32_t ticks = static_cast<std::uint32_t>(static_cast<std::int32_t>(f));
        carry = f - static_cast<std::int32_t>(f);
        if (timecode) ticks = static_cast<std::uint32_t>(delta) * 2;
        content +=
            var(ticks & 0x0FFFFFFF) + bytes({(0x90 + m.chan - 1) & 0xFF, m.pitch & 0xFF, m.vel & 0xFF});
    }
    return chunk(content + end_of_track());
}

TEST_F(midiwrite, a_step_back_of_more_than_31_bits_is_written_as_the_one_ahead_that_it_wraps_to) {
    const std::vector<values> all{{2000000000, 60, 1, 10, 1, 1, 0, 0}, {-2000000000, 61, 2, 10, 1, 1, 0, 0}};
    fill({all[0], all[1]});
    ASSERT_EQ(events(), (text_lines{"2000000000 60 1 10 1 1 0 0", "-2000000000 61 2 10 1 1 0 0"}));
    EXPECT_EQ(written(0, 0).substr(14), twin_bytes(all, false, false));
}

TEST_F(midiwrite, a_long_track_is_written_whole) {
    std::vector<values> all;
    for (std::int32_t i = 0; i < 8000; ++i) all.push_back({i * 10, 40 + i % 50, 1 + i % 127, 9, 1, 1, 0, 0});
    send("clear");
    for (const values& v : all) {
        x->lasttime = v[0];
        brisolan_append(x, 0, v, false);
    }
    EXPECT_TRUE(written(0, 0).substr(14) == twin_bytes(all, false, false));
    EXPECT_TRUE(written(0, 1).substr(14) == twin_bytes(all, false, true));
}

TEST_F(midiwrite, writes_what_the_slow_twin_writes) {
    const unsigned seed = 30;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto roll = [&random](int n) {
        return static_cast<std::int32_t>(random() % static_cast<unsigned>(n));
    };
    for (int round = 0; round < 400; ++round) {
        std::vector<values> all;
        for (int n = roll(80); n > 0; --n) {
            const std::int64_t wide = roll(30) == 0 ? static_cast<std::int32_t>(random()) : roll(40);
            const auto dur = static_cast<std::int32_t>(wide * 10 - 20); // any 32 bits now and then
            all.push_back({roll(100) * 10, 60 + roll(5), 1 + roll(127), dur, 1 + roll(16), roll(6), 0, 0});
        }
        std::stable_sort(all.begin(), all.end(),
                         [](const values& a, const values& b) { return a[0] < b[0]; });
        send("clear");
        for (const values& v : all) {
            x->lasttime = v[0];
            brisolan_append(x, 0, v, false);
        }
        for (const bool timecode : {false, true}) {
            std::filesystem::remove("a.mid");
            ASSERT_EQ(written(timecode, 0).substr(14), twin_bytes(all, timecode, false)) << "round " << round;
            std::int32_t highest = 1;
            for (const values& v : all) highest = std::max(highest, v[5]);
            std::string tracks;
            for (std::int32_t t = 1; t <= highest; ++t) {
                std::vector<values> own;
                std::copy_if(all.begin(), all.end(), std::back_inserter(own),
                             [t](const values& v) { return v[5] == t; });
                tracks += twin_bytes(own, timecode, t == 1 && !timecode);
            }
            std::filesystem::remove("a.mid");
            ASSERT_EQ(written(timecode, 1).substr(14), tracks) << "round " << round;
        }
    }
}

} // namespace
