// Writes a piece as a Standard MIDI File in memory.
// Developer tool that makes the example files; no part of the program.
// Called by make_examples; read_back asks for the order of the notes.
#pragma once

#include "examples/src/piece.h"

#include <cstdint>
#include <vector>

namespace examples {

// A note as it goes into a track, on the ticks of the file.
struct placed_note {
    int on = 0;
    int off = 0;
    const voice* from = nullptr; // borrowed from the piece
    const note* written = nullptr;
};

// The notes of every track of the file that p becomes, in the order of their note-ons. Format 1 has a track for each
// voice, format 0 one for all. Of notes that begin together the longer one comes first. Valid while p is.
std::vector<std::vector<placed_note>> placed_notes(const piece& p);

// The whole file. A file of format 1 keeps one tempo and has its slower places written out in longer notes, because
// the program reads each track by itself and would take a tempo change for the tracks that follow; a file of format
// 0 has tempo events.
std::vector<std::uint8_t> midi_bytes(const piece& p);

} // namespace examples
