// view/format.cpp: values as text, numbers or note names.
// Layer: view.
// Called by bars, legend, tracking row and the host's number field.
#include "view/format.h"

#include <algorithm>
#include <cstdio>

#include "core/class.h"
#include "view/draw.h"
#include "view/geometry.h"

std::int16_t g_asmidi = 0;

namespace {

constexpr std::int32_t OCTAVE = 12;
constexpr std::int32_t NOTES = 128;
// Pixels around a label: a bar that shows one is so much wider than its text.
constexpr std::int32_t LABEL_MARGIN = 6;

void format_value(bool as_note, std::int32_t value, char* out) {
    if (as_note)
        cnote2str(value, out);
    else
        std::snprintf(out, VALUE_SIZE, "%ld", static_cast<long>(value));
}

} // namespace

void cnote2str(std::int32_t note, char* out) {
    if (note < 0 || note >= NOTES) {
        std::snprintf(out, VALUE_SIZE, "%s", note < 0 ? "-" : "+");
        return;
    }
    const int octave = note / OCTAVE - 2; // note 0 begins octave -2
    std::snprintf(out, VALUE_SIZE, "%s%d", notes[static_cast<std::size_t>(note % OCTAVE)], octave);
}

const char* brisolan_midistr(const brisolan* x, int index, std::int32_t value) {
    static char text[VALUE_SIZE];
    format_value(x->params[static_cast<std::size_t>(index)].notenames != 0, value, text);
    return text;
}

void brisolan_numdraw(std::int32_t value, char* out) {
    format_value(g_asmidi != 0, value, out);
}

std::int32_t brisolan_nwidth(const brisolan* x, const event* e) {
    const std::int32_t length = brisolan_barlength(x, e);
    if (x->labelparam < 0) return length;
    t_textface(FACE_PLAIN);
    const char* label = brisolan_midistr(x, x->labelparam, event_param(*e, x->labelparam));
    return std::max(length, t_stringwidth(label) + LABEL_MARGIN);
}
