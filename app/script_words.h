// app/script_words.h: a line of the script language taken apart into words and atoms.
// Layer: program. Called by the script runner; a pure reader, which is fuzzed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/kel.h"

struct script_word {
    std::string text;
    bool quoted = false; // stood, at least in part, in double quotes: a symbol whatever it looks like
};

// The words of a line, blanks between them; `error` says why when the line has none that can be read. [both]
std::vector<script_word> script_split(const std::string& line, std::string& error);

// What a word is as an atom: digits with or without a minus an integer, with one point among or beside them a float, any
// other a symbol. An integer beyond 32 bits sets `error`. [main]
std::optional<atom> script_atom(const script_word& word, std::string& error);

// The text with its control characters as escapes, `\x01` for one that has no letter: a line whatever is in it. [both]
std::string one_line(const std::string& text);

// The text in double quotes, with the escapes that script_split takes. [both]
std::string script_quote(const std::string& text);
