// tests/io/midiread_test.cpp: reading MIDI files.
// Test layer. Run by ctest.
#include "io/midiread.h"

#include <random>

#include "host/kernel/memory.h"
#include "io/bufferedfile.h"
#include "tests/io/io_test.h"
#include "tests/io/midi_bytes.h"
#include "tests/io/midi_twin.h"
#include "tests/support/used_up.h"

namespace {

class midiread : public io_test {
protected:
    // Reads a file of these bytes; the console's lines.
    text_lines read(const std::string& file, const std::string& option = "") {
        std::filesystem::remove("a.mid"); // the system makes sure of a file that is written over
        put_file("a.mid", file);
        return told("read a.mid " + option);
    }
    text_lines read_track(const std::string& content, const std::string& option = "") {
        return read(one_track(content), option);
    }
    std::int32_t index_of_current() const {
        std::int32_t i = 0;
        for (const event* e = x->events; e; e = e->next, ++i) {
            if (e == x->current) return i;
        }
        return -1;
    }
};

TEST_F(midiread, ninety_six_ticks_are_half_a_second_without_a_tempo) {
    EXPECT_EQ(read_track(on(96, 60, 100, 2) + off(96, 60, 2)), text_lines{});
    EXPECT_EQ(events(), text_lines{"500 60 100 500 3 1 0 0"});
}

TEST_F(midiread, a_note_on_of_velocity_zero_is_a_note_off) {
    read_track(on(0, 60) + on(192, 60, 0));
    EXPECT_EQ(events(), text_lines{"0 60 100 1000 1 1 0 0"});
}

TEST_F(midiread, a_tempo_is_rounded_down_to_whole_beats) {
    read_track(tempo(0, 500000) + on(192, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
    // 150 beats: 240 ticks a second.
    read_track(tempo(0, 400000) + on(240, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
    // 85 beats and not 85.7: 136 ticks a second.
    read_track(tempo(0, 700000) + on(136, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
}

TEST_F(midiread, a_tempo_of_nothing_is_the_usual_one) {
    read_track(tempo(0, 0) + on(192, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
}

TEST_F(midiread, a_short_tempo_events_missing_bytes_are_zero) {
    // 0x070000 microseconds: 130 beats, 208 ticks a second.
    read_track(meta(0, 0x51, bytes({7})) + on(208, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
    read_track(meta(0, 0x51, "") + on(192, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
    // What is longer counts by its first three.
    read_track(meta(0, 0x51, bytes({0x07, 0xA1, 0x20, 9, 9})) + on(192, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
}

TEST_F(midiread, a_tempo_goes_on_in_later_tracks) {
    read(midi_header(1, 2, 96) + chunk(tempo(0, 250000) + end_of_track()) +
         chunk(on(384, 60) + end_of_track()));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 2 0 0"});
}

TEST_F(midiread, fractions_of_a_millisecond_are_carried_on) {
    // A tick is 5.2083 ms.
    read_track(on(1, 60) + on(1, 61) + on(1, 62) + on(1, 63) + on(1, 64));
    EXPECT_EQ(events(), (text_lines{"5 60 100 10 1 1 0 0", "10 61 100 10 1 1 0 0", "15 62 100 10 1 1 0 0",
                                    "20 63 100 10 1 1 0 0", "26 64 100 10 1 1 0 0"}));
}

TEST_F(midiread, with_the_option_two_ticks_are_a_millisecond) {
    read_track(on(7, 60) + on(7, 61), "1");
    EXPECT_EQ(events(), (text_lines{"3 60 100 10 1 1 0 0", "6 61 100 10 1 1 0 0"}));
    read_track(on(7, 60), "-5");
    EXPECT_EQ(events(), text_lines{"3 60 100 10 1 1 0 0"});
}

TEST_F(midiread, a_time_code_division_tells_ticks_a_second) {
    // 25 frames of 40 ticks: 1000 a "quarter note", 2000 a second.
    read(midi_header(0, 1, 0xE728) + chunk(on(2000, 60) + end_of_track()));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
}

TEST_F(midiread, a_division_of_nothing_counts_as_one) {
    read(midi_header(0, 1, 0) + chunk(on(2, 60) + end_of_track()));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
    read(midi_header(0, 1, 0xE700) + chunk(on(2, 60) + end_of_track()));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"});
}

TEST_F(midiread, less_than_a_tick_a_second_counts_as_one) {
    // 1 tick a quarter note, 3 beats a minute.
    read(midi_header(0, 1, 1) + chunk(tempo(0, 16777215) + on(2, 60) + end_of_track()));
    EXPECT_EQ(events(), text_lines{"2000 60 100 10 1 1 0 0"});
}

TEST_F(midiread, ticks_a_second_that_wrap_below_nothing_run_time_backwards) {
    // 32767 ticks a quarter note and 60 million beats a minute, in 32 bits: -17917026 ticks a second.
    EXPECT_EQ(read(midi_header(0, 1, 32767) +
                   chunk(tempo(0, 1) + on(0, 60) + on(5, 62) + on(5, 64) + on(5, 65) + end_of_track())),
              text_lines{"post fdt < 0... something's funky"});
    EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
}

TEST_F(midiread, a_note_that_there_is_no_memory_for_is_lost_and_the_rest_goes_on) {
    put_file("a.mid", one_track(on(0, 60) + off(96, 60) + on(0, 62) + off(96, 62) + tempo(0, 500000)));
    {
        used_up blocks(sizeof(event));
        blocks.give_back_one();
        // Not by a message: a deferred one may take memory beyond the limit, for others too.
        ASSERT_EQ(t_open("a.mid", 0, 0), HOST_OK);
        brisolan_importmidi(x, "a.mid", 0);
        EXPECT_EQ(events(), text_lines{"0 60 100 500 1 1 0 0"});
        EXPECT_EQ(x->mode, MODE_IDLE);
        EXPECT_EQ(x->restoring, 0);
    }
    told("read a.mid");
    EXPECT_EQ(events(), (text_lines{"0 60 100 500 1 1 0 0", "500 62 100 500 1 1 0 0"}));
}

TEST_F(midiread, the_first_of_two_equal_notes_ends_first) {
    read_track(on(0, 60, 1) + on(96, 60, 2) + off(96, 60) + off(96, 60));
    EXPECT_EQ(events(), (text_lines{"0 60 1 1000 1 1 0 0", "500 60 2 1000 1 1 0 0"}));
}

TEST_F(midiread, a_note_without_note_off_keeps_the_provisional_duration) {
    read_track(on(0, 60) + off(96, 61));
    EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
}

// The held list's own rule: behind the first note, in place of what stood there.
TEST_F(midiread, the_second_of_three_held_notes_drops_out) {
    read_track(on(0, 60) + on(0, 64) + on(0, 67) + off(96, 60) + off(0, 64) + off(0, 67));
    EXPECT_EQ(events(), (text_lines{"0 60 100 500 1 1 0 0", "0 64 100 10 1 1 0 0", "0 67 100 500 1 1 0 0"}));
    // The first is gone and another is left: nothing more is held until that one ends.
    read_track(on(0, 60) + on(0, 64) + off(96, 60) + on(0, 67) + off(96, 67) + off(0, 64) + on(0, 72) +
               off(96, 72));
    EXPECT_EQ(events(), (text_lines{"0 60 100 500 1 1 0 0", "0 64 100 1000 1 1 0 0", "500 67 100 10 1 1 0 0",
                                    "1000 72 100 500 1 1 0 0"}));
}

TEST_F(midiread, a_note_off_does_not_look_at_the_channel) {
    read_track(on(0, 60, 100, 3) + off(96, 60, 7));
    EXPECT_EQ(events(), text_lines{"0 60 100 500 4 1 0 0"});
}

TEST_F(midiread, a_note_held_at_the_end_of_a_track_is_not_ended_by_another) {
    read(midi_header(1, 2, 96) + chunk(on(0, 60) + end_of_track()) + chunk(off(96, 60) + end_of_track()));
    EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
}

TEST_F(midiread, later_tracks_are_merged_in_front_of_equal_times) {
    read(midi_header(1, 3, 96) + chunk(on(0, 60) + on(0, 61) + on(96, 62) + end_of_track()) +
         chunk(on(0, 70) + on(0, 71) + on(48, 72) + on(48, 73) + end_of_track()) +
         chunk(on(96, 80) + end_of_track()));
    EXPECT_EQ(events(), (text_lines{"0 71 100 10 1 2 0 0", "0 70 100 10 1 2 0 0", "0 60 100 10 1 1 0 0",
                                    "0 61 100 10 1 1 0 0", "250 72 100 10 1 2 0 0", "500 80 100 10 1 3 0 0",
                                    "500 73 100 10 1 2 0 0", "500 62 100 10 1 1 0 0"}));
    EXPECT_EQ(index_of_current(), 5) << "the note appended last";
    EXPECT_EQ(x->lasttime, 500);
}

TEST_F(midiread, a_chunk_of_any_type_is_a_track) {
    read(midi_header(1, 1, 96) + chunk(on(0, 60) + end_of_track(), "Abcd") +
         chunk(on(0, 61) + end_of_track()));
    EXPECT_EQ(events(), (text_lines{"0 61 100 10 1 2 0 0", "0 60 100 10 1 1 0 0"}));
}

TEST_F(midiread, a_chunks_length_and_the_number_of_tracks_do_not_matter) {
    read(midi_header(1, 77, 96) + "MTrk" + big(3, 4) + on(0, 60) + on(0, 61) + end_of_track() + "MTrk" +
         big(90000, 4) + on(96, 62) + end_of_track());
    EXPECT_EQ(events().size(), 3U);
}

TEST_F(midiread, running_status_survives_meta_and_exclusive_events_and_tracks) {
    read(midi_header(1, 2, 96) +
         chunk(on(0, 60) + meta(0, 1, "text") + bytes({0, 61, 99}) + bytes({0, 0xF0, 2, 1, 0xF7}) +
               bytes({0, 62, 98}) + end_of_track()) +
         chunk(bytes({96, 63, 97}) + end_of_track()));
    EXPECT_EQ(events(), (text_lines{"0 60 100 10 1 1 0 0", "0 61 99 10 1 1 0 0", "0 62 98 10 1 1 0 0",
                                    "500 63 97 10 1 2 0 0"}));
}

TEST_F(midiread, data_before_any_status_is_skipped_in_pairs) {
    EXPECT_EQ(read_track(bytes({0, 60, 100}) + bytes({0, 61, 100}) + on(0, 62)), text_lines{});
    EXPECT_EQ(events(), text_lines{"0 62 100 10 1 1 0 0"});
}

TEST_F(midiread, messages_of_one_data_byte_have_one) {
    read_track(bytes({0, 0xC0, 5}) + bytes({0, 6}) + bytes({0, 0xD3, 7}) + on(0, 60));
    EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
}

TEST_F(midiread, messages_that_are_no_notes_are_skipped) {
    read_track(bytes({0, 0xA0, 60, 1}) + bytes({0, 0xB0, 7, 1}) + bytes({0, 0xE0, 0, 64}) + on(0, 60));
    EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
}

TEST_F(midiread, status_bytes_from_f1_on_are_read_as_meta_events) {
    read_track(bytes({0, 0xF1, 1, 2, 9, 9}) + bytes({0, 0xF8, 0x51, 3, 0x03, 0xD0, 0x90}) + on(384, 60));
    EXPECT_EQ(events(), text_lines{"1000 60 100 10 1 1 0 0"}) << "a tempo event among them";
}

TEST_F(midiread, data_bytes_are_taken_as_they_are) {
    read_track(bytes({0, 0x90, 200, 255}));
    EXPECT_EQ(events(), text_lines{"0 200 255 10 1 1 0 0"});
}

// ---------------------------------------------------------------------------------------------------------------------
// Refusals

TEST_F(midiread, what_is_no_midi_file_leaves_the_sequence) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    const text_lines bad{"error brisolan: a.mid: bad midi file"};
    const std::string good = one_track(on(0, 60));
    EXPECT_EQ(read(""), bad);
    EXPECT_EQ(read("RIFF" + good.substr(4)), bad);
    EXPECT_EQ(read("MThd" + big(7, 4) + good.substr(8)), bad);
    for (std::size_t n = 0; n < 14; ++n) EXPECT_EQ(read(good.substr(0, n)), bad) << n;
    EXPECT_EQ(read(midi_header(2, 1, 96) + good.substr(14)),
              text_lines{"error brisolan: MIDI File format 2 not supported"});
    EXPECT_EQ(read(midi_header(0xFFFF, 1, 96) + good.substr(14)),
              text_lines{"error brisolan: MIDI File format 65535 not supported"});
    EXPECT_EQ(events(), text_lines{"5 60 64 100 1 1 0 0"});
    EXPECT_EQ(x->restoring, 0);
}

TEST_F(midiread, a_header_alone_empties_the_sequence) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    EXPECT_EQ(read(midi_header(0, 1, 96)), text_lines{});
    EXPECT_EQ(events(), text_lines{});
    EXPECT_EQ(x->lasttime, 5) << "nothing was appended";
}

TEST_F(midiread, bad_exclusive_data_keeps_the_notes_read_so_far) {
    const text_lines bad{"error brisolan: a.mid: bad midi file"};
    const text_lines kept{"0 60 100 10 1 1 0 0"};
    EXPECT_EQ(read_track(on(0, 60) + bytes({0, 0xF0, 3, 1, 0x80, 0xF7}) + on(0, 61)), bad);
    EXPECT_EQ(events(), kept);
    EXPECT_EQ(read_track(on(0, 60) + bytes({0, 0xF0, 3, 1, 0xF7, 2}) + on(0, 61)), bad);
    EXPECT_EQ(events(), kept);
    EXPECT_EQ(read_track(on(0, 60) + bytes({0, 0xF7, 2, 1, 0xF6}) + on(0, 61)), bad);
    EXPECT_EQ(events(), kept);
    EXPECT_EQ(read(midi_header(0, 1, 96) + chunk(on(0, 60) + bytes({0, 0xF0, 9, 1, 2}))), bad) << "cut off";
    EXPECT_EQ(events(), kept);
    EXPECT_EQ(read_track(on(0, 60) + bytes({0, 0xF0, 2, 1, 2}) + bytes({0, 0xF0, 0}) + on(0, 61)),
              text_lines{});
    EXPECT_EQ(events().size(), 2U) << "without its end mark, or empty";
}

TEST_F(midiread, a_meta_event_beyond_its_limit_is_bad) {
    const text_lines bad{"error brisolan: a.mid: bad midi file"};
    EXPECT_EQ(read_track(on(0, 60) + meta(0, 1, std::string(999999, 'x')) + on(0, 61)), text_lines{});
    EXPECT_EQ(events().size(), 2U);
    EXPECT_EQ(read_track(on(0, 60) + meta(0, 1, std::string(1000000, 'x')) + on(0, 61)), bad);
    EXPECT_EQ(events().size(), 1U);
    // A length whose low 32 bits are negative is nothing that could be allocated.
    EXPECT_EQ(read_track(on(0, 60) + bytes({0, 0xFF, 1, 0x88, 0x80, 0x80, 0x80, 0}) + on(0, 61)), bad);
    EXPECT_EQ(events().size(), 1U);
}

TEST_F(midiread, a_delta_cut_off_by_the_end_of_the_file_is_funky) {
    EXPECT_EQ(read(midi_header(0, 1, 96) + chunk(on(0, 60))),
              text_lines{"post fdt < 0... something's funky"});
    EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
    EXPECT_EQ(read(midi_header(0, 1, 96) + chunk(on(0, 60) + bytes({0x81}))),
              text_lines{"post fdt < 0... something's funky"});
    EXPECT_EQ(read(midi_header(0, 1, 96) + chunk(on(0, 60)), "1"), text_lines{})
        << "but not with the other time base";
    EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
}

TEST_F(midiread, a_delta_that_is_negative_in_32_bits_ends_the_import) {
    const std::string negative = on(0, 60) + bytes({0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 61, 1});
    EXPECT_EQ(read_track(negative), text_lines{"post fdt < 0... something's funky"});
    EXPECT_EQ(events().size(), 1U);
    EXPECT_EQ(read_track(negative, "1"), text_lines{});
    EXPECT_EQ(events().size(), 1U);
}

TEST_F(midiread, the_end_of_the_file_anywhere_else_is_quiet) {
    const std::string head = midi_header(0, 1, 96);
    for (const std::string& tail :
         {bytes({0}), bytes({0, 0x90}), bytes({0, 0x90, 61}), bytes({0, 0xFF}), bytes({0, 0xFF, 1}),
          bytes({0, 0xFF, 1, 0x81}), bytes({0, 0xFF, 1, 5, 'a'}), bytes({0, 0xF0}), bytes({0, 0xF0, 0x81}),
          bytes({0, 0xC0})}) {
        EXPECT_EQ(read(head + chunk(on(0, 60) + tail)), text_lines{});
        EXPECT_EQ(events(), text_lines{"0 60 100 10 1 1 0 0"});
    }
    EXPECT_EQ(read(head + chunk(on(0, 60) + end_of_track()) + "MTr"), text_lines{});
    EXPECT_EQ(events().size(), 1U);
}

TEST_F(midiread, times_wrap_at_32_bits_and_negative_ones_count_as_zero) {
    // Two steps of 0x3FFFFFFF ms and two more.
    read_track(on(0x7FFFFFFF, 60) + on(0x7FFFFFFF, 61) + on(0x7FFFFFFF, 62), "1");
    EXPECT_EQ(events(), (text_lines{"1073741823 60 100 10 1 1 0 0", "2147483646 61 100 10 1 1 0 0",
                                    "0 62 100 10 1 1 0 0"}));
    EXPECT_EQ(x->lasttime, 0);
    EXPECT_EQ(index_of_current(), 2);
}

TEST_F(midiread, a_step_beyond_32_bits_saturates) {
    // 2^31 - 1 ticks at a tick a second.
    read(midi_header(0, 1, 1) + chunk(tempo(0, 16777215) + on(0x7FFFFFFF, 60) + end_of_track()));
    EXPECT_EQ(events(), text_lines{"2147483647 60 100 10 1 1 0 0"});
}

TEST_F(midiread, every_exit_stops_the_object) {
    fill({{5, 60, 64, 100, 1, 1, 0, 0}});
    send("start");
    ASSERT_EQ(x->mode, MODE_PLAY);
    const std::int32_t serial = x->serial;
    read("no midi");
    EXPECT_EQ(x->mode, MODE_IDLE);
    EXPECT_NE(x->serial, serial);
    EXPECT_EQ(x->restoring, 0);
    EXPECT_EQ(x->held, nullptr);
    read_track(on(0, 60));
    EXPECT_EQ(x->restoring, 0);
    EXPECT_EQ(x->params[PARAM_DUR].isset, 0);
}

TEST_F(midiread, input_is_taken_again_afterwards) {
    read_track(on(0, 60));
    send("record");
    send("10 61 64 0");
    EXPECT_EQ(events(), text_lines{"10 61 64 0 1 1 0 0"});
}

// ---------------------------------------------------------------------------------------------------------------------
// Against the slow twin

std::string random_event(std::mt19937& random, bool wild) {
    const auto roll = [&random](unsigned n) { return static_cast<std::uint32_t>(random() % n); };
    const std::uint32_t delta = wild && roll(12) == 0 ? static_cast<std::uint32_t>(random()) >> roll(20)
                                : roll(3)             ? 0
                                                      : roll(200);
    const int pitch = 60 + static_cast<int>(roll(4));
    const int channel = static_cast<int>(roll(3));
    switch (roll(wild ? 16 : 11)) {
    case 0: return var(delta) + bytes({0xC0, 1});
    case 1: return tempo(delta, roll(2) ? roll(2000000) : 0xFFFFFF);
    case 2: return meta(delta, static_cast<int>(roll(0x60)) | 0x40, std::string(roll(5), 'm'));
    case 3: return var(delta) + bytes({0xF0, 3, 1, 2, 0xF7});
    case 4:
    case 5:
    case 6: return roll(2) ? off(delta, pitch, channel) : on(delta, pitch, 0, channel);
    case 11: return var(delta) + bytes({pitch, 64});
    case 12: return bytes({static_cast<int>(roll(256))});
    case 13: return end_of_track(delta) + "MTrk" + big(0, 4);
    case 14:
        return var(delta) + bytes({static_cast<int>(0xF0 + roll(16)), static_cast<int>(roll(128)), 1, 0});
    default: return on(delta, pitch, 1 + static_cast<int>(roll(127)), channel);
    }
}

std::string random_file(std::mt19937& random) {
    const bool wild = random() % 2;
    static constexpr int divisions[] = {96, 1, 480, 0xE728, 0x7FFF, 0, 0x8080};
    std::string file =
        midi_header(static_cast<int>(random() % 2), 3, divisions[random() % std::size(divisions)]);
    const std::size_t tracks = 1 + random() % 6;
    for (std::size_t t = 0; t < tracks; ++t) {
        std::string content;
        for (std::size_t n = random() % 60; n > 0; --n) content += random_event(random, wild);
        file += chunk(content + end_of_track());
    }
    if (wild && random() % 2) file[14 + random() % (file.size() - 14)] = static_cast<char>(random());
    if (wild && random() % 3 == 0) file.resize(file.size() - random() % file.size());
    return file;
}

TEST_F(midiread, leaves_what_appending_one_by_one_leaves) {
    const unsigned seed = 20;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::size_t notes = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string file = random_file(random);
        const std::int32_t option = static_cast<std::int32_t>(random() % 3) - 1;
        const text_lines said = read(file, std::to_string(option));
        const text_lines found = events();
        const std::int32_t current = index_of_current();
        const std::int32_t lasttime = x->lasttime;
        ASSERT_EQ(brisolan_brokeninvariant(x), nullptr);
        midi_twin(x, file, option).run();
        kel_run_queue();
        ASSERT_EQ(taken(), said) << "round " << round;
        ASSERT_EQ(events(), found) << "round " << round;
        ASSERT_EQ(index_of_current(), current) << "round " << round;
        ASSERT_EQ(x->lasttime, lasttime) << "round " << round;
        notes += found.size();
    }
    EXPECT_GT(notes, 50000U);
}

// Times come from one rounding after the other, whatever foretells them: at each division and tempo, and where the exact
// time is a whole number, which the rounded one may just miss.
TEST_F(midiread, times_are_rounded_one_after_the_other) {
    std::mt19937 generator(20);
    const auto random = [&generator] { return static_cast<std::uint32_t>(generator()); };
    for (int round = 0; round < 150; ++round) {
        const int division = round % 3 == 0 ? 480 : 1 + static_cast<int>(random() % 0x7FFF);
        const std::uint32_t tick = round % 2 ? 1 : 24; // 25 ms at 480
        std::string content = tempo(0, round % 5 ? 1 + random() % 2000000 : 500000);
        for (int n = 0; n < 300; ++n) {
            const std::uint32_t delta = tick * (random() % (random() % 8 ? 20 : 600));
            content += random() % 3 ? on(delta, 60 + n % 3) : off(delta, 60 + n % 3);
        }
        const std::string file = midi_header(0, 1, division) + chunk(content + end_of_track());
        const std::string option = round % 10 ? "" : "1";
        ASSERT_EQ(read(file, option), text_lines{});
        const text_lines found = events();
        midi_twin(x, file, round % 10 ? 0 : 1).run();
        ASSERT_EQ(events(), found) << "round " << round;
    }
}

// The notes of the file before are filled again, and those that are too many go.
TEST_F(midiread, a_file_leaves_nothing_of_the_one_before) {
    std::string many;
    for (int n = 0; n < 50; ++n) many += on(1, 60) + off(1, 60);
    read_track(on(0, 61));
    const std::int64_t alive = kel_memory_blocks();
    read_track(many);
    EXPECT_EQ(x->nevents, 50);
    EXPECT_EQ(kel_memory_blocks(), alive + 49);
    x->events->selected = std::uint8_t{1};
    x->events->needsdraw = std::uint8_t{0};
    x->events->x1 = 5;
    read_track(on(0, 61));
    EXPECT_EQ(events(), text_lines{"0 61 100 10 1 1 0 0"});
    EXPECT_EQ(x->events->selected, 0);
    EXPECT_EQ(x->events->needsdraw, 1);
    EXPECT_EQ(kel_memory_blocks(), alive);
    read("no file of notes");
    EXPECT_EQ(kel_memory_blocks(), alive);
}

// Behind track 32767 the numbers are negative, and their notes are appended at the end, or not at all.
TEST_F(midiread, track_numbers_wrap_at_16_bits) {
    std::string file = midi_header(1, 1, 96) + chunk(on(0, 60) + on(96, 61) + end_of_track());
    for (int t = 2; t < 32768; ++t)
        file += chunk(t % 8000 == 0 ? on(48, 62) + end_of_track() : end_of_track());
    const std::string at_the_end = file + chunk(on(96, 63) + end_of_track());
    EXPECT_EQ(read(at_the_end), (text_lines{"post oops! lost my marbles"}))
        << "the note before was put in between";
    const text_lines found = events();
    EXPECT_EQ(found.size(), 6U);
    EXPECT_EQ(x->lasttime, 0);
    midi_twin(x, at_the_end, 0).run();
    EXPECT_EQ(events(), found);
    EXPECT_EQ(x->lasttime, 0);
    (void)taken();
    // The note before is at the end: the next goes behind it, though it is earlier.
    std::string wrapped = midi_header(1, 1, 96) + chunk(on(96, 61) + end_of_track());
    for (int t = 2; t < 32768; ++t)
        wrapped += chunk(t == 32767 ? on(192, 62) + end_of_track() : end_of_track());
    wrapped += chunk(on(0, 63) + on(0, 64) + off(96, 64) + end_of_track());
    for (int t = -32767; t < 3; ++t) wrapped += chunk(t == 2 ? on(100, 65) + end_of_track() : end_of_track());
    EXPECT_EQ(read(wrapped), text_lines{});
    const text_lines mixed = events();
    midi_twin(x, wrapped, 0).run();
    EXPECT_EQ(events(), mixed);
    EXPECT_EQ(mixed.size(), 5U);
    EXPECT_EQ(mixed[4], "0 64 100 500 1 -32768 0 0");
}

} // namespace
