// Text: measures, places, faces and modes; and the font's art.
// Tests of host/toolbox/text.cpp and font.cpp.
// Run by ctest.
#include "host/toolbox/font.h"

#include "tests/toolbox/canvas.h"

namespace {

class text_test : public canvas_test {
protected:
    text_test() {
        open(60, 20);
        TextFont(3);
        TextSize(9);
    }
};

unsigned ink_of(const font_glyph& g) {
    unsigned ink = 0;
    for (uint16_t row : g.rows) ink |= row;
    return ink;
}

} // namespace

TEST_F(text_test, draws_with_the_left_end_of_its_baseline_at_the_pen) {
    open(12, 12);
    draw_string("1g", 1, 10);
    EXPECT_EQ(art(), "............\n"
                     "............\n"
                     "............\n"
                     "...#........\n"
                     "..##........\n"
                     "...#....###.\n"
                     "...#...#..#.\n"
                     "...#...#..#.\n"
                     "...#...#..#.\n"
                     "..###...###.\n"
                     "..........#.\n"
                     "........##..\n");
    Point pen;
    GetPen(&pen);
    EXPECT_EQ(pen.h, 1 + string_width("1g"));
    EXPECT_EQ(pen.v, 10);
}

TEST_F(text_test, a_string_is_as_wide_as_its_characters) {
    for (int face : {kFacePlain, kFaceBold, kFaceUnderline}) {
        TextFace(face);
        int sum = 0;
        for (char c : std::string("A#-2 Pitch 127")) sum += CharWidth(c);
        EXPECT_EQ(string_width("A#-2 Pitch 127"), sum);
    }
    EXPECT_EQ(string_width(""), 0);
}

TEST_F(text_test, underline_is_as_wide_as_plain_and_bold_digits_are_as_wide_as_plain_ones) {
    int plain = string_width("Time 12"), digits = string_width("1234567890");
    TextFace(kFaceUnderline);
    EXPECT_EQ(string_width("Time 12"), plain);
    TextFace(kFaceBold);
    EXPECT_GT(string_width("Time"), string_width("") + plain - string_width(" 12"));
    EXPECT_EQ(string_width("1234567890"), digits);
}

TEST_F(text_test, takes_all_two_hundred_and_fifty_five_characters) {
    std::string longest(255, 'i');
    EXPECT_EQ(string_width(longest), 255 * CharWidth('i'));
    draw_string(longest, -100, 10);
    EXPECT_GT(count(BLACK), 0);
}

TEST_F(text_test, measures_parts_of_a_text) {
    EXPECT_EQ(TextWidth("xxABCyy", 2, 3), string_width("ABC"));
    open(20, 14);
    MoveTo(0, 10);
    DrawText("xxABCyy", 2, 3);
    std::string part = art();
    open(20, 14);
    draw_string("ABC", 0, 10);
    EXPECT_EQ(art(), part);
}

TEST_F(text_test, underline_runs_below_the_baseline_and_stops_at_descenders) {
    open(24, 14);
    TextFace(kFaceUnderline);
    draw_string("age", 1, 10);
    std::string row = art().substr(11 * 25, 24);
    int width = string_width("age");
    EXPECT_EQ(row.substr(0, 6), ".#####") << "one row of white, then the line, under the a and its gap";
    EXPECT_EQ(row[static_cast<size_t>(width)], '#');
    EXPECT_EQ(row[static_cast<size_t>(width + 1)], '.');
    EXPECT_EQ(row.substr(6, 5), ".##..") << "only the g's own tail";
}

TEST_F(text_test, bold_is_heavier_than_plain) {
    draw_string("Vel 64", 2, 14);
    int plain = count(BLACK);
    open(60, 20);
    TextFace(kFaceBold);
    draw_string("Vel 64", 2, 14);
    EXPECT_GT(count(BLACK), plain * 5 / 4);
}

TEST_F(text_test, or_leaves_the_ground_copy_brings_its_own_exclusive_or_undoes_itself) {
    foreground(0xDDE2EA);
    Rect all = rect(0, 0, 60, 20);
    PaintRect(&all);
    foreground(0);
    TextMode(srcOr);
    draw_string("64", 2, 14);
    EXPECT_EQ(count(WHITE), 0);
    TextMode(srcCopy);
    draw_string("64", 2, 14);
    EXPECT_EQ(count(WHITE) + count(BLACK), string_width("64") * FONT_HEIGHT);
    std::vector<uint32_t> before(toolbox_port_pixels(port), toolbox_port_pixels(port) + 60 * 20);
    TextMode(srcXor);
    draw_string("17", 20, 14);
    EXPECT_NE(at(21, 8), 0u);
    draw_string("17", 20, 14);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), toolbox_port_pixels(port)));
}

