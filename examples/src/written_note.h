// The words of a .notes line: numbers, note lengths, pitches, whole notes, and a bar's words with its repeats laid out.
// Developer tool that makes the example files; no part of the program.
// Called by notes_reader.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace examples {

// What is wrong with a source. Words know nothing of lines: the reader puts "FILE:LINE: " before it.
struct notes_error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One note or two of a bar as written, or a rest (no pitch).
struct written {
    std::vector<int> pitches;
    int length = 0; // in ticks
    bool accented = false;
    bool full = false; // sounds its whole length
    bool tied = false; // goes on in the next one
};

// The whole number in `word`; anything else, or one out of range, throws notes_error, as all of these do.
int read_number(std::string_view word, int least, int most);

// A note length in ticks: 1 2 4 8 16 32, with a dot half as much again.
int read_length(std::string_view word);

// A pitch as a note number: a letter, # or b, then an octave up for each ' and down for each comma. c is 48.
int read_pitch(std::string_view word);

// A pitch, <two pitches> or r, then a length or none (then it is `last_length`), then any of ^ _ and ~.
written read_written(std::string_view word, int last_length);

// The notes of a bar, given its line without the number: chords in one piece, and in the place of *N what stands before
// it, N times in all.
std::vector<std::string> lay_out(const std::vector<std::string>& line);

} // namespace examples
