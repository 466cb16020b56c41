// app/commands.cpp: the program's flags and the order of its commands, as help shows them.
// Layer: program.
#include "app/commands.h"

void set_up_command_line(CLI::App& program, int& status) {
    program.set_version_flag("--version", "brisolan " BRISOLAN_VERSION);
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
}
