// host/kernel/atombuf.cpp: lists of messages, kept compact; and their files in both forms.
// Layer: kernel. Called by the object through host/kel.h, by patches and by the program.
#include "host/kernel/atombuf.h"

#include <algorithm>
#include <memory>

#include "host/kernel/binaryform.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/textform.h"

struct host_atombuf {
    byte_store code;              // the lines
    std::vector<symbol*> symbols; // by index
    std::unordered_map<const symbol*, std::uint32_t> indices;
    std::uint32_t last = 0; // the index of the symbol appended last
    std::size_t lines = 0;

    // Where host_atombuf_getatom was last, so that asking for one atom after the other is no walk from the start.
    mutable std::int32_t visited = 0;
    mutable std::size_t visited_at = 0;

    std::uint32_t index_of(symbol* s) {
        if (last < symbols.size() && symbols[last] == s) return last;
        const auto [found, is_new] = indices.try_emplace(s, static_cast<std::uint32_t>(symbols.size()));
        if (is_new) symbols.push_back(s);
        return last = found->second;
    }

    atom atom_of(std::uint64_t c) const {
        switch (mark_of(c)) {
        case MARK_LONG: return atom(long_of(c));
        case MARK_FLOAT: return atom(float_of(c));
        default: return atom(symbols[rest_of(c)]);
        }
    }
};

namespace {

// How much is read at a time: growing with what is there, so that a false length costs nothing.
constexpr std::int32_t READ_SIZE = 1 << 20;

host_err read_whole(const char* name, std::int16_t path, byte_store* bytes) {
    host_file* file = nullptr;
    if (const host_err e = host_file_open(name, path, &file)) return e;
    host_err failure = HOST_OK;
    for (;;) {
        std::int32_t count = READ_SIZE;
        unsigned char* to = bytes->reserve(static_cast<std::size_t>(count));
        failure = host_file_read(file, &count, to);
        bytes->advance_to(to + count);
        if (failure || count < READ_SIZE) break;
    }
    const host_err closed = host_file_close(file);
    return failure ? failure : closed;
}

std::string describe(const kel_form_error& e, bool binary, const byte_store& bytes) {
    if (binary) return std::string(e.what) + " at byte " + std::to_string(e.offset);
    const unsigned char* const upto = bytes.data() + std::min(e.offset, bytes.size());
    const auto line = std::count(bytes.data(), upto, '\n') + 1;
    return std::string(e.what) + " in line " + std::to_string(line);
}

host_err write_piece(host_file* file, const void* bytes, std::size_t size) {
    const char* at = static_cast<const char*>(bytes);
    while (size > 0) {
        std::int32_t count = static_cast<std::int32_t>(std::min<std::size_t>(size, READ_SIZE));
        const std::int32_t wanted = count;
        if (const host_err e = host_file_write(file, &count, at)) return e;
        at += wanted;
        size -= static_cast<std::size_t>(wanted);
    }
    return HOST_OK;
}

// A failure stays with the file, which then does not replace the old one: closing tells.
void write_text(const host_atombuf* b, host_file* file) {
    std::vector<std::string> texts(b->symbols.size());
    for (std::size_t i = 0; i < texts.size(); ++i) kel_format_symbol(b->symbols[i]->name, &texts[i]);
    text_formatter formatter(b->code.data(), b->code.size(), texts);
    for (std::string_view piece = formatter.next(); !piece.empty(); piece = formatter.next()) {
        if (write_piece(file, piece.data(), piece.size())) return;
    }
}

void write_binary(const host_atombuf* b, host_file* file) {
    std::vector<std::string_view> texts;
    for (const symbol* s : b->symbols) texts.emplace_back(s->name);
    byte_store table;
    kel_format_symbol_table(texts, &table);
    const auto header = kel_binary_header({table.data(), table.size()}, {b->code.data(), b->code.size()});
    if (write_piece(file, header.data(), header.size())) return;
    if (write_piece(file, table.data(), table.size())) return;
    (void)write_piece(file, b->code.data(), b->code.size());
}

} // namespace

std::uint32_t kel_document::symbol_index(std::string_view text) {
    if (last < symbols.size() && symbols[last] == text) return last;
    const auto found = indices.find(text);
    if (found != indices.end()) return last = found->second;
    last = static_cast<std::uint32_t>(symbols.size());
    symbols.emplace_back(text);
    indices.emplace(symbols.back(), last);
    return last;
}

host_atombuf* host_atombuf_new() {
    return new host_atombuf;
}

void host_atombuf_free(host_atombuf* b) {
    delete b;
}

