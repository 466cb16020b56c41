// How somebody plays a voice: a little off the grid, with slips.
// Developer tool that makes the example files; no part of the program.
// Filled and called by notes_reader.
#pragma once

#include "examples/src/piece.h"

#include <optional>
#include <vector>

namespace examples {

// One note played otherwise than it stands. Without a pitch and a length it is left out.
struct slip {
    int at = 0;               // where the note stands, in ticks
    std::optional<int> pitch; // played instead
    int late = 0;             // ticks by which it comes too late, then sounding `length` ticks
    int length = 0;
};

struct performance {
    std::vector<int> sway;  // ticks late, or early below 0, note by note and round again
    std::vector<int> touch; // velocity added, in the same way
    std::vector<slip> slips;
};

// Changes `notes`, which come one at a time, into what is played. A note still ends where the next one begins, save
// around a late one. Throws notes_error when no note stands where a slip is.
void perform(const performance& how, std::vector<note>& notes);

} // namespace examples
