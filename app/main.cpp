// app/main.cpp: the command line.
// Layer: program.
#include <clocale>

#include "app/commands.h"

namespace {

// A line that says what is wrong with the command line, and where help is.
std::string misuse(const CLI::App* program, const CLI::Error& e) {
    std::string command = "brisolan";
    for (const CLI::App* chosen : program->get_subcommands()) command += " " + chosen->get_name();
    return command + ": " + e.what() + " (" + command + " --help tells more)\n";
}

} // namespace

int main(int argc, char** argv) {
    CLI::App program(
        "A score object for a visual patching host: plays, records, follows and edits note sequences.",
        "brisolan");
    program.set_version_flag("--version", "brisolan " BRISOLAN_VERSION);
    program.require_subcommand(1);
    program.failure_message(misuse);
    int status = EXIT_DONE;
    add_play_command(program, status);
    add_record_command(program, status);
    add_follow_command(program, status);
    add_patch_command(program, status);
    add_list_command(program, status);
    add_convert_command(program, status);
    add_render_command(program, status);
    add_ports_command(program, status);
    add_script_command(program, status);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return program.exit(e) == 0 ? EXIT_DONE : EXIT_MISUSE;
    }
    return status;
}