void host_atombuf_append_atoms(host_atombuf* b, std::span<const atom> line) {
    if (line.empty()) return;
    unsigned char* at = b->code.reserve((line.size() + 1) * LONGEST_CODE);
    for (const atom& a : line) {
        switch (a.type) {
        case A_LONG: at = put_code(at, long_code(a.l)); break;
        case A_FLOAT: at = put_code(at, float_code(a.f)); break;
        case A_SYM: at = put_code(at, symbol_code(b->index_of(a.s))); break;
        case A_NOTHING: at = put_code(at, symbol_code(b->index_of(host_symbol("")))); break;
        }
    }
    b->code.advance_to(put_code(at, MARK_END));
    b->lines += 1;
}

void kel_atombuf_lines(const host_atombuf* b, const std::function<bool(std::span<const atom>)>& each) {
    std::vector<atom> line;
    const unsigned char* at = b->code.data();
    // The end is asked for anew: what a line does may append further ones, and move them.
    for (std::size_t done = 0; done < b->code.size();) {
        at = b->code.data() + done;
        line.clear();
        for (std::uint64_t code = get_code(at); mark_of(code) != MARK_END; code = get_code(at))
            line.push_back(b->atom_of(code));
        done = static_cast<std::size_t>(at - b->code.data());
        if (!each(line)) return;
    }
}

std::size_t kel_atombuf_count(const host_atombuf* b) {
    return b->lines;
}

std::size_t kel_atombuf_size(const host_atombuf* b) {
    return b->code.size();
}

void host_atombuf_eval(const host_atombuf* b) {
    kel_atombuf_lines(b, [](std::span<const atom> line) {
        if (line[0].type == A_SYM)
            kel_message(line[0].s, line.subspan(1));
        else
            host_error("host: a line that begins with a number has no receiver");
        return true;
    });
}

bool host_atombuf_getatom(const host_atombuf* b, std::int32_t index, atom* out) {
    if (index < 0) return false;
    if (index < b->visited) b->visited = 0, b->visited_at = 0;
    const unsigned char* at = b->code.data() + b->visited_at;
    const unsigned char* const end = b->code.data() + b->code.size();
    std::int32_t n = b->visited;
    while (at < end) {
        const unsigned char* const here = at;
        const std::uint64_t code = get_code(at);
        if (mark_of(code) == MARK_END) continue;
        if (n == index) {
            b->visited = n;
            b->visited_at = static_cast<std::size_t>(here - b->code.data());
            *out = b->atom_of(code);
            return true;
        }
        ++n;
    }
    return false;
}

void kel_atombuf_take(host_atombuf* b, kel_document&& document) {
    std::vector<symbol*> symbols;
    symbols.reserve(document.symbols.size());
    for (const std::string& text : document.symbols) symbols.push_back(host_symbol(text.c_str()));
    const unsigned char* at = document.code.data();
    const unsigned char* const end = at + document.code.size();
    if (b->code.size() == 0 && b->symbols.empty()) {
        for (const unsigned char* p = at; p < end;) b->lines += mark_of(get_code(p)) == MARK_END;
        b->code = std::move(document.code);
        b->symbols = std::move(symbols);
        for (std::size_t i = 0; i < b->symbols.size(); ++i)
            b->indices.try_emplace(b->symbols[i], static_cast<std::uint32_t>(i));
        return;
    }
    while (at < end) {
        std::uint64_t code = get_code(at);
        if (mark_of(code) == MARK_SYMBOL) code = symbol_code(b->index_of(symbols[rest_of(code)]));
        b->lines += mark_of(code) == MARK_END;
        b->code.advance_to(put_code(b->code.reserve(LONGEST_CODE), code));
    }
}

host_err kel_document_read(const char* name, std::int16_t path, bool binary, kel_document* document,
                           std::string* why) {
    byte_store bytes;
    if (const host_err e = read_whole(name, path, &bytes)) {
        *why = kel_filereason(e);
        return e;
    }
    const std::span<const std::byte> all(reinterpret_cast<const std::byte*>(bytes.data()), bytes.size());
    const auto wrong = binary ? kel_parse_binary(all, document) : kel_parse_text(all, document);
    if (!wrong) return HOST_OK;
    *why = describe(*wrong, binary, bytes);
    return HOST_ERR_FORMAT;
}

host_err host_atombuf_read(host_atombuf* b, const char* name, std::int16_t path, bool binary) {
    kel_document document;
    std::string why; // the caller says what it makes of a failure
    if (const host_err e = kel_document_read(name, path, binary, &document, &why)) return e;
    kel_atombuf_take(b, std::move(document));
    return HOST_OK;
}

host_err host_atombuf_write(const host_atombuf* b, const char* name, std::int16_t path, int form) {
    const bool binary = form == ATOMBUF_BINARY;
    host_file* file = nullptr;
    if (const host_err e = host_file_create(name, path, binary ? TYPE_KELB : TYPE_TEXT, &file)) {
        // Objects hand the code on and say nothing, and whoever saves must learn of it.
        host_error("%s was not saved: %s", name, kel_filereason(e));
        return e;
    }
    if (binary)
        write_binary(b, file);
    else
        write_text(b, file);
    return host_file_close(file);
}
