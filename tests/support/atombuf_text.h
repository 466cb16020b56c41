// tests/support/atombuf_text.h: what lies in an atom buffer, or what a patch saves itself as, in text form.
// Test layer. Used by tests and by the fuzzers, which hold no test library.
#pragma once

#include <span>
#include <string>

#include "host/kernel/atombuf.h"
#include "host/kernel/patchfile.h"
#include "host/kernel/textform.h"

inline std::string text_of(const host_atombuf* lines) {
    std::string text;
    kel_atombuf_lines(lines, [&text](std::span<const atom> line) {
        kel_format_atoms(line, &text);
        text += ";\n";
        return true;
    });
    return text;
}

inline std::string text_of(host_patcher* patch) {
    host_atombuf* const lines = host_atombuf_new();
    kel_patch_save(patch, lines);
    const std::string text = text_of(lines);
    host_atombuf_free(lines);
    return text;
}
