// host/kernel/textwrite.cpp: formatting documents as text.
// Layer: kernel; standard library only. Called by the atom buffer, the console and the script runner.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

#include "host/kernel/byteblock.h"
#include "host/kernel/textform.h"
#include "host/kernel/textwords.h"

namespace {

constexpr std::size_t PIECE_SIZE = 65536; // bytes made at a time

// The numbers 0 to 999 with a blank behind them: as they are, and with leading zeros.
struct digits_table {
    std::array<std::array<char, 4>, 1000> plain{};
    std::array<std::array<char, 4>, 1000> padded{};
    std::array<unsigned char, 1000> size{}; // of the plain ones, with the blank
};

constexpr digits_table digits = [] {
    digits_table t;
    for (std::size_t i = 0; i < 1000; ++i) {
        const std::array<char, 4> all{static_cast<char>('0' + i / 100), static_cast<char>('0' + i / 10 % 10),
                                      static_cast<char>('0' + i % 10), ' '};
        const std::size_t from = i < 10 ? 2 : i < 100 ? 1 : 0;
        t.padded[i] = all;
        t.plain[i] = {' ', ' ', ' ', ' '};
        for (std::size_t k = from; k < 4; ++k) t.plain[i][k - from] = all[k];
        t.size[i] = static_cast<unsigned char>(4 - from);
    }
    return t;
}();

// Writes a number and a blank; 16 bytes of room are enough. Gives the place behind the blank.
unsigned char* put_number(unsigned char* at, std::uint32_t value) {
    if (value < 1000) {
        std::memcpy(at, digits.plain[value].data(), 4);
        return at + digits.size[value];
    }
    at = put_number(at, value / 1000) - 1;
    std::memcpy(at, digits.padded[value % 1000].data(), 4);
    return at + 4;
}

unsigned char* put_number(unsigned char* at, std::int32_t value) {
    std::uint32_t magnitude = static_cast<std::uint32_t>(value);
    if (value < 0) {
        *at++ = '-';
        magnitude = 0U - magnitude;
    }
    return put_number(at, magnitude);
}

constexpr std::size_t LONGEST_NUMBER = 80; // a float without exponent, with a sign, a point and a blank

// The shortest digits that read back as the same float, always with a point.
char* put_float(char* at, float value) {
    const auto literally = [at](std::string_view text) { return std::copy(text.begin(), text.end(), at); };
    if (std::isnan(value)) return literally(NO_NUMBER);
    if (std::isinf(value)) return literally(value < 0 ? MINUS_INFINITE : INFINITE);
    char* p = std::to_chars(at, at + LONGEST_NUMBER - 2, value, std::chars_format::fixed).ptr;
    if (std::find(at, p, '.') == p) *p++ = '.';
    return p;
}

} // namespace

void kel_format_symbol(std::string_view symbol, std::string* out) {
    if (plain_symbol(symbol)) {
        *out += symbol;
        return;
    }
    constexpr std::string_view hex = "0123456789ABCDEF";
    *out += '"';
    for (const char c : symbol) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '"': *out += "\\\""; continue;
        case '\\': *out += "\\\\"; continue;
        case '\n': *out += "\\n"; continue;
        case '\r': *out += "\\r"; continue;
        case '\t': *out += "\\t"; continue;
        default: break;
        }
        if (byte >= 0x20 && byte < 0x7F) {
            *out += c;
        } else {
            *out += "\\x";
            *out += hex[byte >> 4];
            *out += hex[byte & 15];
        }
    }
    *out += '"';
}

void kel_format_long(std::int32_t value, std::string* out) {
    std::array<unsigned char, 16> text;
    const unsigned char* blank_behind = put_number(text.data(), value) - 1;
    out->append(reinterpret_cast<const char*>(text.data()),
                static_cast<std::size_t>(blank_behind - text.data()));
}

void kel_format_float(float value, std::string* out) {
    std::array<char, LONGEST_NUMBER> text;
    out->append(text.data(), put_float(text.data(), value));
}

void kel_format_atoms(std::span<const atom> atoms, std::string* out) {
    bool first = true;
    for (const atom& a : atoms) {
        if (!std::exchange(first, false)) *out += ' ';
        switch (a.type) {
        case A_LONG: kel_format_long(a.l, out); break;
        case A_FLOAT: kel_format_float(a.f, out); break;
        case A_SYM: kel_format_symbol(a.s->name, out); break;
        case A_NOTHING: kel_format_symbol("", out); break;
        }
    }
}

text_formatter::text_formatter(const unsigned char* code, std::size_t size,
                               std::span<const std::string> symbol_texts)
    : at(code), end(code + size), symbols(symbol_texts), longest_atom(LONGEST_NUMBER) {
    for (const std::string& text : symbols) longest_atom = std::max(longest_atom, text.size() + 1);
}

std::string_view text_formatter::next() {
    const std::size_t slack = longest_atom + 2; // what one atom and the end of its line may take
    piece.advance_to(piece.data());
    unsigned char* out = piece.reserve(PIECE_SIZE + slack);
    while (at < end) {
        const std::uint64_t code = get_code(at);
        switch (mark_of(code)) {
        case MARK_LONG: out = put_number(out, long_of(code)); break;
        case MARK_FLOAT: {
            char* text = reinterpret_cast<char*>(out);
            out += put_float(text, float_of(code)) - text;
            *out++ = ' ';
            break;
        }
        case MARK_SYMBOL: {
            const std::string& text = symbols[rest_of(code)];
            std::memcpy(out, text.data(), text.size());
            out += text.size();
            *out++ = ' ';
            break;
        }
        default:
            out[-1] = ';'; // in place of the last atom's blank
            *out++ = '\n';
            break;
        }
        if (static_cast<std::size_t>(out - piece.data()) < PIECE_SIZE) continue;
        piece.advance_to(out);
        if (mark_of(code) == MARK_END) break;
        out = piece.reserve(slack); // a line longer than a piece
    }
    piece.advance_to(out);
    return {reinterpret_cast<const char*>(piece.data()), piece.size()};
}
