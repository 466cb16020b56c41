// host/kernel/binaryform.cpp: documents as bytes.
// Layer: kernel; standard library only. Called by the atom buffer and a fuzz target.
#include "host/kernel/binaryform.h"

#include <algorithm>

namespace {

// The header, numbers low byte first:
//   0  4  "kelb"
//   4  2  version
//   6  2  0
//   8  4  bytes behind the header
//  12  4  checksum of bytes 4 to 11 and of everything behind the header
constexpr std::array<unsigned char, 4> MAGIC{'k', 'e', 'l', 'b'};
constexpr std::size_t VERSION_AT = 4;
constexpr std::size_t RESERVED_AT = 6;
constexpr std::size_t LENGTH_AT = 8;
constexpr std::size_t CHECKSUM_AT = 12;

std::uint32_t number_at(const unsigned char* bytes, std::size_t at, std::size_t size) {
    std::uint32_t n = 0;
    for (std::size_t i = size; i > 0; --i) n = n << 8 | bytes[at + i - 1];
    return n;
}

void put_number_at(unsigned char* bytes, std::size_t at, std::size_t size, std::uint32_t n) {
    for (std::size_t i = 0; i < size; ++i, n >>= 8) bytes[at + i] = static_cast<unsigned char>(n);
}

// Table k tells what a byte does to the checksum when k zero bytes follow it, so that sixteen bytes are taken in at once.
using crc_tables = std::array<std::array<std::uint32_t, 256>, 16>;
constexpr crc_tables tables = [] {
    crc_tables t{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i;
        for (int bit = 0; bit < 8; ++bit) c = c & 1 ? c >> 1 ^ 0xEDB88320U : c >> 1;
        t[0][i] = c;
    }
    for (std::size_t k = 1; k < t.size(); ++k) {
        for (std::size_t i = 0; i < 256; ++i) t[k][i] = t[0][t[k - 1][i] & 0xFF] ^ t[k - 1][i] >> 8;
    }
    return t;
}();

std::span<const unsigned char> as_bytes(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()};
}

class body_parser {
public:
    body_parser(std::span<const unsigned char> body, kel_document* into)
        : begin(body.data()), at(begin), end(begin + body.size()), document(into) {}

    std::optional<kel_form_error> run(std::span<const unsigned char>* code) {
        const char* wrong = symbol_table();
        *code = {at, end};
        if (!wrong) wrong = lines();
        if (wrong) return kel_form_error{static_cast<std::size_t>(at - begin), wrong};
        return std::nullopt;
    }

private:
    // One number of at most LONGEST_CODE bytes; false when it is cut off, longer, or longer than it need be.
    bool read(std::uint64_t* code) {
        *code = 0;
        for (unsigned i = 0; i < LONGEST_CODE; ++i) {
            if (at == end) return false;
            const unsigned char byte = *at++;
            *code |= static_cast<std::uint64_t>(byte & 0x7F) << 7 * i;
            if (byte < 0x80) return byte != 0 || i == 0;
        }
        return false;
    }

    const char* symbol_table() {
        std::uint64_t count = 0;
        if (!read(&count)) return "a broken number";
        if (count > static_cast<std::uint64_t>(end - at)) return "more symbols than bytes";
        for (; count > 0; --count) {
            std::uint64_t size = 0;
            if (!read(&size)) return "a broken number";
            if (size > static_cast<std::uint64_t>(end - at)) return "a symbol that is cut off";
            const std::string_view text(reinterpret_cast<const char*>(at), size);
            if (text.find('\0') != std::string_view::npos) return "a null character";
            document->symbols.emplace_back(text);
            at += size;
        }
        return nullptr;
    }

    // Nearly all codes are of one byte or two.
    bool read_short(std::uint64_t* code) {
        if (end - at < 2) return read(code);
        *code = at[0];
        if (at[0] < 0x80) {
            at += 1;
            return true;
        }
        if (at[1] == 0 || at[1] >= 0x80) return read(code);
        *code = (at[0] & 0x7FU) | at[1] << 7;
        at += 2;
        return true;
    }

    const char* lines() {
        const std::size_t count = document->symbols.size();
        std::size_t ends = 0;
        bool open = false;
        while (at < end) {
            std::uint64_t code = 0;
            if (!read_short(&code) || code >> MARK_BITS > UINT32_MAX) return "a broken number";
            switch (mark_of(code)) {
            case MARK_SYMBOL:
                if (rest_of(code) >= count) return "a symbol that is not in the table";
                [[fallthrough]];
            case MARK_LONG:
            case MARK_FLOAT: open = true; break;
            default:
                if (!open || rest_of(code) != 0) return "a line without an atom";
                open = false;
                ends += 1;
                break;
            }
        }
        document->lines += ends;
        if (open) return "a line that is cut off";
        return nullptr;
    }

