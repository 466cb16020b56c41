// host/kernel/textform.h: documents as text, one message a line: "#X 0 60 64 300 1 1 0 0;".
// Layer: kernel; standard library only. Called by the atom buffer, the console, the script runner and a fuzz target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/kernel/atombuf.h"

// Reads text into an empty document; tells what is wrong with it, if anything. Pure. [both]
std::optional<kel_form_error> kel_parse_text(std::span<const std::byte> text, kel_document* document);

// The same piece by piece. Each piece but the last must end behind a line feed, which no atom can hold.
class kel_text_parser {
public:
    explicit kel_text_parser(kel_document* into) : document(into) {}

    // Reads a piece; or tells what is wrong with the text, and then nothing more is to be fed.
    std::optional<kel_form_error> feed(std::span<const std::byte> lines);

    // Behind the last piece: what is wrong with the text's end.
    std::optional<kel_form_error> finish() const;

private:
    kel_document* document;
    std::size_t fed = 0; // bytes so far
    bool open = false;   // a message has begun
};

// Adds a value as it stands in the text form: a number as its digits, a float with a point, a symbol in quotes when it
// would not be read back without them. Pure. [both]
void kel_format_symbol(std::string_view symbol, std::string* out);
void kel_format_long(std::int32_t value, std::string* out);
void kel_format_float(float value, std::string* out);

// Adds the atoms with a blank between two, without the end of a line. Pure. [both]
void kel_format_atoms(std::span<const atom> atoms, std::string* out);

// Formats lines (linecode.h) a piece at a time: the symbols are given as they stand in the text form.
class text_formatter {
public:
    text_formatter(const unsigned char* code, std::size_t size, std::span<const std::string> symbol_texts);

    // The next whole lines, some 64 KB; empty when there are no more. Valid until the next call.
    std::string_view next();

private:
    const unsigned char* at;
    const unsigned char* end;
    std::span<const std::string> symbols;
    std::size_t longest_atom;
    byte_store piece;
};
