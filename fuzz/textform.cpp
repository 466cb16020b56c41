// fuzz/textform.cpp: any bytes as a document in text form: refused, or read, and then its own text reads back the same.
// Fuzz layer; leans on the kernel's forms alone.
#include "host/kernel/textform.h"

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
    kel_document again;
    if (kel_parse_text(std::as_bytes(std::span(text)), &again)) std::abort();
    if (formatted(again) != text) std::abort();
    return 0;
}
