// host/kernel/textform.cpp: reading documents from text.
// Layer: kernel; standard library only. Called by the atom buffer, the console, the script runner and a fuzz target.
#include "host/kernel/textform.h"

#include <bit>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "host/kernel/byteblock.h"
#include "host/kernel/textwords.h"

namespace {

constexpr std::size_t PIECE_SIZE = 65536; // bytes of code that room is made for at a time

class parser {
public:
    parser(std::string_view text, kel_document* into)
        : begin(text.data()), at(begin), end(begin + text.size()), document(into) {}
    ~parser() { finish_piece(); }
    parser(const parser&) = delete;
    parser& operator=(const parser&) = delete;

    // `open`: a message has begun, before or within the text.
    std::optional<kel_form_error> run(bool* open) {
        for (;;) {
            while (at < end && class_of(*at) == blank) ++at;
            if (at == end) return std::nullopt;
            if (*at == ';') {
                ++at;
                if (!std::exchange(*open, false)) continue;
                put(MARK_END);
                document->lines += 1;
                continue;
            }
            *open = true;
            if (same_symbol() || plain_numbers(open)) continue;
            if (const char* wrong = *at == '"' ? quoted() : word())
                return kel_form_error{static_cast<std::size_t>(at - begin), wrong};
        }
    }

private:
    // Codes go into room that is taken a piece at a time.
    void put(std::uint64_t code) {
        if (room_end - out < static_cast<std::ptrdiff_t>(LONGEST_CODE)) new_piece();
        out = put_code(out, code);
    }
    void new_piece() {
        finish_piece();
        out = document->code.reserve(PIECE_SIZE);
        room_end = out + PIECE_SIZE;
    }
    void finish_piece() {
        if (out) document->code.advance_to(out);
    }

    bool at_word_end(const char* p) const {
        return p == end || class_of(*p) == blank || class_of(*p) == ending;
    }

    // Nearly all of a document is lines of whole numbers without a sign, each with one blank or the end of the message
    // behind it, and each line begins with the receiver of the one before. Takes as many such numbers as follow, over the
    // ends of lines; false, and nothing is taken, when something else is there. A number is found by what ends it, for a
    // block of text at once: so none waits until the one before has been read, and no branch guesses how long each is.
    bool plain_numbers(bool* open) {
        if constexpr (!BLOCKS_WORK) return false;
        const char* from = at; // the number that comes next
        bool plain = is_digit(*from);
        while (plain && end - from >= BLOCK + WORD) {
            if (room_end - out < 2 * BLOCK)
                new_piece(); // a block's codes are never twice as long as its text
            const char* const block = from;
            std::uint64_t stops = not_digits(block);
            unsigned char* o = out; // a copy, which the bytes that are written cannot be
            while (stops) {
                const char* const stop = block + std::countr_zero(stops);
                stops &= stops - 1;
                const auto size = static_cast<std::size_t>(stop - from);
                plain = size - 1 < WORD && (*stop == ' ' || *stop == ';');
                if (!plain) break;
                o = put_short_code(o, long_code(static_cast<std::int32_t>(number_at(from, size))));
                from = stop + 1;
                if (*stop == ' ') continue;
                o = put_code(o, MARK_END);
                document->lines += 1;
                plain = *open = *from == '\n' && same_symbol_at(from + 1);
                if (!plain) break;
                o = put_code(o, symbol_code(last_index));
                from += last_symbol.size() + 2;
                if (from - block >= BLOCK) break;
                stops &= ~std::uint64_t{0} << (from - block);
            }
            out = o;
            if (from == block) break; // a number longer than a block
        }
        return std::exchange(at, from) != from;
    }

    // A bit for each byte of a block: whether it is something else than a digit.
    static std::uint64_t not_digits(const char* block) {
        return block_bits(block, [](std::uint64_t w) {
            w ^= in_each_byte('0'); // digits are 0 to 9 now
            return ((w & in_each_byte(0x7F)) + in_each_byte(0x80 - 10)) | w;
        });
    }

    // The number that so many digits make, 1 to 8: moved to the upper end of the word, with zeros in front, and there put
    // together in pairs, the pairs in fours, those in one.
    static std::uint32_t number_at(const char* digits, std::size_t size) {
        std::uint64_t w = (word_at(digits) ^ in_each_byte('0')) << 8 * (WORD - size);
        w = w * 10 + (w >> 8);
        constexpr std::uint64_t pairs = 0x000000FF000000FF;
        return static_cast<std::uint32_t>(
            ((w & pairs) * (100 + (1000000ULL << 32)) + (w >> 16 & pairs) * (1 + (10000ULL << 32))) >> 32);
    }

    const char* word() {
        const char* p = at;
        bool escaped = false;
        for (; !at_word_end(p); ++p) {
            if (class_of(*p) == ordinary) continue;
            if (class_of(*p) == control) return at = p, "a control character";
            if (*p == '\\') {
                escaped = true;
                if (++p == end) return at = p, "a backslash at the end";
            }
        }
        const std::string_view w(at, p);
        if (escaped) return unescaped(p);
        switch (kind_of(w)) {
        case word_kind::text: put_symbol(w); break;
        case word_kind::whole:
            if (!whole(w)) return "a number out of range";
            break;
        case word_kind::real:
            if (!real(w)) return "a number out of range";
            break;
        }
        at = p;
        return nullptr;
    }

