// tests/kernel/form_values.h: documents as plain values, and random ones.
// Test layer. Used by the tests of both forms and of the atom buffer.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "host/kernel/textform.h"

struct form_value {
    atom_type kind = A_NOTHING;
    std::uint32_t bits = 0; // of a number
    std::string text;       // of a symbol
    bool operator==(const form_value&) const = default;
};

inline std::vector<std::vector<form_value>> values_of(const kel_document& d) {
    std::vector<std::vector<form_value>> lines;
    std::vector<form_value> line;
    const unsigned char* at = d.code.data();
    while (at < d.code.data() + d.code.size()) {
        const std::uint64_t code = get_code(at);
        switch (mark_of(code)) {
        case MARK_LONG: line.push_back({A_LONG, static_cast<std::uint32_t>(long_of(code)), ""}); break;
        case MARK_FLOAT: line.push_back({A_FLOAT, rest_of(code), ""}); break;
        case MARK_SYMBOL: line.push_back({A_SYM, 0, d.symbols.at(rest_of(code))}); break;
        default: lines.push_back(std::exchange(line, {})); break;
        }
    }
    EXPECT_TRUE(line.empty());
    return lines;
}

inline std::string format(const kel_document& d) {
    std::vector<std::string> texts;
    for (const std::string& s : d.symbols) kel_format_symbol(s, &texts.emplace_back());
    text_formatter formatter(d.code.data(), d.code.size(), texts);
    std::string all;
    for (std::string_view piece = formatter.next(); !piece.empty(); piece = formatter.next()) all += piece;
    return all;
}

inline kel_document random_document(std::mt19937& random) {
    static const char* const symbols[] = {"#N",       "#X", "brisolan",      "",
                                          "take one", "12", "\xC3\xA9;\"\n", "setparam"};
    kel_document d;
    const auto put = [&d](std::uint64_t code) {
        d.code.advance_to(put_code(d.code.reserve(LONGEST_CODE), code));
    };
    for (std::size_t line = random() % 12; line > 0; --line) {
        for (std::size_t n = 1 + random() % 9; n > 0; --n) {
            switch (random() % 6) {
            case 0: put(symbol_code(d.symbol_index(symbols[random() % std::size(symbols)]))); break;
            case 1:
                put(float_code(static_cast<float>(static_cast<std::int32_t>(random() % 20000) - 10000) / 64));
                break;
            default: put(long_code(static_cast<std::int32_t>(random()) >> random() % 32)); break;
            }
        }
        put(MARK_END);
    }
    return d;
}
