// app/command_ports.cpp: `brisolan ports`: the MIDI ports that this machine has, as the other commands' --port takes them.
// Layer: program.
#include <cstdio>

#include "app/commands.h"
#include "app/say.h"
#include "host/desktop/midi_ports.h"

namespace {

// "in 0 JACK name": the name last, since it may hold blanks.
void print_ports(const char* direction, const std::vector<midi_port>& ports) {
    for (const midi_port& p : ports)
        print_line(std::string(direction) + " " + std::to_string(p.number) + " " + p.api + " " + p.name);
}

int run_ports() {
    const std::string absent = midi_why_absent();
    if (!absent.empty()) {
        say(absent);
        return EXIT_DONE;
    }
    const std::vector<midi_port> in = midi_list_ports(midi_direction::in);
    const std::vector<midi_port> out = midi_list_ports(midi_direction::out);
    print_ports("in", in);
    print_ports("out", out);
    if (in.empty() && out.empty()) say("there are no MIDI ports");
    return EXIT_DONE;
}

} // namespace

void add_ports_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand(
        "ports", "List the MIDI ports, one a line: in or out, its number, ALSA or JACK, its name");
    c->callback([&status] { status = run_ports(); });
}
