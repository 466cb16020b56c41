// io/document.h: reading and writing files: which kind, where, and the reading of the object's own documents.
// Layer: io. Called by the messages "read", "import" and "write".
#pragma once

#include <cstdint>

#include "core/instance.h"

// "read" and "import": an optional name and an optional time base for MIDI files; without a name the user is asked.
// Defers brisolan_doimport with the same atoms to the back of the low-priority queue. [both]
void brisolan_import(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv);
void brisolan_doimport(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv); // [main]

// Replaces the sequence and the parameters' descriptions by those of a document: its lines are evaluated, and what they
// build is this instance. A file that cannot be read leaves everything as it was, without a word; one of another class
// with one console line. [main]
void brisolan_importkel(brisolan* x, const char* name, std::int16_t path, bool binary);

// "write": with a name a MIDI file in the default folder, else as the user chooses. Defers brisolan_dowrite to the front
// of the low-priority queue. [both]
void brisolan_write(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv);
void brisolan_dowrite(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv); // [main]
