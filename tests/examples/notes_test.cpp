// That sources are read as their notation says, and that a mistake in one is named with its place.
// Test of a developer tool.
// Run by ctest.
#include "examples/src/notes_reader.h"

#include <gtest/gtest.h>

using namespace examples;

namespace {

const std::string HEAD = "format 1\nmeter 4/4\ntempo 120\nlevel 1:1 60\nlevel 3:1 100\nvoice Flute\n";

piece read(const std::string& text) {
    return read_notes(HEAD + text, "piece.notes", ".");
}

std::vector<int> pitches(const piece& p) {
    std::vector<int> all;
    for (const note& n : p.voices.front().notes) all.push_back(n.pitch);
    return all;
}

std::string error_of(const std::string& text) {
    try {
        read(text);
    } catch (const notes_error& error) {
        return error.what();
    }
    return "";
}

} // namespace

TEST(notes, pitches_have_octave_marks_and_accidentals) {
    EXPECT_EQ(pitches(read("1 c4 c' c'' c,\n2 f#4 bb b ab'\n")),
              (std::vector<int>{48, 60, 72, 36, 54, 58, 59, 68}));
}

TEST(notes, lengths_hold_on_until_the_next_and_dots_add_half) {
    const piece p = read("hold 100\n1 c4. d8 e4 r8 f\n");
    std::vector<int> lengths;
    for (const note& n : p.voices[0].notes) lengths.push_back(n.length);
    EXPECT_EQ(lengths, (std::vector<int>{720, 240, 480, 240}));
    EXPECT_EQ(p.voices[0].notes[3].start, 1680);
}

TEST(notes, ties_join_across_the_bar) {
    const piece p = read("hold 100\n1 r2 c2~\n2 c4 r2.\n");
    ASSERT_EQ(p.voices[0].notes.size(), 1u);
    EXPECT_EQ(p.voices[0].notes[0].start, 960);
    EXPECT_EQ(p.voices[0].notes[0].length, 1440);
}

TEST(notes, what_stands_before_a_star_is_played_that_often) {
    EXPECT_EQ(pitches(read("1 c8 d *4\n")), (std::vector<int>{48, 50, 48, 50, 48, 50, 48, 50}));
}

TEST(notes, chords_have_two_notes) {
    EXPECT_EQ(pitches(read("1 <c e'>1\n")), (std::vector<int>{48, 64}));
    EXPECT_EQ(error_of("1 <c e g>1\n"), "piece.notes:7: a chord has two notes, in every voice");
    EXPECT_EQ(error_of("1 <c e\n"), "piece.notes:7: a chord does not end");
}

TEST(notes, hold_shortens_and_an_underscore_does_not) {
    const piece p = read("hold 50\nhold 8 25\n1 c4 d8 e8_ f2^\n");
    std::vector<int> lengths;
    for (const note& n : p.voices[0].notes) lengths.push_back(n.length);
    EXPECT_EQ(lengths, (std::vector<int>{240, 60, 240, 480}));
}

TEST(notes, levels_are_lines_with_accents_on_them) {
    const piece p = read("accent 1 5\naccent off -3\nbalance -10\n1 c4 d8 e f2^\n2 c1\n3 d1\n4 e1\n");
    std::vector<int> velocities;
    for (const note& n : p.voices[0].notes) velocities.push_back(n.velocity);
    EXPECT_EQ(velocities, (std::vector<int>{55, 55, 54, 70, 75, 95, 95}));
}

TEST(notes, mistakes_are_named_with_their_line) {
    EXPECT_EQ(error_of("1 c1\n3 c1\n"), "piece.notes:8: bar 2 is missing");
    EXPECT_EQ(error_of("1 c2.\n"), "piece.notes:7: bar 1 has 1440 ticks, not 1920");
    EXPECT_EQ(error_of("1 h1\n"), "piece.notes:7: \"h1\" is no note");
    EXPECT_EQ(error_of("1 c3\n"), "piece.notes:7: there is no note length 3");
    EXPECT_EQ(error_of("1 c1~\n2 d1\n"), "piece.notes:8: a tie leads to another pitch");
    EXPECT_EQ(error_of("1 c1~\n"), "piece.notes:7: the voice ends with a tie");
    EXPECT_EQ(error_of("1-2 c1\n"), "piece.notes:7: only rests span several bars");
    EXPECT_EQ(error_of("1 c1\nvoice Bass\n1 c1\n2 c1\n"),
              "piece.notes:10: the voice has not as many bars as the one before");
    EXPECT_EQ(error_of("colour red\n"), "piece.notes:7: unknown word \"colour\"");
    EXPECT_EQ(error_of("channel 17\n"), "piece.notes:7: \"17\" is no number from 1 to 16");
    EXPECT_EQ(error_of("1 c1\nhold 50\n"), "piece.notes:8: \"hold\" has to stand before the first bar");
}

TEST(notes, a_performance_differs_from_its_score_by_its_slips) {
    const std::filesystem::path folder = BRISOLAN_SOURCE_DIR "/examples/src";
    const piece score = read_notes_file(folder / "minuet-in-g.notes");
    const std::string from = "perform minuet-in-g.notes 1\n";
    const piece played =
        read_notes(from + "wrong 1:1 c'\nskip 1:2.5\nlate 1:3 300 50\n", "played.notes", folder);
    const std::vector<note>& want = score.voices[0].notes;
    const std::vector<note>& got = played.voices[0].notes;
    ASSERT_EQ(played.voices.size(), 1u);
    ASSERT_EQ(got.size(), want.size() - 1);
    EXPECT_EQ(got[0].pitch, 60);
    EXPECT_EQ(got[1].pitch, want[1].pitch);
    EXPECT_EQ(got[2].pitch, want[4].pitch); // c'', for the b' before it comes late
    EXPECT_EQ(got[3].pitch, want[3].pitch);
    EXPECT_EQ(got[3].start, want[3].start + 300);
    EXPECT_EQ(got[3].length, 50);
    EXPECT_THROW(read_notes(from + "skip 1:1.5\n", "played.notes", folder), notes_error);
}
