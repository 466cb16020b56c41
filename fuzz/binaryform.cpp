// fuzz/binaryform.cpp: any bytes as a document in binary form, and as the body of one whose header fits: refused, or read,
// and then the document made of it reads back the same.
// Fuzz layer; leans on the kernel's forms alone.
#include "host/kernel/binaryform.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

bool same(const kel_document& a, const kel_document& b) {
    return a.symbols == b.symbols && std::equal(a.code.data(), a.code.data() + a.code.size(), b.code.data(),
                                                b.code.data() + b.code.size());
}

std::vector<unsigned char> whole(const kel_document& d) {
    std::vector<std::string_view> texts(d.symbols.begin(), d.symbols.end());
    byte_store table;
    kel_format_symbol_table(texts, &table);
    const auto header = kel_binary_header({table.data(), table.size()}, {d.code.data(), d.code.size()});
    std::vector<unsigned char> all(header.begin(), header.end());
    all.insert(all.end(), table.data(), table.data() + table.size());
    all.insert(all.end(), d.code.data(), d.code.data() + d.code.size());
    return all;
}

void reread(const kel_document& d) {
    kel_document again;
    const std::vector<unsigned char> bytes = whole(d);
    if (kel_parse_binary(std::as_bytes(std::span(bytes)), &again) || !same(d, again)) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    kel_document d;
    if (!kel_parse_binary(bytes, &d)) reread(d);
    // A fuzzer does not come by the right checksum.
    kel_document body;
    const auto wrong = kel_parse_binary_body(bytes, &body);
    if (wrong && wrong->offset > size) std::abort();
    if (!wrong) reread(body);
    return 0;
}
