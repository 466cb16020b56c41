// Makes glyphs of the font's art: letters, letters with accents, bold.
// Toolbox, internal.
// Called by text.cpp.
#include "host/toolbox/font.h"

#include "host/toolbox/art.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr int CAPITAL_TOP = 3;    // row of the top of a capital; accents above it begin at row 0
constexpr int SMALL_MARK_TOP = 2; // row where the accent of a small letter begins
constexpr int BELOW_TOP = FONT_ASCENT;
constexpr uint8_t SPACE_ADVANCE = 3;

using glyphs = std::array<font_glyph, 256>;
using cells = std::map<std::string, art_rows>;

// A letter and its accent; the accent's name is completed by the width of the letter.
struct accented {
    uint8_t code;
    char letter;
    const char* mark;
};
constexpr accented ACCENTED[] = {
    {0xC0, 'A', "grave"},      {0xC1, 'A', "acute"},      {0xC2, 'A', "circumflex"},
    {0xC3, 'A', "tilde"},      {0xC4, 'A', "dots"},       {0xC5, 'A', "ring"},
    {0xC7, 'C', "cedilla"},    {0xC8, 'E', "grave"},      {0xC9, 'E', "acute"},
    {0xCA, 'E', "circumflex"}, {0xCB, 'E', "dots"},       {0xCC, 'I', "grave"},
    {0xCD, 'I', "acute"},      {0xCE, 'I', "circumflex"}, {0xCF, 'I', "dots"},
    {0xD1, 'N', "tilde"},      {0xD2, 'O', "grave"},      {0xD3, 'O', "acute"},
    {0xD4, 'O', "circumflex"}, {0xD5, 'O', "tilde"},      {0xD6, 'O', "dots"},
    {0xD9, 'U', "grave"},      {0xDA, 'U', "acute"},      {0xDB, 'U', "circumflex"},
    {0xDC, 'U', "dots"},       {0xDD, 'Y', "acute"},      {0xE0, 'a', "grave"},
    {0xE1, 'a', "acute"},      {0xE2, 'a', "circumflex"}, {0xE3, 'a', "tilde"},
    {0xE4, 'a', "dots"},       {0xE5, 'a', "ring"},       {0xE7, 'c', "cedilla"},
    {0xE8, 'e', "grave"},      {0xE9, 'e', "acute"},      {0xEA, 'e', "circumflex"},
    {0xEB, 'e', "dots"},       {0xEC, 'i', "grave"},      {0xED, 'i', "acute"},
    {0xEE, 'i', "circumflex"}, {0xEF, 'i', "dots"},       {0xF1, 'n', "tilde"},
    {0xF2, 'o', "grave"},      {0xF3, 'o', "acute"},      {0xF4, 'o', "circumflex"},
    {0xF5, 'o', "tilde"},      {0xF6, 'o', "dots"},       {0xF9, 'u', "grave"},
    {0xFA, 'u', "acute"},      {0xFB, 'u', "circumflex"}, {0xFC, 'u', "dots"},
    {0xFD, 'y', "acute"},      {0xFF, 'y', "dots"},
};

uint16_t row_bits(std::string_view row) {
    uint16_t bits = 0;
    for (size_t i = 0; i < row.size() && i < 16; i++) {
        if (row[i] == '#') bits |= static_cast<uint16_t>(0x8000u >> i);
    }
    return bits;
}

font_glyph from_art(const art_rows& art, int top) {
    font_glyph g;
    if (art.empty()) return g;
    g.width = static_cast<uint8_t>(art[0].size());
    g.advance = static_cast<uint8_t>(g.width + 1);
    for (size_t v = 0; v < art.size() && top + static_cast<int>(v) < FONT_HEIGHT; v++) {
        g.rows[static_cast<size_t>(top) + v] = row_bits(art[v]);
    }
    return g;
}

