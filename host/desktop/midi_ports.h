// host/desktop/midi_ports.h: the MIDI ports of this machine, and how a person names one.
// Layer: desktop platform; knows no MIDI library. Listed and opened by rtmidi_ports.cpp, where there is RtMidi.
// Called by `brisolan ports`, the commands that play, record and follow, and the editor's port menus.
#pragma once

#include <string>
#include <vector>

enum class midi_direction { in, out };

struct midi_port {
    int number = 0;   // its place among the ports of its direction, from 0
    std::string name; // as the MIDI system calls it
    std::string api;  // "ALSA" or "JACK"
};

// The ports of a direction, ALSA's before JACK's; empty when there are none. [main]
std::vector<midi_port> midi_list_ports(midi_direction direction);

// Why there can be no MIDI at all, as one line without a prefix; empty when a MIDI system answers, though it may have no
// ports. [main]
std::string midi_why_absent();

// The port that `wanted` names: by its number, its whole name, or the beginning of its name and of no other's (upper and
// lower case count as equal there). Null when none or several fit; `error` then says so in one line and lists the
// candidates. [both]
const midi_port* midi_choose_port(const std::vector<midi_port>& ports, const std::string& wanted,
                                  midi_direction direction, std::string& error);
