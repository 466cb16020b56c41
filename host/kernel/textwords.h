// host/kernel/textwords.h: the characters and words of the text form, as reading and formatting both see them.
// Layer: kernel; standard library only. Used by textform.cpp and textwrite.cpp alone.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

enum char_class : unsigned char {
    ordinary, // part of a word
    blank,    // between words
    ending,   // ';'
    quote,    // begins a quoted symbol, if it begins the word
    escape,   // '\'
    control   // not to be in a document as it is
};

inline constexpr std::array<char_class, 256> classes = [] {
    std::array<char_class, 256> c{};
    for (std::size_t i = 0; i < 0x20; ++i) c[i] = control;
    c[0x7F] = control;
    for (const char b : {' ', '\t', '\n', '\r'}) c[static_cast<std::size_t>(b)] = blank;
    c[';'] = ending;
    c['"'] = quote;
    c['\\'] = escape;
    return c;
}();

inline char_class class_of(char c) {
    return classes[static_cast<unsigned char>(c)];
}
inline bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
inline bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

inline constexpr std::string_view INFINITE = ".inf";
inline constexpr std::string_view MINUS_INFINITE = "-.inf";
inline constexpr std::string_view NO_NUMBER = ".nan";

enum class word_kind { text, whole, real };

// What a word without quotes is read as. Signs other than one leading minus, and exponents, make no number. [both]
inline word_kind kind_of(std::string_view word) {
    if (!word.empty() && !is_digit(word[0]) && word[0] != '-' && word[0] != '.') return word_kind::text;
    if (word == INFINITE || word == MINUS_INFINITE || word == NO_NUMBER) return word_kind::real;
    std::size_t digits = 0;
    std::size_t points = 0;
    for (std::size_t i = word.starts_with('-') ? 1 : 0; i < word.size(); ++i) {
        if (is_digit(word[i]))
            ++digits;
        else if (word[i] == '.')
            ++points;
        else
            return word_kind::text;
    }
    if (digits == 0 || points > 1) return word_kind::text;
    return points ? word_kind::real : word_kind::whole;
}

// Whether a symbol stands in the text as it is. [both]
inline bool plain_symbol(std::string_view symbol) {
    if (symbol.empty() || kind_of(symbol) != word_kind::text) return false;
    return std::all_of(symbol.begin(), symbol.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte > 0x20 && byte < 0x7F && class_of(c) == ordinary;
    });
}
