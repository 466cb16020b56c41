// view/format.h: values as text, numbers or note names, and how wide a bar is with its label.
// Layer: view. Called by bars, legend, tracking row and the host's number field.
#pragma once

#include <cstdint>

#include "core/instance.h"

// Room for any value's text with its null.
constexpr int VALUE_SIZE = 12;

// While set, brisolan_numdraw writes note names: `notenames` of the parameter that the number field is bound to. Written
// by the legend press, read by the number field; main level.
extern std::int16_t g_asmidi;

// The note name with octave of 0 to 127 (0 is C-2, 60 is C3), "-" below, "+" above. `out` holds VALUE_SIZE. [main]
void cnote2str(std::int32_t note, char* out);
// The value of parameter `index` as text, by its `notenames`. The text is overwritten by the next call. [main]
const char* brisolan_midistr(const brisolan* x, int index, std::int32_t value);
// The number field's text of a value, by g_asmidi. `out` holds VALUE_SIZE. [main]
void brisolan_numdraw(std::int32_t value, char* out);
// Pixels around a label: a bar that counts it is so much wider than its text.
constexpr std::int32_t LABEL_MARGIN = 6;

// The label of a value, as a note name or a number, into `out`, which holds VALUE_SIZE; gives its length. Its width in
// pixels in the plain face, measured in the window's port or, before that was ever current, 0. [main]
int brisolan_labeltext(bool as_note, std::int32_t value, char* out);
std::int32_t brisolan_labelwidth(bool as_note, std::int32_t value);
// The same for the values from 0 to before COMMON_LABELS, one after the other; null before a port was current. [main]
constexpr std::int32_t COMMON_LABELS = 128;
const std::uint8_t* brisolan_commonwidths(bool as_note);
// Width in pixels of the event's bar: its length, or while there is a label parameter its label with LABEL_MARGIN when
// that is more, whether or not the zoom lets labels be drawn. [main]
std::int32_t brisolan_nwidth(const brisolan* x, const event* e);
