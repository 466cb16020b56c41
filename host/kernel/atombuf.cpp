// host/kernel/atombuf.cpp: lists of messages, kept compact; and their files in both forms.
// Layer: kernel. Called by the object through host/kel.h, by patches and by the program.
#include "host/kernel/atombuf.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

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

// Gives a buffer's lines one after the other.
class line_reader {
public:
    explicit line_reader(const host_atombuf* from) : b(from), atoms(16) {}

    // The next line's atoms, valid until the next call; none behind the last line. What a line has set off may have
    // appended further ones, and moved them all.
    std::span<const atom> next() {
        if (done >= b->code.size()) return {};
        const unsigned char* at = b->code.data() + done;
        atom* to = atoms.data(); // copies, which the atoms that are written cannot be
        atom* room_end = to + atoms.size();
        for (std::uint64_t code = get_code(at); mark_of(code) != MARK_END; code = get_code(at)) {
            if (to == room_end) {
                const std::size_t n = atoms.size();
                atoms.resize(2 * n);
                to = atoms.data() + n;
                room_end = to + n;
            }
            *to++ = b->atom_of(code);
        }
        done = static_cast<std::size_t>(at - b->code.data());
        return {atoms.data(), to};
    }

private:
    const host_atombuf* b;
    std::vector<atom> atoms;
    std::size_t done = 0;
};

// How many lines are delivered before the scheduler may have its turn again: it waits a few microseconds, and the lockout
// is not taken and given back for each of a million events.
constexpr int LINES_AT_A_TIME = 32;

// How much goes to or from a file at a time. A false length in a file costs nothing.
constexpr std::int32_t PIECE_SIZE = 1 << 16;

// A file open for reading, for the length of a scope.
class open_document {
public:
    ~open_document() {
        if (file) (void)host_file_close(file);
    }
    host_err open(const char* name, std::int16_t path) { return host_file_open(name, path, &file); }
    host_err close() { return host_file_close(std::exchange(file, nullptr)); }

    // Adds a further piece to what is there; *more is false behind the last one.
    host_err read(byte_store* bytes, bool* more) {
        std::int32_t count = PIECE_SIZE;
        unsigned char* to = bytes->reserve(static_cast<std::size_t>(count));
        const host_err e = host_file_read(file, &count, to);
        bytes->advance_to(to + count);
        *more = count == PIECE_SIZE;
        return e;
    }

private:
    host_file* file = nullptr;
};

std::span<const std::byte> as_bytes(const unsigned char* data, std::size_t size) {
    return {reinterpret_cast<const std::byte*>(data), size};
}

// The bytes up to the last line feed, or all of them when the text ends with them.
std::size_t whole_lines(const byte_store& text, bool more) {
    const std::string_view all(reinterpret_cast<const char*>(text.data()), text.size());
    return more ? all.rfind('\n') + 1 : all.size(); // 0 when there is no line feed
}

// The text itself is never in memory as a whole, unless it has no line feeds.
host_err read_text(open_document& file, kel_document* document, std::optional<kel_form_error>* wrong) {
    kel_text_parser parser(document);
    byte_store text;
    for (bool more = true; more && !*wrong;) {
        if (const host_err e = file.read(&text, &more)) return e;
        const std::size_t size = whole_lines(text, more);
        *wrong = parser.feed(as_bytes(text.data(), size));
        text.drop_front(size);
    }
    if (!*wrong) *wrong = parser.finish();
    return HOST_OK;
}

host_err read_binary(open_document& file, kel_document* document, std::optional<kel_form_error>* wrong) {
    byte_store bytes;
    for (bool more = true; more;) {
        if (const host_err e = file.read(&bytes, &more)) return e;
    }
    std::span<const unsigned char> lines;
    *wrong = kel_check_binary(as_bytes(bytes.data(), bytes.size()), document, &lines);
    if (*wrong) return HOST_OK;
    bytes.drop_front(bytes.size() - lines.size());
    document->code = std::move(bytes);
    return HOST_OK;
}

// The line feeds in front of a place in a file.
std::size_t lines_before(const char* name, std::int16_t path, std::size_t offset) {
    open_document file;
    byte_store text;
    bool more = file.open(name, path) == HOST_OK;
    while (more && text.size() < offset) {
        if (file.read(&text, &more)) break;
    }
    return static_cast<std::size_t>(
        std::count(text.data(), text.data() + std::min(offset, text.size()), '\n'));
}

host_err write_piece(host_file* file, const void* bytes, std::size_t size) {
    const char* at = static_cast<const char*>(bytes);
    while (size > 0) {
        std::int32_t count = static_cast<std::int32_t>(std::min<std::size_t>(size, PIECE_SIZE));
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
    line_reader lines(b);
    for (std::span<const atom> line = lines.next(); !line.empty(); line = lines.next()) {
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
    line_reader lines(b);
    std::span<const atom> line = lines.next();
    while (!line.empty()) {
        const host_locked_out now;
        for (int i = 0; i < LINES_AT_A_TIME && !line.empty(); ++i, line = lines.next()) {
            if (line[0].type == A_SYM)
                kel_message(line[0].s, line.subspan(1));
            else
                host_error("host: a line that begins with a number has no receiver");
        }
    }
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
        b->lines = document.lines;
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
    open_document file;
    std::optional<kel_form_error> wrong;
    host_err failure = file.open(name, path);
    if (!failure) {
        failure = binary ? read_binary(file, document, &wrong) : read_text(file, document, &wrong);
        const host_err closed = file.close();
        if (!failure) failure = closed;
    }
    if (failure) {
        *why = kel_filereason(failure);
    } else if (wrong) {
        failure = HOST_ERR_FORMAT;
        *why = std::string(wrong->what) +
               (binary ? " at byte " + std::to_string(wrong->offset)
                       : " in line " + std::to_string(1 + lines_before(name, path, wrong->offset)));
    }
    return failure;
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
