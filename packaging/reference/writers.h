// packaging/reference/writers.h: the texts that are made of the program's commands and options.
// Layer: a tool of the build. Called by its main.
#pragma once

#include <string>

#include "packaging/reference/command_words.h"

// The manual page: a template in man's language, in which a line "@OPTIONS@" stands for the program's own options,
// "@COMMANDS@" for all commands with theirs, "@MESSAGES@" for the messages that the object takes from a patch, and
// "@VERSION@" anywhere for the version.
std::string manual_page(const program_words& program, const std::string& page);

// Completion in the three shells. Each completes commands, options, the words that an option may be followed by, the
// names of MIDI ports, and files.
std::string bash_completion(const program_words& program);
std::string zsh_completion(const program_words& program);
std::string fish_completion(const program_words& program);
