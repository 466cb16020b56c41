// transport/record.h: building a sequence from what arrives at the inlets.
// Layer: transport. Called by messages at the left inlet.
#pragma once

#include <cstdint>

#include "core/instance.h"

// "record": clears, and records from time 0. [scheduler]
void brisolan_record(brisolan* x);

// "restore": clears, and takes the saved events that follow as recorded input. [scheduler]
void brisolan_restore(brisolan* x);

// One input while recording, `delta` milliseconds (below 0 counts as 0) after the last: the current values make a
// note-on that is appended, or a note-off that fixes the duration of a held note. Ignored while restoring. [scheduler]
void brisolan_recordinput(brisolan* x, std::int32_t delta);
