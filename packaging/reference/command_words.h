// packaging/reference/command_words.h: what the program's commands and options are called, take and do, as plain records.
// Layer: a tool of the build. Read by the writers of the manual page and of the shells' completions.
#pragma once

#include <string>
#include <vector>

// What stands behind an option, or at a place of the command line.
enum class takes { nothing, number, text, choice, file, in_port, out_port };

struct option_words {
    std::vector<std::string> names; // with their dashes; of a positional its one name, without
    takes what = takes::nothing;
    std::string placeholder;          // for the value: N, X, TEXT, FILE, PORT, or the choices
    std::vector<std::string> choices; // takes::choice alone
    std::string range;                // "0 to 4", or empty
    std::string default_value;        // as help shows it; empty: none
    std::string purpose;              // one sentence, without a full stop
    bool positional = false;
    bool required = false;
    bool many = false; // may be given any number of times
};

struct command_words {
    std::string name;
    std::string purpose;
    std::vector<option_words> options;
    std::vector<std::string> one_of; // sentences on options of which one is needed, or at most one allowed

    // Whether files stand on its command line, without an option in front.
    bool takes_files() const;
};

struct program_words {
    command_words itself; // its own options, those before a command
    std::vector<command_words> commands;
    std::string version;
};

// The program as its command line is set up, so that nothing can be called otherwise than it is.
program_words words_of_program();
