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

// Reads a variable-length quantity from the open file; one longer than 32 bits keeps its low 32. -1 at the end of the
// file, which *cut then tells apart from a quantity of that value. [main]
std::int32_t readvar(bool* cut);
