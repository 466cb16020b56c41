// tests/kernel/textform_test.cpp: documents as text.
// Test layer. Run by ctest.
#include "host/kernel/textform.h"

#include <array>
#include <bit>
#include <limits>
#include <random>

#include "tests/kernel/form_values.h"

namespace {

std::optional<kel_form_error> parse(std::string_view text, kel_document* d) {
    return kel_parse_text(std::as_bytes(std::span(text)), d);
}

// What the text is read as, in the writer's form; "error: WHAT at OFFSET" when it is refused.
std::string reread(std::string_view text) {
    kel_document d;
    if (const auto e = parse(text, &d))
        return std::string("error: ") + e->what + " at " + std::to_string(e->offset);
    return format(d);
}

TEST(textform, one_message_a_line) {
    EXPECT_EQ(reread("#N brisolan foo;\n#X 0 60;\n"), "#N brisolan foo;\n#X 0 60;\n");
    EXPECT_EQ(reread(""), "");
}

TEST(textform, blanks_and_line_ends_of_any_kind_are_read) {
    EXPECT_EQ(reread("  a\r\n\tb ;c;;\r d\n\n;"), "a b;\nc;\nd;\n");
    EXPECT_EQ(reread("a ;"), "a;\n");
    EXPECT_EQ(reread("\xEF\xBB\xBF"
                     "a;"),
              "a;\n");
    EXPECT_EQ(reread(";;;"), "");
}

TEST(textform, numbers_of_every_size) {
    EXPECT_EQ(reread("0 -1 2147483647 -2147483648 999 1000 1001 999999 1000000 -12345678;"),
              "0 -1 2147483647 -2147483648 999 1000 1001 999999 1000000 -12345678;\n");
    EXPECT_EQ(reread("007 -0 0000000000000000000000012;"), "7 0 12;\n");
    EXPECT_EQ(reread("2147483648;"), "error: a number out of range at 0");
    EXPECT_EQ(reread("a -2147483649;"), "error: a number out of range at 2");
    EXPECT_EQ(reread("99999999999999999999999999;"), "error: a number out of range at 0");
}

TEST(textform, floats_have_a_point) {
    EXPECT_EQ(reread("1. .5 -1.25 -.5 0. 1.50;"), "1. 0.5 -1.25 -0.5 0. 1.5;\n");
    EXPECT_EQ(reread(".inf -.inf .nan;"), ".inf -.inf .nan;\n");
    EXPECT_EQ(reread("1000000000000000000000000000000000000000000000000.;"),
              "error: a number out of range at 0");
}

TEST(textform, every_float_comes_back) {
    std::mt19937 random(3);
    std::vector<float> values{0.0F,
                              -0.0F,
                              1.0F / 3,
                              std::numeric_limits<float>::max(),
                              std::numeric_limits<float>::lowest(),
                              std::numeric_limits<float>::min(),
                              std::numeric_limits<float>::denorm_min(),
                              std::numeric_limits<float>::infinity(),
                              16777216.0F};
    for (int i = 0; i < 20000; ++i) {
        const float f = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (f == f) values.push_back(f);
    }
    for (const float f : values) {
        std::string text;
        kel_format_float(f, &text);
        kel_document d;
        ASSERT_FALSE(parse(text + ";", &d)) << text;
        const auto lines = values_of(d);
        ASSERT_EQ(lines.size(), 1U);
        ASSERT_EQ(lines[0][0].kind, A_FLOAT) << text;
        ASSERT_EQ(lines[0][0].bits, std::bit_cast<std::uint32_t>(f)) << text;
    }
}

TEST(textform, every_integer_comes_back) {
    std::mt19937 random(4);
    for (int i = 0; i < 200000; ++i) {
        const auto n = static_cast<std::int32_t>(random()) >> random() % 32;
        std::string text;
        kel_format_long(n, &text);
        ASSERT_EQ(text, std::to_string(n));
    }
    for (std::int32_t n = -2000; n < 1100000; ++n) {
        std::string text;
        kel_format_long(n, &text);
        ASSERT_EQ(text, std::to_string(n));
    }
}

TEST(textform, symbols_stand_as_they_are_where_they_can) {
    for (const char* plain : {"a", "#X", "Pitch", "take-1", "+12", "1e3", "-", ".", "-.", "1.2.3", "12a",
                              "--1", "a.b", "1-2", "x'y", "(a,b)", "~", "!"}) {
        std::string text;
        kel_format_symbol(plain, &text);
        EXPECT_EQ(text, plain);
        EXPECT_EQ(reread(text + ";"), text + ";\n");
    }
}

TEST(textform, symbols_that_would_not_come_back_are_quoted) {
    const std::pair<std::string, std::string> rows[] = {
        {"", R"("")"},
        {"take one", R"("take one")"},
        {"a;b", R"("a;b")"},
        {"12", R"("12")"},
        {"-5", R"("-5")"},
        {"1.5", R"("1.5")"},
        {".5", R"(".5")"},
        {"5.", R"("5.")"},
        {".inf", R"(".inf")"},
        {"a\"b", R"("a\"b")"},
        {"a\\b", R"("a\\b")"},
        {"a\nb\r\tc", R"("a\nb\r\tc")"},
        {"\x01\x7F", R"("\x01\x7F")"},
        {"caf\xC3\xA9", R"("caf\xC3\xA9")"},
        {"99999999999999999999", R"("99999999999999999999")"}};
    for (const auto& [symbol, expected] : rows) {
        std::string text;
        kel_format_symbol(symbol, &text);
        EXPECT_EQ(text, expected);
        kel_document d;
        ASSERT_FALSE(parse(text + ";", &d)) << text;
        ASSERT_EQ(d.symbols.size(), 1U);
        EXPECT_EQ(d.symbols[0], symbol);
        EXPECT_EQ(values_of(d)[0][0].kind, A_SYM);
    }
}

TEST(textform, every_symbol_comes_back) {
    std::mt19937 random(5);
    for (int i = 0; i < 20000; ++i) {
        std::string symbol(random() % 6, ' ');
        for (char& c : symbol) {
            static constexpr std::string_view likely = "0123456789.-;\" \\\r\n\tx#";
            c = random() % 3 ? likely[random() % likely.size()] : static_cast<char>(1 + random() % 255);
        }
        std::string text;
        kel_format_symbol(symbol, &text);
        kel_document d;
        ASSERT_FALSE(parse("a " + text + " b;", &d)) << text;
        const auto lines = values_of(d);
        ASSERT_EQ(lines.size(), 1U);
        ASSERT_EQ(lines[0].size(), 3U) << text;
        ASSERT_EQ(lines[0][1].kind, A_SYM) << text;
        ASSERT_EQ(lines[0][1].text, symbol) << text;
    }
}

TEST(textform, foreign_spellings_are_read) {
    EXPECT_EQ(reread("a\\ b \\; \\, x\"y;"), "\"a b\" \";\" , \"x\\\"y\";\n");
    EXPECT_EQ(reread("caf\xC3\xA9;"), "\"caf\\xC3\\xA9\";\n");
    EXPECT_EQ(reread("\"caf\xC3\xA9\";"), "\"caf\\xC3\\xA9\";\n");
    EXPECT_EQ(reread("\\12;"), "error: an unknown escape at 2");
    EXPECT_EQ(reread("\\-12;"), "\"-12\";\n");
}

TEST(textform, what_is_no_document_is_refused) {
    EXPECT_EQ(reread("a b"), "error: the last message does not end with ';' at 3");
    EXPECT_EQ(reread("a; b"), "error: the last message does not end with ';' at 4");
    EXPECT_EQ(reread("\"a b;\n"), "error: a control character at 5");
    EXPECT_EQ(reread("\"a b;"), "error: a quote that does not end at 5");
    EXPECT_EQ(reread("\"a\"b;"), "error: no blank after a quote at 3");
    EXPECT_EQ(reread("\"a\\q\";"), "error: an unknown escape at 4");
    EXPECT_EQ(reread("\"\\x0\";"), "error: an unknown escape at 3");
    EXPECT_EQ(reread("\"\\x00\";"), "error: a null character at 3");
    EXPECT_EQ(reread("\"\\x"), "error: an unknown escape at 3");
    EXPECT_EQ(reread("\"\\"), "error: a backslash at the end at 2");
    EXPECT_EQ(reread("a\\"), "error: a backslash at the end at 2");
    EXPECT_EQ(reread(std::string_view("a\0b;", 4)), "error: a control character at 1");
    EXPECT_EQ(reread("MThd\x01;"), "error: a control character at 4");
}

TEST(textform, lines_longer_than_a_piece_are_whole) {
    std::string text = "first";
    for (int i = 0; i < 60000; ++i) text += " " + std::to_string(i);
    text += ";\n" + std::string(200000, 's') + " 1;\nlast 1.5;\n";
    EXPECT_EQ(reread(text), text);
}

TEST(textform, random_documents_come_back) {
    std::mt19937 random(6);
    for (int i = 0; i < 300; ++i) {
        const std::string text = format(random_document(random));
        ASSERT_EQ(reread(text), text);
    }
}

// Any prefix, and any byte changed, is read or refused.
TEST(textform, damaged_documents_are_read_or_refused) {
    std::mt19937 random(8);
    for (int i = 0; i < 2000; ++i) {
        std::string text = format(random_document(random));
        if (!text.empty() && random() % 2) text[random() % text.size()] = static_cast<char>(random());
        text.resize(text.size() - random() % (text.size() + 1));
        kel_document d;
        const auto e = parse(text, &d);
        if (e)
            EXPECT_LE(e->offset, text.size());
        else
            EXPECT_EQ(reread(format(d)), format(d));
    }
}

// Long texts are read a block at a time, single lines are too short for it.
TEST(textform, lines_are_read_the_same_one_by_one_and_together) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto one_of = [&random](auto... choices) {
        const std::array<const char*, sizeof...(choices)> all{choices...};
        return std::string(all[random() % all.size()]);
    };
    for (int document = 0; document < 300; ++document) {
        std::string text;
        std::string one_by_one;
        const std::string usual = one_of("#X", "x", "a-rather-long-receiver", "#N");
        for (int line = 0; line < 40; ++line) {
            std::string now = random() % 8 ? usual : one_of("#X", "other", "\"q q\"", "5");
            for (auto atoms = random() % 10; atoms > 0; --atoms) {
                now += random() % 16 ? " " : one_of("  ", "\t", " 1.5 ", " word ", " -", " 0");
                now += std::to_string(random() % 10 ? random() % 300 : random() >> random() % 32 >> 1);
            }
            now += random() % 16 ? ";\n" : one_of(" ;\n", ";\r\n", ";;\n", ";\n\n");
            text += now;
            one_by_one += reread(now);
        }
        ASSERT_EQ(reread(text), one_by_one) << text;
    }
}

TEST(textform, memory_is_in_proportion_to_the_text) {
    std::string text;
    for (int i = 0; i < 100000; ++i) text += "-99999999 1. ;";
    kel_document d;
    ASSERT_FALSE(parse(text, &d));
    EXPECT_LE(d.code.size(), text.size());
}

} // namespace
