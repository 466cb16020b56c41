// view/format.cpp: values as text, numbers or note names.
// Layer: view.
// Called by bars, legend, tracking row and the host's number field.
#include "view/format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "core/class.h"
#include "view/draw.h"
#include "view/geometry.h"

std::int16_t g_asmidi = 0;

namespace {

constexpr std::int32_t OCTAVE = 12;
constexpr std::int32_t NOTES = 128;
// Widths of the characters in the plain face. The editor's font has one strike, so they are measured once.
const std::array<std::uint8_t, 256>* plain_widths() {
    static std::array<std::uint8_t, 256> widths;
    static bool measured = false;
    if (measured) return &widths;
    GrafPtr port = nullptr;
    GetPort(&port);
    if (!port) return nullptr;
    t_textface(FACE_PLAIN);
    for (std::size_t c = 0; c < widths.size(); ++c)
        widths[c] = static_cast<std::uint8_t>(t_charwidth(static_cast<int>(c)));
    measured = true;
    return &widths;
}

} // namespace

int brisolan_labeltext(bool as_note, std::int32_t value, char* out) {
    if (as_note) {
        cnote2str(value, out);
        return static_cast<int>(std::strlen(out));
    }
    char* end = std::to_chars(out, out + VALUE_SIZE - 1, value).ptr;
    *end = '\0';
    return static_cast<int>(end - out);
}

std::int32_t brisolan_labelwidth(bool as_note, std::int32_t value) {
    const std::array<std::uint8_t, 256>* widths = plain_widths();
    if (!widths) return 0;
    char text[VALUE_SIZE];
    const int length = brisolan_labeltext(as_note, value, text);
    std::int32_t width = 0;
    for (int i = 0; i < length; ++i) width += (*widths)[static_cast<unsigned char>(text[i])];
    return width;
}

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
    brisolan_labeltext(x->params[static_cast<std::size_t>(index)].notenames != 0, value, text);
    return text;
}

void brisolan_numdraw(std::int32_t value, char* out) {
    brisolan_labeltext(g_asmidi != 0, value, out);
}

std::int32_t brisolan_nwidth(const brisolan* x, const event* e) {
    const std::int32_t length = brisolan_barlength(x, e);
    if (x->labelparam < 0) return length;
    const bool as_note = x->params[static_cast<std::size_t>(x->labelparam)].notenames != 0;
    return std::max(length, brisolan_labelwidth(as_note, event_param(*e, x->labelparam)) + LABEL_MARGIN);
}
