// app/saved_form.h: what a score's file would hold, as one number, so that two states can be told apart.
// Layer: program. Called by the editor's documents.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/instance.h"

// A digest of everything that any kind of file takes from the score: its events and its parameters' descriptions. Two
// states of one digest are saved alike; two of different ones may be. Walks the events once. [main]
std::uint64_t score_digest(const brisolan* x);

// A digest of the very bytes that a MIDI file of the score would have; 0 when it cannot be written even to the folder for
// temporary files. `console` as for write_from. [main]
std::uint64_t midi_digest(std::function<void(const std::string&)>& console, brisolan* x);
