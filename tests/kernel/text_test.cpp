// tests/kernel/text_test.cpp: texts on their way to the toolbox.
// Test layer.
#include "host/kel.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string pascal(const std::string& text) {
    unsigned char to[256];
    host_ctopcpy(to, text.c_str());
    return {reinterpret_cast<char*>(to) + 1, to[0]};
}

TEST(host_text, goes_over_as_it_is_where_it_is_ascii) {
    EXPECT_EQ(pascal(""), "");
    EXPECT_EQ(pascal("abc"), "abc");
}

TEST(host_text, becomes_latin_1_where_that_has_the_character) {
    EXPECT_EQ(pascal("Tonh\xC3\xB6he"), "Tonh\xF6he");
    EXPECT_EQ(pascal("\xC2\xA3"), "\xA3");
}

TEST(host_text, becomes_a_question_mark_where_the_font_has_none) {
    EXPECT_EQ(pascal("a\xE2\x82\xAC z"), "a? z"); // euro
    EXPECT_EQ(pascal("\xF0\x9F\x8E\xB5!"), "?!"); // a note
}

TEST(host_text, keeps_bytes_that_are_no_utf_8) {
    EXPECT_EQ(pascal("Tonh\xF6he"), "Tonh\xF6he"); // Latin-1 already
    EXPECT_EQ(pascal("x\xC3"), "x\xC3");           // cut off
    EXPECT_EQ(pascal("\xE2\x82"), "\xE2\x82");
    EXPECT_EQ(pascal("\x80"), "\x80");
    EXPECT_EQ(pascal("\xC0\x80"), "\xC0\x80"); // an over-long form of nothing
}

TEST(host_text, is_cut_at_255_characters) {
    EXPECT_EQ(pascal(std::string(300, 'x')).size(), 255U);
    std::string umlauts;
    for (int i = 0; i < 300; ++i) umlauts += "\xC3\xB6";
    EXPECT_EQ(pascal(umlauts), std::string(255, '\xF6'));
}

} // namespace
