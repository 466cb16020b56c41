// Reads .notes files, the sources of the example pieces; their notation is described in examples/README.md.
// Developer tool that makes the example files; no part of the program.
// Called by make_examples and by the tests.
#pragma once

#include "examples/src/piece.h"
#include "examples/src/written_note.h"

#include <filesystem>
#include <string>

namespace examples {

// The piece in `text`. `name` is the file as errors name it; a performance looks for its score in `folder`.
// Every bar is full, bars are counted from 1 without a gap, and all voices have the same number of them;
// else throws notes_error, "FILE:LINE: what is wrong".
piece read_notes(const std::string& text, const std::string& name, const std::filesystem::path& folder);

// The same from a file; an unreadable file throws notes_error too.
piece read_notes_file(const std::filesystem::path& file);

} // namespace examples
