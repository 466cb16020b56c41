// fuzz/textform.cpp: any bytes as a document in text form: refused, or read, and then its own text reads back the same,
// and so does the document line by line.
// Fuzz layer; leans on the kernel's forms alone.
#include "host/kernel/textform.h"

#include <algorithm>
#include <cstdlib>

namespace {

std::string formatted(const kel_document& d) {
    std::vector<std::string> texts(d.symbols.size());
    for (std::size_t i = 0; i < texts.size(); ++i) kel_format_symbol(d.symbols[i], &texts[i]);
    text_formatter formatter(d.code.data(), d.code.size(), texts);
    std::string all;
    for (std::string_view piece = formatter.next(); !piece.empty(); piece = formatter.next()) all += piece;
    return all;
}

// Given a line at a time, hardly anything is read by blocks.
kel_document read_by_lines(std::string_view text) {
    kel_document d;
    kel_text_parser parser(&d);
    while (!text.empty()) {
        const std::string_view line = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
        if (parser.feed(std::as_bytes(std::span(line)))) std::abort();
        text.remove_prefix(line.size());
    }
    if (parser.finish()) std::abort();
    return d;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kel_document d;
    if (const auto wrong = kel_parse_text(std::as_bytes(std::span(data, size)), &d)) {
        if (wrong->offset > size) std::abort();
        return 0;
    }
    // In proportion to the input, as docs/document-formats.md promises.
    if (d.code.size() > 3 * size + 3 || d.symbols.size() > size) std::abort();
    const std::string text = formatted(d);
    const kel_document by_lines = read_by_lines({reinterpret_cast<const char*>(data), size});
    if (by_lines.lines != d.lines || formatted(by_lines) != text) std::abort();
    kel_document again;
    if (kel_parse_text(std::as_bytes(std::span(text)), &again)) std::abort();
    if (formatted(again) != text) std::abort();
    return 0;
}