// Letter and mark centred over each other; an odd difference leaves the mark to the right.
font_glyph under_mark(font_glyph letter, const font_glyph& mark) {
    int width = std::max(letter.width, mark.width);
    int letter_at = (width - letter.width) / 2, mark_at = (width - mark.width + 1) / 2;
    for (size_t v = 0; v < FONT_HEIGHT; v++) {
        letter.rows[v] = static_cast<uint16_t>(letter.rows[v] >> letter_at | mark.rows[v] >> mark_at);
    }
    letter.width = static_cast<uint8_t>(width);
    letter.advance = static_cast<uint8_t>(width + 1);
    return letter;
}

font_glyph add_mark(const font_glyph& letter, const accented& a, const cells& marks) {
    std::string name = a.mark;
    if (letter.width % 2 == 0 && marks.contains(name + "4")) name += "4";
    bool small = a.letter >= 'a';
    int top = name == "cedilla" ? BELOW_TOP : small ? SMALL_MARK_TOP : 0;
    font_glyph base = letter;
    if (a.letter == 'i') { // the accent takes the place of the dot
        for (size_t v = 0; v < SMALL_MARK_TOP + 3; v++) base.rows[v] = 0;
    }
    return under_mark(base, from_art(marks.at(name), top));
}

void take_cells(const char* art, glyphs& to, std::array<bool, 256>& has) {
    for (const auto& [name, rows] : art_cells(art)) {
        size_t code = name.size() == 1 ? static_cast<unsigned char>(name[0])
                                       : static_cast<size_t>(std::strtol(name.c_str(), nullptr, 16)) & 0xFF;
        to[code] = from_art(rows, CAPITAL_TOP);
        has[code] = true;
    }
}

font_glyph missing() {
    return from_art({"#####", "#...#", "#...#", "#...#", "#...#", "#...#", "#####"}, CAPITAL_TOP);
}

font_glyph smeared(font_glyph g) {
    for (uint16_t& row : g.rows) row = static_cast<uint16_t>(row | row >> 1);
    if (g.width > 0) {
        g.width++;
        g.advance++;
    }
    return g;
}

struct both_strikes {
    font_strike plain, bold;
    std::array<bool, 256> has{};

    both_strikes() {
        plain.glyphs.fill(missing());
        take_cells(FONT_PLAIN, plain.glyphs, has);
        take_cells(FONT_LATIN, plain.glyphs, has);
        cells marks = art_cells(FONT_MARKS);
        for (const accented& a : ACCENTED) {
            plain.glyphs[a.code] = add_mark(plain.glyphs[static_cast<unsigned char>(a.letter)], a, marks);
            has[a.code] = true;
        }
        set_space(' ');
        set_space(0xA0);
        plain.glyphs[0xAD] = plain.glyphs['-'];
        has[0xAD] = true;
        std::transform(plain.glyphs.begin(), plain.glyphs.end(), bold.glyphs.begin(), smeared);
        std::array<bool, 256> own{};
        take_cells(FONT_BOLD, bold.glyphs, own);
        for (font_strike* s : {&plain, &bold}) {
            for (const font_glyph& g : s->glyphs) s->widest = std::max<int>(s->widest, g.advance);
            list_ink(*s);
        }
    }

    static void list_ink(font_strike& s) {
        for (font_glyph& g : s.glyphs) {
            g.first = static_cast<uint32_t>(s.ink.size());
            for (uint8_t v = 0; v < FONT_HEIGHT; v++) {
                for (uint8_t h = 0; h < 16; h++) {
                    if (g.rows[v] & (0x8000u >> h)) s.ink.push_back({v, h});
                }
            }
            g.pixels = static_cast<uint16_t>(s.ink.size() - g.first);
        }
    }

    void set_space(size_t code) {
        plain.glyphs[code] = {};
        plain.glyphs[code].advance = SPACE_ADVANCE;
        has[code] = true;
    }
};

const both_strikes& strikes() {
    static const both_strikes made;
    return made;
}

} // namespace

const font_strike& font_get(bool bold) {
    return bold ? strikes().bold : strikes().plain;
}

bool font_has(int code) {
    return code >= 0 && code < 256 && strikes().has[static_cast<size_t>(code)];
}
