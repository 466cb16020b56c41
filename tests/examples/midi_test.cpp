// That a piece becomes the bytes of a MIDI file, and that a note the program could not end is found out.
// Test of a developer tool.
// Run by ctest.
#include "examples/src/midi_bytes.h"
#include "examples/src/notes_reader.h"
#include "examples/src/read_back.h"

#include <gtest/gtest.h>

using namespace examples;

namespace {

piece two_voices(int format, const std::string& pace, const std::string& upper, const std::string& lower) {
    return read_notes("format " + std::to_string(format) + "\nmeter 4/4\ntempo 120\n" + pace +
                          "level 1:1 64\nvoice Upper\nchannel 1\nhold 100\n" + upper +
                          "voice Lower\nchannel 2\nhold 100\n" + lower,
                      "piece.notes", ".");
}

size_t short_notes(const piece& p) {
    size_t count = 0;
    for (const read_note& n : read_as_program(midi_bytes(p))) count += n.duration == 10;
    return count;
}

} // namespace

TEST(example_bytes, one_note_to_the_byte) {
    piece p;
    p.composer = "B";
    p.title = "A";
    p.format = 0;
    p.tempi = {{0, 120}};
    p.voices = {{"V", 2, 6, {{0, 480, 60, 100}}}};
    p.end = 480;
    const std::vector<std::uint8_t> want = {
        'M', 'T',  'h',  'd', 0,    0,    0,    6,    0,    0,    0,    1,    1,    0xE0, // 480 a quarter
        'M', 'T',  'r',  'k', 0,    0,    0,    47,   0,    0xFF, 3,    1,    'A',        // 47 bytes
        0,   0xFF, 1,    1,   'B',  0,    0xFF, 0x58, 4,    4,    2,    24,   8,          // 4/4
        0,   0xFF, 0x59, 2,   0,    0,    0,    0xFF, 0x51, 3,    0x07, 0xA1, 0x20, 0,    0xC1, 6, // C, 120
        0,   0x91, 60,   100, 0x83, 0x60, 0x81, 60,   64,   0,    0xFF, 0x2F, 0};
    EXPECT_EQ(midi_bytes(p), want);
}

TEST(example_bytes, slowing_down_is_heard_alike_in_both_formats) {
    for (const int format : {0, 1}) {
        const piece p = two_voices(format, "pace 1:3 60\n", "1 c''4 d'' e'' f''\n", "1 r2 c2\n");
        EXPECT_TRUE(differences(p, midi_bytes(p)).empty()) << "format " << format;
        const std::vector<read_note> notes = read_as_program(midi_bytes(p));
        ASSERT_EQ(notes.size(), 5u);
        EXPECT_EQ(notes[1].duration, 500);
        for (const read_note& n : notes)
            if (n.channel == 2) {
                EXPECT_EQ(n.time, 1000);
                EXPECT_EQ(n.duration, 2000);
                EXPECT_EQ(n.track, format == 0 ? 1 : 2);
            }
    }
}

TEST(example_bytes, every_whole_tempo_is_read_as_it_is) {
    for (int bpm = 20; bpm <= 300; ++bpm) {
        const piece p = two_voices(1, "tempo " + std::to_string(bpm) + "\n", "1 c1\n", "1 e1\n");
        EXPECT_TRUE(differences(p, midi_bytes(p)).empty()) << bpm;
    }
}

TEST(example_bytes, a_third_note_at_once_is_found_out) {
    const piece apart = two_voices(1, "", "1 <c' e'>1\n", "1 <g c>1\n");
    EXPECT_TRUE(differences(apart, midi_bytes(apart)).empty());
    const piece together = two_voices(0, "", "1 <c' e'>1\n", "1 g1\n");
    EXPECT_EQ(differences(together, midi_bytes(together)).size(), 1u);
    EXPECT_EQ(short_notes(together), 1u);
}

TEST(example_bytes, a_note_that_begins_beside_the_second_of_two_is_found_out) {
    const piece crossing = two_voices(0, "", "1 c'2 e'2\n", "1 r4 c2 r4\n");
    EXPECT_EQ(short_notes(crossing), 1u);
    EXPECT_EQ(differences(crossing, midi_bytes(crossing)).size(), 1u);
    const piece nested = two_voices(0, "", "1 c'4 e' d' f'\n", "1 c1\n");
    EXPECT_TRUE(differences(nested, midi_bytes(nested)).empty());
}

TEST(example_pieces, voices_end_together) {
    const std::filesystem::path folder = BRISOLAN_SOURCE_DIR "/examples/src";
    for (const char* name : {"prelude-in-c", "invention-in-c", "minuet-in-g", "round-in-f"}) {
        const piece p = read_notes_file(folder / (std::string(name) + ".notes"));
        ASSERT_GE(p.voices.size(), 2u) << name;
        for (const voice& v : p.voices)
            EXPECT_EQ(v.notes.back().start + v.notes.back().length, p.end) << name << ", " << v.name;
    }
}

TEST(example_pieces, have_the_bars_of_their_printed_music) {
    const std::filesystem::path folder = BRISOLAN_SOURCE_DIR "/examples/src";
    const auto bars = [&](const char* name) {
        const piece p = read_notes_file(folder / name);
        return p.end / bar_ticks(p);
    };
    EXPECT_EQ(bars("prelude-in-c.notes"), 35);
    EXPECT_EQ(bars("invention-in-c.notes"), 22);
    EXPECT_EQ(bars("minuet-in-g.notes"), 32);
}
