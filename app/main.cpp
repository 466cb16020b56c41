// app/main.cpp: the command line.
// Layer: program.
#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "app/commands.h"
#include "app/say.h"
#include "app/script_words.h"

namespace {

// What is wrong with the command line. A word that nobody expected is behind most of what is missing.
std::string what_is_wrong(const CLI::App& program, const CLI::Error& e) {
    const std::vector<std::string> unexpected = program.remaining(true);
    if (unexpected.empty()) return e.what();
    const std::string& word = unexpected.front();
    if (word.size() > 1 && word[0] == '-') {
        const bool file = access(word.c_str(), F_OK) == 0;
        return "no such option: " + word + (file ? "; the file is named by ./" + word : "");
    }
    return program.get_subcommands().empty() ? "no command and no file of that name: " + word : e.what();
}

// A line that says so, and where help is.
std::string misuse_line(const CLI::App* program, const CLI::Error& e) {
    std::string command = "brisolan";
    for (const CLI::App* chosen : program->get_subcommands()) command += " " + chosen->get_name();
    return one_line(command + ": " + what_is_wrong(*program, e) + " (" + command + " --help tells more)") +
           "\n";
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
    keep_standard_streams();
    CLI::App program(
        "A score object for a visual patching host: plays, records, follows and edits note sequences.",
        "brisolan");
    program.failure_message(misuse_line);
    int status = EXIT_DONE;
    set_up_command_line(program, status);
    std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty() || names_a_file(program, words.front())) words.insert(words.begin(), "edit");
    std::reverse(words.begin(), words.end()); // as the parser takes them
    try {
        program.parse(words);
    } catch (const CLI::ParseError& e) {
        std::ostringstream told; // help, the version
        status = program.exit(e, told) == 0 ? EXIT_DONE : EXIT_MISUSE;
        print_text(told.str());
    }
    return finish_output(status);
}
