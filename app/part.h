// app/part.h: which notes of a score are the performer's when it follows: those on channel 1.
// Layer: program. Called by `brisolan follow` and the editor.
#pragma once

#include <cstdint>

#include "core/instance.h"

// Whether any note is the performer's. [main]
bool has_part(const brisolan* x);

// Puts the notes of a track on channel 1 and every other note off it. False, and nothing changed but channels, when the
// track has no notes. [main]
bool give_part(brisolan* x, std::int32_t track);
