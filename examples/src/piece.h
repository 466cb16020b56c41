// A piece of music as its .notes file tells it: voices of notes on a grid of ticks, and the tempi over them.
// Developer tool that makes the example files; no part of the program.
// Filled by notes_reader, written by midi_bytes, compared by read_back.
#pragma once

#include <string>
#include <vector>

namespace examples {

constexpr int TICKS_PER_QUARTER = 480;

// Times in ticks from the beginning, as written: no tempo in them.
struct note {
    int start = 0;
    int length = 0; // how long it sounds, at least 1
    int pitch = 0;
    int velocity = 0;
};

// Notes in order of their starts, two at most at a time.
struct voice {
    std::string name;
    int channel = 1; // 1 to 16
    int program = 0; // 0 to 127
    std::vector<note> notes;
};

struct tempo_mark {
    int at = 0;  // tick from which it holds
    int bpm = 0; // quarter notes a minute
};

struct piece {
    std::string title;
    std::string composer;
    int format = 1; // of the MIDI file: 0 or 1
    int beats = 4;
    int beat_unit = 4;
    int sharps = 0;                // of the major key; flats below 0
    std::vector<tempo_mark> tempi; // the first one at 0, then rising
    std::vector<voice> voices;
    int end = 0; // tick after the last bar
};

// Length of a bar of p in ticks.
int bar_ticks(const piece& p);

// The written tick `at` on the grid of a file that keeps the first tempo throughout: where a later tempo is slower,
// ticks are stretched by as much, so that the same is heard. Rounded to whole ticks tempo by tempo.
int stretched_tick(const piece& p, int at);

// When the written tick `at` is heard, in milliseconds from the beginning.
double heard_ms(const piece& p, int at);

} // namespace examples
