// app/saved_form.h: what a score holds, as one number, so that two states can be told apart.
// Layer: program. Called by the editor's documents.
#pragma once

#include <cstdint>

#include "core/instance.h"

// A digest of everything that any kind of file takes from the score: its events and its parameters' descriptions. Two
// states of one digest are saved alike; two of different ones may be. Walks the events once. [main]
std::uint64_t score_digest(const brisolan* x);

// The same of the events and of the parameters' names and ranges, without how they are shown; of these names and ranges
// alone. [main]
std::uint64_t contents_digest(const brisolan* x);
std::uint64_t descriptions_digest(const brisolan* x);
