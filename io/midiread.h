// io/midiread.h: reading Standard MIDI Files, formats 0 and 1, into a sequence.
// Layer: io. Called by the reading of files.
#pragma once

#include <cstdint>

#include "core/instance.h"

// Replaces the sequence with the notes of the MIDI file that the buffered layer has open for reading, and closes it.
// import_option 0: times by the file's division and tempo; else half the tick count is the time in milliseconds. `name`
// is for the console. A file that is refused before its first chunk leaves the sequence as it was; one that turns out
// broken later leaves the notes read so far. The object is stopped in every case. [main]
void brisolan_importmidi(brisolan* x, const char* name, std::int32_t import_option);

// How the last import ended. The reader itself passes most of it over in silence; a program that wants to tell the user of
// a file that is cut off looks here. Written by brisolan_importmidi, read by the program's commands.
enum class midi_ending {
    whole, // with an End of Track, or before the next chunk
    cut,   // inside a chunk, or in front of the first though the header tells of some
    funky, // at a delta below 0, which the end of the file inside a delta also gives
    bad    // at what the console line "bad midi file" or "not supported" told
};
extern midi_ending g_midi_ending;

// Reads a variable-length quantity from the open file; one longer than 32 bits keeps its low 32. -1 at the end of the
// file, which *cut then tells apart from a quantity of that value. [main]
std::int32_t readvar(bool* cut);