    const unsigned char* begin;
    const unsigned char* at;
    const unsigned char* end;
    kel_document* document;
};

} // namespace

std::uint32_t kel_crc32(std::uint32_t crc, std::span<const unsigned char> bytes) {
    crc = ~crc;
    const unsigned char* at = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= tables.size(); at += tables.size(), left -= tables.size()) {
        const std::uint32_t now = crc ^ number_at(at, 0, 4); // the checksum so far falls on the first four
        crc = 0;
#pragma GCC unroll 4
        for (std::size_t i = 0; i < 4; ++i) crc ^= tables[15 - i][now >> 8 * i & 0xFF];
#pragma GCC unroll 12
        for (std::size_t i = 4; i < tables.size(); ++i) crc ^= tables[15 - i][at[i]];
    }
    for (; left > 0; --left) crc = tables[0][(crc ^ *at++) & 0xFF] ^ crc >> 8;
    return ~crc;
}

std::optional<kel_form_error> kel_check_binary(std::span<const std::byte> bytes, kel_document* document,
                                               std::span<const unsigned char>* lines) {
    const std::span<const unsigned char> all = as_bytes(bytes);
    if (all.size() < BINARY_HEADER_SIZE) return kel_form_error{all.size(), "a header that is cut off"};
    const unsigned char* head = all.data();
    if (!std::equal(MAGIC.begin(), MAGIC.end(), head)) return kel_form_error{0, "not a binary document"};
    if (number_at(head, VERSION_AT, 2) != BINARY_VERSION)
        return kel_form_error{VERSION_AT, "a version that is not known"};
    if (number_at(head, RESERVED_AT, 2) != 0)
        return kel_form_error{RESERVED_AT, "a version that is not known"};
    const std::span<const unsigned char> body = all.subspan(BINARY_HEADER_SIZE);
    if (number_at(head, LENGTH_AT, 4) != body.size())
        return kel_form_error{LENGTH_AT, "not as long as it says"};
    const std::uint32_t crc = kel_crc32(kel_crc32(0, all.subspan(VERSION_AT, 8)), body);
    if (number_at(head, CHECKSUM_AT, 4) != crc)
        return kel_form_error{CHECKSUM_AT, "a checksum that does not fit"};
    std::optional<kel_form_error> wrong = body_parser(body, document).run(lines);
    if (wrong) wrong->offset += BINARY_HEADER_SIZE;
    return wrong;
}

std::optional<kel_form_error> kel_parse_binary(std::span<const std::byte> bytes, kel_document* document) {
    std::span<const unsigned char> lines;
    const std::optional<kel_form_error> wrong = kel_check_binary(bytes, document, &lines);
    if (!wrong) document->code.append(lines.data(), lines.size());
    return wrong;
}

std::optional<kel_form_error> kel_parse_binary_body(std::span<const std::byte> body, kel_document* document) {
    std::span<const unsigned char> lines;
    const std::optional<kel_form_error> wrong = body_parser(as_bytes(body), document).run(&lines);
    if (!wrong) document->code.append(lines.data(), lines.size());
    return wrong;
}

std::array<unsigned char, BINARY_HEADER_SIZE> kel_binary_header(std::span<const unsigned char> symbols,
                                                                std::span<const unsigned char> lines) {
    std::array<unsigned char, BINARY_HEADER_SIZE> head{};
    std::copy(MAGIC.begin(), MAGIC.end(), head.begin());
    put_number_at(head.data(), VERSION_AT, 2, BINARY_VERSION);
    put_number_at(head.data(), LENGTH_AT, 4, static_cast<std::uint32_t>(symbols.size() + lines.size()));
    std::uint32_t crc = kel_crc32(0, std::span(head).subspan(VERSION_AT, 8));
    crc = kel_crc32(kel_crc32(crc, symbols), lines);
    put_number_at(head.data(), CHECKSUM_AT, 4, crc);
    return head;
}

void kel_format_symbol_table(std::span<const std::string_view> symbols, byte_store* out) {
    out->advance_to(put_code(out->reserve(LONGEST_CODE), symbols.size()));
    for (const std::string_view text : symbols) {
        out->advance_to(put_code(out->reserve(LONGEST_CODE), text.size()));
        out->append(text.data(), text.size());
    }
}
