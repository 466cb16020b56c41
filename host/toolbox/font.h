// The one font of the toolbox: glyphs of all of Latin-1, plain and bold.
// Toolbox, internal: leans on nothing.
// Called by text.cpp and by the tests of the art.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

constexpr int FONT_ASCENT = 10; // two rows of accent, one between, seven of capital
constexpr int FONT_DESCENT = 2;
constexpr int FONT_HEIGHT = FONT_ASCENT + FONT_DESCENT;

// One pixel of a glyph's ink.
struct font_pixel {
    uint8_t row, column;
};

// Ink of row v in the bits of rows[v], the leftmost column in the high bit. No glyph is wider than its advance. The same
// ink pixel by pixel: `pixels` of those of the strike, from `first` on.
struct font_glyph {
    uint8_t width = 0;
    uint8_t advance = 0;
    std::array<uint16_t, FONT_HEIGHT> rows{};
    uint16_t pixels = 0;
    uint32_t first = 0;
};

struct font_strike {
    std::array<font_glyph, 256> glyphs;
    std::vector<font_pixel> ink; // glyph after glyph
    int widest = 0;              // the greatest advance
};

// The strike of one weight, made from the art at first use and kept. A code without a character (controls, 127 to 159) is a
// hollow box. [main]
const font_strike& font_get(bool bold);
// Whether the art has a glyph for this code. [main]
bool font_has(int code);

// The art, in font_art.cpp.
extern const char* const FONT_PLAIN;
extern const char* const FONT_LATIN;
extern const char* const FONT_BOLD;
extern const char* const FONT_MARKS;
