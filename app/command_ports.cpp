// app/command_ports.cpp: `brisolan ports`: the MIDI ports that this machine has, as the other commands' --port takes them.
// Layer: program.
#include <cstdio>

#include "app/commands.h"
#include "host/desktop/midi_ports.h"

namespace {

// "in 0 JACK name": the name last, since it may hold blanks.
void print_ports(const char* direction, const std::vector<midi_port>& ports) {
    for (const midi_port& p : ports)
        std::printf("%s %d %s %s\n", direction, p.number, p.api.c_str(), p.name.c_str());
}

int run_ports() {
    const std::string absent = midi_why_absent();
    if (!absent.empty()) {
        std::fprintf(stderr, "brisolan: %s\n", absent.c_str());
        return EXIT_DONE;
    }
    const std::vector<midi_port> in = midi_list_ports(midi_direction::in);
    const std::vector<midi_port> out = midi_list_ports(midi_direction::out);
    print_ports("in", in);
    print_ports("out", out);
    if (in.empty() && out.empty()) std::fprintf(stderr, "brisolan: there are no MIDI ports\n");
    if (std::fflush(stdout) == 0) return EXIT_DONE;
    std::perror("brisolan: standard output");
    return EXIT_FAILED;
}

} // namespace

void add_ports_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand(
        "ports", "List the MIDI ports, one a line: in or out, its number, ALSA or JACK, its name");
    c->callback([&status] { status = run_ports(); });
}
