// Text: measures and draws Latin-1 strings in the current port.
// Toolbox: a drawing verb of host/toolbox.h.
// Called by the view and by the host's number field.
#include "host/toolbox/font.h"
#include "host/toolbox/pin.h"
#include "host/toolbox/platform.h"
#include "host/toolbox/port.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>

namespace {

// The system font, as set by LMSetSysFontFam and LMSetSysFontSize; survives ports.
struct {
    int16_t family = 0, size = 12;
} system_font;

const font_strike& strike_of(const GrafPort& port) {
    return font_get(port.face & kFaceBold);
}

int width_of(const font_strike& strike, const unsigned char* text, int count) {
    int width = 0;
    for (int i = 0; i < count; i++) width += strike.glyphs[text[i]].advance;
    return width;
}

// The pen transfer mode that does to the pixels of a letter what the text mode asks for.
int pen_mode_of(int text_mode) {
    switch (text_mode) {
    case srcXor: return patXor;
    case srcBic: return patBic;
    case adMin: return adMin;
    default: return patCopy;
    }
}

// One row of ink through the span routine: the slow way, for clips that cut a glyph and for modes beyond copying.
void row_through_clip(GrafPort& port, int h, int v, uint32_t bits, const raster_ink& ink) {
    while (bits) {
        int skip = std::countl_zero(bits);
        int run = std::countl_one(bits << skip);
        raster_rect(port, {pin16(h + skip), pin16(v), pin16(h + skip + run), pin16(v + 1)}, ink);
        bits = skip + run >= 32 ? 0 : bits << (skip + run) >> (skip + run);
    }
}

void glyph_through_clip(GrafPort& port, int h, int top, const font_glyph& g, const raster_ink& ink) {
    for (size_t v = 0; v < FONT_HEIGHT; v++) {
        row_through_clip(port, h, top + static_cast<int>(v), static_cast<uint32_t>(g.rows[v]) << 16, ink);
    }
}

// The whole text lies inside a rectangular clip and its ink replaces what is below.
void text_inside(GrafPort& port, const font_strike& strike, const unsigned char* text, int count, int h,
                 int top, uint32_t colour) {
    std::array<uint32_t*, FONT_HEIGHT> rows;
    for (int v = 0; v < FONT_HEIGHT; v++)
        rows[static_cast<size_t>(v)] = port.pixels.data() + static_cast<ptrdiff_t>(top + v) * port.width + h;
    ptrdiff_t at = 0;
    for (int i = 0; i < count; i++) {
        raster_countspans(FONT_HEIGHT);
        const font_glyph& g = strike.glyphs[text[i]];
        const font_pixel* ink = strike.ink.data() + g.first;
        for (int p = 0; p < g.pixels; p++) rows[ink[p].row][at + ink[p].column] = colour;
        at += g.advance;
    }
}

bool holds_box(const GrafPort& port, int left, int top, int right, int bottom) {
    const toolbox_region& clip = port.drawable;
    return clip.rectangular() && left >= clip.bounds.left && right <= clip.bounds.right &&
           top >= clip.bounds.top && bottom <= clip.bounds.bottom;
}

// Columns from h on where a descender comes down to the underline or beside it; the line is left out there.
bool near_descender(const font_glyph& g, int column) {
    unsigned ink = 0;
    for (size_t v = FONT_ASCENT; v < FONT_HEIGHT; v++) ink |= g.rows[v];
    unsigned around = ink << 16;
    return ((around << 1 | around | around >> 1) & (0x80000000u >> column)) != 0;
}

void underline(GrafPort& port, const font_strike& strike, const unsigned char* text, int count, int h,
               int baseline, const raster_ink& ink) {
    for (int i = 0; i < count; i++) {
        const font_glyph& g = strike.glyphs[text[i]];
        for (int column = 0; column < g.advance; column++, h++) {
            if (near_descender(g, column)) continue;
            raster_rect(port, {pin16(h), pin16(baseline + 1), pin16(h + 1), pin16(baseline + 2)}, ink);
        }
    }
}

void draw(GrafPort& port, const unsigned char* text, int count) {
    const font_strike& strike = strike_of(port);
    int h = port.pen.h, baseline = port.pen.v, top = baseline - FONT_ASCENT;
    int width = width_of(strike, text, count);
    raster_ink ink = raster_plain(port.pen_ink.fore);
    ink.back = port.pen_ink.back;
    ink.mode = pen_mode_of(port.text_mode);
    bool ored = port.text_mode == srcOr;
    port.pen.h = pin16(h + width);
    if (ink.mode == patCopy && !ored) { // srcCopy brings its background along
        Rect box{pin16(h), pin16(top), pin16(h + width), pin16(top + FONT_HEIGHT)};
        raster_rect(port, box, raster_plain(ink.back));
    }
    if (ink.mode == patCopy && holds_box(port, h, top, h + width, top + FONT_HEIGHT)) {
        port.changed = true;
        text_inside(port, strike, text, count, h, top, ink.fore);
    } else {
        int at = h;
        for (int i = 0; i < count; i++) {
            const font_glyph& g = strike.glyphs[text[i]];
            glyph_through_clip(port, at, top, g, ink);
            at += g.advance;
        }
    }
    if (port.face & kFaceUnderline) underline(port, strike, text, count, h, baseline, ink);
}

const unsigned char* bytes(const void* text, int first) {
    return static_cast<const unsigned char*>(text) + first;
}

} // namespace

void text_reset() {
    system_font = {};
}

void TextFont(int font) {
    if (toolbox_thePort) toolbox_thePort->font = font;
}

void TextFace(int face) {
    if (toolbox_thePort) toolbox_thePort->face = face;
}

void TextSize(int size) {
    if (toolbox_thePort) toolbox_thePort->size = size;
}

void TextMode(int mode) {
    if (toolbox_thePort) toolbox_thePort->text_mode = mode;
}

int16_t CharWidth(int character) {
    if (!toolbox_thePort) return 0;
    return strike_of(*toolbox_thePort).glyphs[static_cast<unsigned char>(character)].advance;
}

int16_t StringWidth(ConstStringPtr string) {
    return TextWidth(string, 1, string[0]);
}

int16_t TextWidth(const void* text, int first, int count) {
    if (!toolbox_thePort) return 0;
    return pin16(width_of(strike_of(*toolbox_thePort), bytes(text, first), count));
}

void DrawString(ConstStringPtr string) {
    DrawText(string, 1, string[0]);
}

void DrawText(const void* text, int first, int count) {
    if (toolbox_thePort) draw(*toolbox_thePort, bytes(text, first), count);
}

void GetFontInfo(FontInfo* info) {
    bool bold = toolbox_thePort && (toolbox_thePort->face & kFaceBold);
    *info = {FONT_ASCENT, FONT_DESCENT, pin16(font_get(bold).widest), 0};
}

int16_t LMGetSysFontFam() {
    return system_font.family;
}
int16_t LMGetSysFontSize() {
    return system_font.size;
}
void LMSetSysFontFam(int16_t family) {
    system_font.family = family;
}
void LMSetSysFontSize(int16_t size) {
    system_font.size = size;
}
// The strikes are made once and serve every font, so there is no measure to forget.
void LMSetLastSPExtra(int32_t) {}
