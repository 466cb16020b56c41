// tests/kernel/binaryform_test.cpp: documents as bytes.
// Test layer. Run by ctest.
#include "host/kernel/binaryform.h"

#include <random>

#include "tests/kernel/form_values.h"

namespace {

std::string whole(const kel_document& d) {
    std::vector<std::string_view> texts(d.symbols.begin(), d.symbols.end());
    byte_store table;
    kel_format_symbol_table(texts, &table);
    const auto header = kel_binary_header({table.data(), table.size()}, {d.code.data(), d.code.size()});
    std::string all(reinterpret_cast<const char*>(header.data()), header.size());
    all.append(reinterpret_cast<const char*>(table.data()), table.size());
    all.append(reinterpret_cast<const char*>(d.code.data()), d.code.size());
    return all;
}

std::string parse(std::string_view bytes, kel_document* d) {
    const auto e = kel_parse_binary(std::as_bytes(std::span(bytes)), d);
    return e ? e->what : "";
}

std::string parse_body(std::string_view bytes) {
    kel_document d;
    const auto e = kel_parse_binary_body(std::as_bytes(std::span(bytes)), &d);
    return e ? e->what : "";
}

std::string of(std::initializer_list<int> bytes) {
    return {bytes.begin(), bytes.end()};
}

kel_document from_text(std::string_view text) {
    kel_document d;
    EXPECT_FALSE(kel_parse_text(std::as_bytes(std::span(text)), &d));
    return d;
}

TEST(binaryform, checksums_are_those_of_the_common_crc32) {
    const std::string_view check = "123456789";
    const std::span<const unsigned char> bytes(reinterpret_cast<const unsigned char*>(check.data()),
                                               check.size());
    EXPECT_EQ(kel_crc32(0, bytes), 0xCBF43926U);
    EXPECT_EQ(kel_crc32(kel_crc32(0, bytes.first(4)), bytes.subspan(4)), 0xCBF43926U);
    EXPECT_EQ(kel_crc32(0, {}), 0U);
}

TEST(binaryform, every_byte_is_as_the_form_tells) {
    const std::string bytes = whole(from_text("#X 0 -1 60 200;\n#X a 1.;\n"));
    const std::string body = of({2, 2, '#',  'X',  1,    'a',             // two symbols
                                 2, 0, 4,    0xE0, 0x03, 0xC0, 0x0C, 3,   // #X 0 -1 60 200
                                 2, 6, 0x81, 0x80, 0x80, 0xF0, 0x0F, 3}); // #X a 1.
    EXPECT_EQ(bytes.substr(0, 12), "kelb" + of({1, 0, 0, 0, static_cast<int>(body.size()), 0, 0, 0}));
    EXPECT_EQ(bytes.substr(16), body);
    const std::string checked = bytes.substr(4, 8) + body;
    const std::uint32_t crc =
        kel_crc32(0, {reinterpret_cast<const unsigned char*>(checked.data()), checked.size()});
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(static_cast<unsigned char>(bytes[12 + i]), crc >> 8 * i & 0xFF);
}

// The lines that docs/document-formats.md shows.
TEST(binaryform, a_scores_lines_are_as_the_manual_shows_them) {
    const kel_document d =
        from_text("#N brisolan \"\";\n#X setparam 0 Time 1 0 999999 0 1000 200 0;\n#X restore;\n"
                  "#X 0 60 64 300 1 1 0 0;\n#X 125 64 70 300 1 1 0 0;\n#X stop;\n");
    const std::string code(reinterpret_cast<const char*>(d.code.data()), d.code.size());
    EXPECT_TRUE(code.starts_with(of({0x02, 0x06, 0x0A, 0x03})));
    const std::string events =
        of({0x0E, 0x00, 0xE0, 0x03, 0x80, 0x04, 0xE0, 0x12, 0x08, 0x08, 0x00, 0x00, 0x03}) +
        of({0x0E, 0xE8, 0x07, 0x80, 0x04, 0xB0, 0x04, 0xE0, 0x12, 0x08, 0x08, 0x00, 0x00, 0x03});
    EXPECT_NE(code.find(events), std::string::npos);
}

TEST(binaryform, random_documents_come_back) {
    std::mt19937 random(6);
    for (int i = 0; i < 500; ++i) {
        const kel_document d = random_document(random);
        kel_document back;
        ASSERT_EQ(parse(whole(d), &back), "");
        ASSERT_EQ(values_of(back), values_of(d));
    }
}

TEST(binaryform, every_changed_or_missing_byte_is_noticed) {
    const std::string good =
        whole(from_text("#N brisolan \"take one\";\n#X 0 60 64 300 1 1 0 0;\n#X stop;\n"));
    kel_document d;
    ASSERT_EQ(parse(good, &d), "");
    for (std::size_t i = 0; i < good.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string bad = good;
            bad[i] = static_cast<char>(bad[i] ^ 1 << bit);
            kel_document into;
            EXPECT_NE(parse(bad, &into), "") << "byte " << i << " bit " << bit;
        }
        kel_document into;
        EXPECT_NE(parse(good.substr(0, i), &into), "") << "cut at " << i;
    }
    kel_document into;
    EXPECT_EQ(parse(good + "x", &into), "not as long as it says");
}

TEST(binaryform, each_refusal_has_its_reason) {
    kel_document d;
    EXPECT_EQ(parse("", &d), "a header that is cut off");
    EXPECT_EQ(parse("#N brisolan;\n#X stop;\n", &d), "not a binary document");
    EXPECT_EQ(parse("kelb" + of({2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}), &d), "a version that is not known");
    EXPECT_EQ(parse("kelb" + of({1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0}), &d), "a version that is not known");
    EXPECT_EQ(parse("kelb" + of({1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}), &d), "not as long as it says");
    EXPECT_EQ(parse("kelb" + of({1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}), &d),
              "a checksum that does not fit");
    EXPECT_EQ(parse_body(of({0})), "");
    EXPECT_EQ(parse_body(""), "a broken number");
    EXPECT_EQ(parse_body(of({0x80, 0})), "a broken number") << "longer than it need be";
    EXPECT_EQ(parse_body(of({5, 0})), "more symbols than bytes");
    EXPECT_EQ(parse_body(of({1, 3, 'a', 'b'})), "a symbol that is cut off");
    EXPECT_EQ(parse_body(of({1, 2, 'a', 0})), "a null character");
    EXPECT_EQ(parse_body(of({0, 2, 3})), "a symbol that is not in the table");
    EXPECT_EQ(parse_body(of({0, 3})), "a line without an atom");
    EXPECT_EQ(parse_body(of({0, 0, 7})), "a line without an atom") << "an end mark with something in it";
    EXPECT_EQ(parse_body(of({0, 0})), "a line that is cut off");
    EXPECT_EQ(parse_body(of({0, 0x80})), "a broken number");
    EXPECT_EQ(parse_body(of({0, 0xFC, 0xFF, 0xFF, 0xFF, 0x7F, 3})), "a broken number") << "more than 32 bits";
    EXPECT_EQ(parse_body(of({0, 0x80, 0x80, 0x80, 0x80, 0x80, 1, 3})), "a broken number") << "too many bytes";
}

TEST(binaryform, an_event_line_is_short) {
    const kel_document d = from_text("#X 125 60 64 300 1 1 0 0;");
    EXPECT_LE(d.code.size(), 16U);
    const kel_document widest =
        from_text("#X -2147483648 -2147483648 -2147483648 -2147483648 -2147483648 -2147483648 "
                  "-2147483648 -2147483648;");
    EXPECT_LE(widest.code.size(), 42U);
}

} // namespace
