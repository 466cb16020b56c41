// io/embedding.h: the lines by which an instance saves itself, into its patcher and into its own documents.
// Layer: io. Called by the host, and by the messages "write" and "writekel".
#pragma once

#include <cstdint>

#include "core/instance.h"

// The kinds of file that the object reads and writes.
constexpr file_type MIDI_FILE = host_type("Midi");
constexpr file_type TEXT_FILE = host_type("TEXT");   // a document as text
constexpr file_type BINARY_FILE = host_type("kelb"); // a document in binary form

// "save": appends the lines that build the instance again: its class and name, its parameters' descriptions, its events.
// [main]
void brisolan_save(brisolan* x, host_atombuf* into);

// "pstate": the same without the events, and which parameter was chosen last for the inspector. [main]
void brisolan_pstate(brisolan* x, host_atombuf* into);

// "saveto": writes the document to a file, in binary form when the window's save_format is 1. The host's code, which
// nobody but the host has reported. [main]
host_err brisolan_saveto(brisolan* x, const char* name, std::int16_t path);

// The same in the form that the type tells. [main]
host_err brisolan_kelfile(brisolan* x, const char* name, std::int16_t path, file_type type);

// "writekel": a document; as text in the default folder when there is a name, else as the user chooses. [main]
host_err brisolan_writekel(brisolan* x, symbol* name);
