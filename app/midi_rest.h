// app/midi_rest.h: what a MIDI file holds beside its notes, which a score does not take from it.
// Layer: program. Called by the editor's documents.
#pragma once

#include <span>
#include <string>
#include <vector>

// What these bytes of a MIDI file hold beside notes, each kind once and in a person's words ("program changes", "tempo").
// The tempo of a file that a score was saved to, 120 beats a minute from the beginning on, is none. Bytes that are cut off
// or no MIDI file are read as far as they go. [both]
std::vector<std::string> midi_rest(std::span<const unsigned char> bytes);

// The same of a file; empty where it cannot be read. [main]
std::vector<std::string> midi_rest_of(const std::string& file);
