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
constexpr std::int32_t NOTES = COMMON_LABELS;
// Widths in the plain face: of the characters, and of the labels that are met most.
struct label_widths {
    std::array<std::uint8_t, 256> character{};
    std::array<std::array<std::uint8_t, NOTES>, 2> common{}; // as numbers, as note names

    label_widths() {
        t_textface(FACE_PLAIN);
        for (std::size_t c = 0; c < character.size(); ++c)
            character[c] = static_cast<std::uint8_t>(t_charwidth(static_cast<int>(c)));
        for (std::int32_t value = 0; value < NOTES; ++value) {
            for (const bool as_note : {false, true})
                common[as_note ? 1 : 0][static_cast<std::size_t>(value)] =
                    static_cast<std::uint8_t>(of(as_note, value));
        }
    }
    std::int32_t of(bool as_note, std::int32_t value) const {
        char text[VALUE_SIZE];
        const int length = brisolan_labeltext(as_note, value, text);
        std::int32_t width = 0;
        for (int i = 0; i < length; ++i) width += character[static_cast<unsigned char>(text[i])];
        return width;
    }
};

// The editor's font has one strike, so it is measured once; null before a port was current.
const label_widths* measured_widths() {
    static const label_widths* measured = nullptr;
    if (measured) return measured;
    GrafPtr port = nullptr;
    GetPort(&port);
    if (!port) return nullptr;
    static const label_widths widths;
    measured = &widths;
    return measured;
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
    const label_widths* widths = measured_widths();
    if (!widths) return 0;
    if (value >= 0 && value < NOTES) return widths->common[as_note ? 1 : 0][static_cast<std::size_t>(value)];
    return widths->of(as_note, value);
}

const std::uint8_t* brisolan_commonwidths(bool as_note) {
    const label_widths* widths = measured_widths();
    return widths ? widths->common[as_note ? 1 : 0].data() : nullptr;
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
