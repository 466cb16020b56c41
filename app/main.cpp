// app/main.cpp: the command line.
// Layer: program.
#include <algorithm>
#include <string>
#include <vector>

#include <unistd.h>

#include "app/commands.h"

namespace {

// A line that says what is wrong with the command line, and where help is.
std::string misuse(const CLI::App* program, const CLI::Error& e) {
    std::string command = "brisolan";
    for (const CLI::App* chosen : program->get_subcommands()) command += " " + chosen->get_name();
    return command + ": " + e.what() + " (" + command + " --help tells more)\n";
}

// Whether the word names a file rather than a command: `brisolan FILE` is short for `brisolan edit FILE`.
bool names_a_file(const CLI::App& program, const std::string& word) {
    if (word.empty() || word[0] == '-') return false;
    const auto called = [&word](const CLI::App* command) { return command->get_name() == word; };
    if (!program.get_subcommands(called).empty()) return false;
    return word.find('.') != std::string::npos || word.find('/') != std::string::npos ||
           access(word.c_str(), F_OK) == 0;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App program(
        "A score object for a visual patching host: plays, records, follows and edits note sequences.",
        "brisolan");
    program.failure_message(misuse);
    int status = EXIT_DONE;
    set_up_command_line(program, status);
    std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty() || names_a_file(program, words.front())) words.insert(words.begin(), "edit");
    std::reverse(words.begin(), words.end()); // as the parser takes them
    try {
        program.parse(words);
    } catch (const CLI::ParseError& e) {
        return program.exit(e) == 0 ? EXIT_DONE : EXIT_MISUSE;
    }
    return status;
}
