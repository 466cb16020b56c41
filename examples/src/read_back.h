// Reads an example file as the program will read it, and tells where that differs from what the piece means.
// Developer tool that makes the example files; no part of the program.
// Called by make_examples before anything is written, and by the tests.
#pragma once

#include "examples/src/piece.h"

#include <cstdint>
#include <string>
#include <vector>

namespace examples {

// An event of the program's sequence; times in milliseconds.
struct read_note {
    int time = 0;
    int pitch = 0;
    int velocity = 0;
    int duration = 0;
    int channel = 0; // from 1
    int track = 0;   // from 1
};

// The notes of a file that midi_bytes made, track by track in file order, by the program's rules: tempi in whole beats
// a minute, a tempo carried on into the next track, whole milliseconds with the rest carried along, note-offs looked up
// by pitch and track among the first sounding note and the latest one. A note whose note-off is not found keeps 10 ms.
std::vector<read_note> read_as_program(const std::vector<std::uint8_t>& file);

// One line for each note of `file` that is read otherwise than p means it, by more than rounding; empty when all is well.
std::vector<std::string> differences(const piece& p, const std::vector<std::uint8_t>& file);

} // namespace examples
