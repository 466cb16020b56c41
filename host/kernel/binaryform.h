// host/kernel/binaryform.h: documents as bytes: a header with version, length and checksum, a symbol table, the lines.
// Layer: kernel; standard library only. Called by the atom buffer and a fuzz target.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "host/kernel/atombuf.h"

constexpr std::size_t BINARY_HEADER_SIZE = 16;
constexpr unsigned BINARY_VERSION = 1;

// Reads a whole document, header and all, into an empty one; tells what is wrong with it, if anything. Pure. [both]
std::optional<kel_form_error> kel_parse_binary(std::span<const std::byte> bytes, kel_document* document);

// The same, but for the lines' code, which stays where it is: *lines tells where. Pure. [both]
std::optional<kel_form_error> kel_check_binary(std::span<const std::byte> bytes, kel_document* document,
                                               std::span<const unsigned char>* lines);

// As kel_parse_binary for what stands behind the header. Pure. [both]
std::optional<kel_form_error> kel_parse_binary_body(std::span<const std::byte> body, kel_document* document);

// The header for a body that consists of these two pieces. Pure. [both]
std::array<unsigned char, BINARY_HEADER_SIZE> kel_binary_header(std::span<const unsigned char> symbols,
                                                                std::span<const unsigned char> lines);

// The symbol table with which a body begins. Pure. [both]
void kel_format_symbol_table(std::span<const std::string_view> symbols, byte_store* out);

// The checksum that the header holds: CRC-32, polynomial 0xEDB88320 (reflected), continued from `crc`; 0 begins. Pure.
// [both]
std::uint32_t kel_crc32(std::uint32_t crc, std::span<const unsigned char> bytes);
