// transport/input.h: what arrives at the inlets, and where it goes by mode.
// Layer: transport. Called by the host for numbers and lists from cords or the user.
#pragma once

#include <cstdint>

#include "core/instance.h"

// An integer at inlet 1 to 7 becomes the current value of Pitch to X2, unchecked. Ignored while restoring. [scheduler]
void brisolan_in1(brisolan* x, std::int32_t value);
void brisolan_in2(brisolan* x, std::int32_t value);
void brisolan_in3(brisolan* x, std::int32_t value);
void brisolan_in4(brisolan* x, std::int32_t value);
void brisolan_in5(brisolan* x, std::int32_t value);
void brisolan_in6(brisolan* x, std::int32_t value);
void brisolan_in7(brisolan* x, std::int32_t value);

// "list": integers at positions 7 down to 1 become current values, one at position 0 is then an integer at the left
// inlet. Ignored while restoring. [scheduler]
void brisolan_list(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv);

// An integer at the left inlet: while recording, milliseconds since the last one, and a note; while following, a note of
// the performer; else the n-th event is put out, a negative n counting as 0. [scheduler]
void brisolan_int(brisolan* x, std::int32_t value);

// A float at the left inlet: truncated toward zero, then an integer. Beyond 32 bits it is pinned. [scheduler]
void brisolan_float(brisolan* x, float value);
