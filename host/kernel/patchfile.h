// host/kernel/patchfile.h: patches as files: lines that make boxes, fill them, place them and connect them.
// Layer: kernel; docs/patch-format.md tells the form. Called by the program's commands, platforms, tests and the fuzzer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/kernel/patcher.h"

// Reads a patch into an empty patcher, and bangs what wants a bang at load. A line that cannot be carried out gives one
// line on the console that names the file, the line and the reason, and the next one is read: it is kept, and written
// back. False, with such a line and nothing made, when the file cannot be read or its text has no form at all. [main]
bool kel_patch_read(host_patcher* p, const char* name, std::int16_t path);

// The same from a text that is called `name` on the console. [main]
bool kel_patch_parse(host_patcher* p, std::string_view text, const char* name);

// Appends the lines of the whole patch. [main]
void kel_patch_save(const host_patcher* p, host_atombuf* into);

// Writes the patch, as ATOMBUF_TEXT or ATOMBUF_BINARY, and marks it unchanged when that was done. A failure gives a
// console line. [main]
host_err kel_patch_write(host_patcher* p, const char* name, std::int16_t path, int form);