    // A document's lines mostly begin with the same receiver: whether it stands here, with a blank behind it, as it did
    // the last time.
    bool same_symbol_at(const char* p) const {
        const std::size_t size = last_symbol.size();
        if (*p != last_symbol[0] || end - p <= static_cast<std::ptrdiff_t>(size) || p[size] != ' ')
            return false;
        for (std::size_t i = 1; i < size; ++i) {
            if (p[i] != last_symbol[i]) return false;
        }
        return last_is_plain;
    }
    bool same_symbol() {
        if (!same_symbol_at(at)) return false;
        at += last_symbol.size() + 1;
        put(symbol_code(last_index));
        return true;
    }

    void put_symbol(std::string_view text) {
        if (text != last_symbol) {
            last_index = document->symbol_index(text);
            last_symbol = document->symbols[last_index];
            last_is_plain = plain_symbol(text);
            if (text.empty()) last_symbol = NONE;
        }
        put(symbol_code(last_index));
    }

    bool whole(std::string_view w) {
        std::int32_t value = 0;
        const auto [p, failed] = std::from_chars(w.data(), w.data() + w.size(), value);
        if (failed != std::errc{} || p != w.data() + w.size()) return false;
        put(long_code(value));
        return true;
    }

    bool real(std::string_view w) {
        float value = 0;
        if (w == INFINITE) {
            value = std::numeric_limits<float>::infinity();
        } else if (w == MINUS_INFINITE) {
            value = -std::numeric_limits<float>::infinity();
        } else if (w == NO_NUMBER) {
            value = std::numeric_limits<float>::quiet_NaN();
        } else {
            const auto [p, failed] =
                std::from_chars(w.data(), w.data() + w.size(), value, std::chars_format::fixed);
            if (failed != std::errc{} || p != w.data() + w.size()) return false;
        }
        put(float_code(value));
        return true;
    }

    // A word with escapes in it, which is always a symbol.
    const char* unescaped(const char* word_end) {
        std::string symbol;
        while (at < word_end) {
            if (*at != '\\') {
                symbol += *at++;
            } else if (const char* wrong = escape_into(&symbol)) {
                return wrong;
            }
        }
        put_symbol(symbol);
        return nullptr;
    }

    const char* quoted() {
        std::string symbol;
        ++at;
        for (;;) {
            if (at == end) return "a quote that does not end";
            if (*at == '"') break;
            if (*at == '\\') {
                if (const char* wrong = escape_into(&symbol)) return wrong;
            } else if (static_cast<unsigned char>(*at) < 0x20 || *at == 0x7F) {
                return "a control character";
            } else {
                symbol += *at++;
            }
        }
        ++at;
        if (!at_word_end(at)) return "no blank after a quote";
        put_symbol(symbol);
        return nullptr;
    }

    const char* escape_into(std::string* symbol) {
        if (++at == end) return "a backslash at the end";
        const char c = *at++;
        switch (c) {
        case 'n': *symbol += '\n'; return nullptr;
        case 'r': *symbol += '\r'; return nullptr;
        case 't': *symbol += '\t'; return nullptr;
        case 'x': return hex_into(symbol);
        default: break;
        }
        // What is left is kept free for escapes to come.
        if (is_letter(c) || is_digit(c) || class_of(c) == control || (class_of(c) == blank && c != ' '))
            return "an unknown escape";
        *symbol += c;
        return nullptr;
    }

    const char* hex_into(std::string* symbol) {
        unsigned value = 0;
        if (end - at < 2) return "an unknown escape";
        const auto [p, failed] = std::from_chars(at, at + 2, value, 16);
        if (failed != std::errc{} || p != at + 2) return "an unknown escape";
        if (value == 0) return "a null character";
        at = p;
        *symbol += static_cast<char>(value);
        return nullptr;
    }

    static constexpr std::string_view NONE{"\0", 1}; // what no symbol is

    const char* begin;
    const char* at;
    const char* end;
    kel_document* document;
    unsigned char* out = nullptr;
    unsigned char* room_end = nullptr;
    std::string_view last_symbol = NONE;
    std::uint32_t last_index = 0;
    bool last_is_plain = false;
};

} // namespace

std::optional<kel_form_error> kel_text_parser::feed(std::span<const std::byte> lines) {
    std::string_view text(reinterpret_cast<const char*>(lines.data()), lines.size());
    constexpr std::string_view mark = "\xEF\xBB\xBF"; // some editors leave it at the start
    const std::size_t skipped = fed == 0 && text.starts_with(mark) ? mark.size() : 0;
    std::optional<kel_form_error> wrong = parser(text.substr(skipped), document).run(&open);
    if (wrong) wrong->offset += fed + skipped;
    fed += text.size();
    return wrong;
}

std::optional<kel_form_error> kel_text_parser::finish() const {
    if (open) return kel_form_error{fed, "the last message does not end with ';'"};
    return std::nullopt;
}

std::optional<kel_form_error> kel_parse_text(std::span<const std::byte> text, kel_document* document) {
    kel_text_parser parser(document);
    if (const auto wrong = parser.feed(text)) return wrong;
    return parser.finish();
}
