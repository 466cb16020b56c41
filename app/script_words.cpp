// app/script_words.cpp: a line of the script language taken apart into words and atoms.
// Layer: program. Called by the script runner.
#include "app/script_words.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}
bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

struct escape {
    char letter;
    char means;
};
constexpr escape escapes[] = {{'"', '"'}, {'\\', '\\'}, {'r', '\r'}, {'n', '\n'}, {'t', '\t'}};

// Reads the inside of a quoted stretch from `at`, behind its opening quote, to behind its closing one; false when it has
// none. A backslash before anything that is no escape stands for itself.
bool read_quoted(const std::string& line, std::size_t& at, std::string& into) {
    while (at < line.size()) {
        const char c = line[at++];
        if (c == '"') return true;
        if (c == '\\' && at < line.size()) {
            const auto* known = std::find_if(std::begin(escapes), std::end(escapes),
                                             [&](escape e) { return e.letter == line[at]; });
            if (known != std::end(escapes)) {
                into += known->means;
                ++at;
                continue;
            }
        }
        into += c;
    }
    return false;
}

enum class shape { integer, floating, name };

// Digits, perhaps a minus before them, perhaps one point among or beside them.
shape shape_of(std::string_view text) {
    if (!text.empty() && text.front() == '-') text.remove_prefix(1);
    const auto digits = std::count_if(text.begin(), text.end(), is_digit);
    const auto points = std::count(text.begin(), text.end(), '.');
    if (digits == 0 || points > 1 || digits + points != static_cast<std::ptrdiff_t>(text.size()))
        return shape::name;
    return points ? shape::floating : shape::integer;
}

} // namespace

std::vector<script_word> script_split(const std::string& line, std::string& error) {
    std::vector<script_word> words;
    for (std::size_t at = 0;;) {
        while (at < line.size() && is_blank(line[at])) ++at;
        if (at == line.size()) return words;
        script_word& word = words.emplace_back();
        while (at < line.size() && !is_blank(line[at])) {
            if (line[at] != '"') {
                word.text += line[at++];
                continue;
            }
            word.quoted = true;
            if (read_quoted(line, ++at, word.text)) continue;
            error = "a quote is not closed";
            return {};
        }
    }
}

std::optional<atom> script_atom(const script_word& word, std::string& error) {
    const shape s = word.quoted ? shape::name : shape_of(word.text);
    if (s == shape::name) return atom(host_symbol(word.text.c_str()));
    if (s == shape::floating) return atom(std::strtof(word.text.c_str(), nullptr));
    std::int32_t value = 0;
    const auto [end, code] = std::from_chars(word.text.data(), word.text.data() + word.text.size(), value);
    if (code == std::errc{}) return atom(value);
    error = "integer out of range: " + word.text;
    return std::nullopt;
}

std::string one_line(const std::string& text) {
    constexpr const char* digits = "0123456789abcdef";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const auto* known =
            std::find_if(std::begin(escapes), std::end(escapes), [c](escape e) { return e.means == c; });
        if (byte >= ' ' && byte != 0x7F)
            out += c;
        else if (known != std::end(escapes))
            (out += '\\') += known->letter;
        else
            ((out += "\\x") += digits[byte >> 4]) += digits[byte & 15];
    }
    return out;
}

std::string script_quote(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        const auto* known =
            std::find_if(std::begin(escapes), std::end(escapes), [c](escape e) { return e.means == c; });
        if (known != std::end(escapes)) {
            out += '\\';
            out += known->letter;
        } else {
            out += c;
        }
    }
    return out + "\"";
}
