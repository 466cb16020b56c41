// io/midiwrite.h: writing the sequence as a Standard MIDI File, format 0 or 1.
// Layer: io. Called by the messages "export" and "write".
#pragma once

#include <cstdint>

#include "core/instance.h"

// Bytes written into the current track behind its header. Written by the writer and by writevar; survives nothing.
extern std::int32_t wbytes;

// "export": an optional name, an optional time base (0 metrical, else time code) and optionally 0 for one track. Defers
// brisolan_doexport with the same atoms to the front of the low-priority queue. [both]
void brisolan_export(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv);
void brisolan_doexport(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv); // [main]

// How many different track numbers the events use, and the highest of them; both 0 for an empty sequence. A Track below
// 1 counts as 1, one above the Track parameter's maximum as that. [main]
void brisolan_counttracks(const brisolan* x, std::int32_t* count, std::int32_t* highest);

// Writes the file. multitrack 0: format 0; else format 1, a chunk for each track. timecode 0: 96 ticks a quarter note at
// 120 beats a minute; else two ticks a millisecond. An open that fails gives one console line and nothing else happens;
// otherwise the object is stopped. [main]
void brisolan_exportfile(brisolan* x, const char* name, std::int16_t path, std::int32_t multitrack,
                         std::int32_t timecode);

// Writes the low 28 bits of a value as a variable-length quantity to the open file and counts its bytes. [main]
void writevar(std::int32_t value);
