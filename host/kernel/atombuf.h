// host/kernel/atombuf.h: atom buffers as the kernel sees them, and documents apart from any host.
// Layer: kernel. Called by documents, patches, the command line and tests.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/kel.h"
#include "host/kernel/linecode.h"

// A document's lines with its symbols as plain texts: what the readers of both forms give. Needs no host, and takes
// memory in proportion to the bytes it was read from.
struct kel_document {
    byte_store code;                 // the lines
    std::deque<std::string> symbols; // by index; none holds a null character
    std::size_t lines = 0;

    // The index of a symbol's text, entered when it is new.
    std::uint32_t symbol_index(std::string_view text);

private:
    std::unordered_map<std::string_view, std::uint32_t> indices;
    std::uint32_t last = 0; // the index asked for last
};

// Why a document cannot be read: what is wrong, and where in bytes from its start.
struct kel_form_error {
    std::size_t offset;
    const char* what;
};

// Calls `each` with every line's atoms, which are valid during the call; stops when it gives false. [main]
void kel_atombuf_lines(const host_atombuf* b, const std::function<bool(std::span<const atom>)>& each);

// The number of lines, and the bytes that hold them. [main]
std::size_t kel_atombuf_count(const host_atombuf* b);
std::size_t kel_atombuf_size(const host_atombuf* b);

// Puts a document's lines behind those in the buffer, its symbols interned. [main]
void kel_atombuf_take(host_atombuf* b, kel_document&& document);

// Reads a file in either form. On failure *why tells what is wrong, and where, in one phrase; the document is to be
// thrown away. [main]
host_err kel_document_read(const char* name, std::int16_t path, bool binary, kel_document* document,
                           std::string* why);
