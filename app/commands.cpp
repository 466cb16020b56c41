// app/commands.cpp: the program's flags and the order of its commands, as help shows them.
// Layer: program.
#include "app/commands.h"

namespace {

constexpr const char* VERSION = "brisolan " BRISOLAN_VERSION;

std::string why_empty(const std::string& word) {
    return word.empty() ? "a value is wanted, not an empty word" : "";
}

// What no command's own options say: an empty word, as of a variable that is not set, is no value (but for the name of
// an instance, which may have none), and the version is told behind a command as well.
void finish_command(CLI::App* c, bool is_group) {
    for (CLI::Option* o : c->get_options()) {
        if (o->get_expected_max() > 0 && o->get_name() != "--name") o->check(CLI::Validator(why_empty, ""));
    }
    for (CLI::App* group : c->get_subcommands([](CLI::App*) { return true; })) finish_command(group, true);
    if (!is_group) c->set_version_flag("--version", VERSION)->group("");
}

} // namespace

void set_up_command_line(CLI::App& program, int& status) {
    program.set_version_flag("--version", VERSION);
    program.require_subcommand(1);
    add_edit_command(program, status);
    add_play_command(program, status);
    add_record_command(program, status);
    add_follow_command(program, status);
    add_patch_command(program, status);
    add_list_command(program, status);
    add_convert_command(program, status);
    add_render_command(program, status);
    add_ports_command(program, status);
    add_script_command(program, status);
    for (CLI::App* c : program.get_subcommands([](CLI::App*) { return true; })) finish_command(c, false);
}