TEST_F(text_test, a_clip_cuts_through_glyphs) {
    draw_string("Wq", 2, 14);
    std::vector<uint32_t> whole(toolbox_port_pixels(port), toolbox_port_pixels(port) + 60 * 20);
    open(60, 20);
    Rect part = rect(4, 9, 11, 15);
    ClipRect(&part);
    draw_string("Wq", 2, 14);
    for (int v = 0; v < 20; v++) {
        for (int h = 0; h < 60; h++) {
            uint32_t wanted = PtInRect(point(h, v), &part) ? whole[static_cast<size_t>(v * 60 + h)] : WHITE;
            EXPECT_EQ(at(h, v), wanted);
        }
    }
}

TEST_F(text_test, info_tells_the_strike) {
    FontInfo info{};
    GetFontInfo(&info);
    EXPECT_EQ(info.ascent, 10);
    EXPECT_EQ(info.descent, 2);
    EXPECT_GE(info.widMax, CharWidth('W'));
}

TEST_F(text_test, the_system_font_is_exchanged_and_kept) {
    int16_t family = LMGetSysFontFam(), size = LMGetSysFontSize();
    LMSetSysFontFam(3);
    LMSetSysFontSize(9);
    LMSetLastSPExtra(-1);
    EXPECT_EQ(LMGetSysFontFam(), 3);
    EXPECT_EQ(LMGetSysFontSize(), 9);
    LMSetSysFontFam(family);
    LMSetSysFontSize(size);
}

TEST(font, has_all_of_printable_latin_one) {
    for (int code = 0; code < 256; code++) {
        bool printable = (code >= 0x20 && code <= 0x7E) || code >= 0xA0;
        EXPECT_EQ(font_has(code), printable) << std::hex << code;
    }
}

TEST(font, every_glyph_has_ink_inside_its_box_and_spaces_have_none) {
    for (bool bold : {false, true}) {
        for (size_t code = 0x20; code < 256; code++) {
            const font_glyph& g = font_get(bold).glyphs[code];
            bool space = code == 0x20 || code == 0xA0;
            EXPECT_EQ(ink_of(g) == 0, space) << std::hex << code;
            EXPECT_EQ(ink_of(g) & (0xFFFFu >> g.width), 0u) << "cut at the right: " << std::hex << code;
            EXPECT_EQ(g.advance, space ? 3 : g.width + 1) << std::hex << code;
            if (space || (code >= '0' && code <= '9')) continue; // digits share one width
            EXPECT_TRUE(ink_of(g) & 0x8000) << "spacing is even from the left: " << std::hex << code;
            EXPECT_TRUE(ink_of(g) & (0x10000u >> g.width)) << "and to the right: " << std::hex << code;
        }
    }
}

TEST(font, no_two_characters_look_alike_but_those_that_may) {
    const auto& glyphs = font_get(false).glyphs;
    for (size_t a = 0x21; a < 256; a++) {
        for (size_t b = a + 1; b < 256; b++) {
            bool both = font_has(static_cast<int>(a)) && font_has(static_cast<int>(b));
            bool hyphens = a == '-' && b == 0xAD;
            if (!both || hyphens || b == 0xA0) continue;
            EXPECT_FALSE(glyphs[a].rows == glyphs[b].rows) << std::hex << a << " and " << b;
        }
    }
}

TEST(font, digits_are_of_one_width_in_both_weights) {
    for (bool bold : {false, true}) {
        for (size_t c = '0'; c <= '9'; c++) EXPECT_EQ(font_get(bold).glyphs[c].advance, 6);
    }
}

TEST(font, capitals_stand_on_the_baseline_and_accents_fit_above_them) {
    for (size_t c = 'A'; c <= 'Z'; c++) {
        const auto& rows = font_get(false).glyphs[c].rows;
        EXPECT_NE(rows[FONT_ASCENT - 1], 0) << static_cast<char>(c);
        EXPECT_NE(rows[3], 0) << static_cast<char>(c);
        EXPECT_EQ(rows[2], 0) << static_cast<char>(c);
        EXPECT_TRUE(c == 'Q' || rows[FONT_ASCENT] == 0) << static_cast<char>(c);
    }
    for (size_t c : {0xC1, 0xC9, 0xD6, 0xDC, 0xC5}) {
        const auto& rows = font_get(false).glyphs[c].rows;
        EXPECT_NE(rows[0] | rows[1], 0) << std::hex << c;
    }
}

TEST(font, descenders_are_whole) {
    for (char c : {'g', 'j', 'p', 'q', 'y'}) {
        const auto& rows = font_get(false).glyphs[static_cast<unsigned char>(c)].rows;
        EXPECT_NE(rows[FONT_HEIGHT - 1], 0) << c;
    }
}

TEST(font, an_accented_letter_holds_its_letter) {
    const auto& glyphs = font_get(false).glyphs;
    for (auto [accented, letter] :
         {std::pair{0xE9, 'e'}, {0xE4, 'a'}, {0xF1, 'n'}, {0xC9, 'E'}, {0xDC, 'U'}}) {
        const auto& whole = glyphs[static_cast<size_t>(accented)].rows;
        const auto& base = glyphs[static_cast<unsigned char>(letter)].rows;
        for (size_t v = 0; v < FONT_HEIGHT; v++)
            EXPECT_EQ(whole[v] & base[v], base[v]) << letter << " row " << v;
    }
}
