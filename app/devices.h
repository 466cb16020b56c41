// app/devices.h: where a command's notes go to and come from: a MIDI port, a port of our own, the synth.
// Layer: program; leans on the desktop's MIDI and sound.
// Called by the commands that play, record and follow.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/desktop/midi_open.h"
#include "host/desktop/midi_sender.h"

// The options that choose where notes go to.
struct output_wish {
    std::string port;         // an existing port; empty: none
    std::string virtual_port; // the name of one of our own; empty: none
    std::string soundfont;    // of the synth; empty: the usual one
    bool synth = false;
    bool any() const { return synth || !port.empty() || !virtual_port.empty(); }
};

// Adds --port, --virtual, --synth and --soundfont, which exclude one another where they must. `prefix` stands before the
// first two ("to-" makes them --to-port and --to-virtual). [main]
void add_output_options(CLI::App* command, output_wish& wish, const std::string& prefix = "");

// What the notes go to while it stands; at its end every note is ended.
class note_outputs {
public:
    // Opens what is wished for. Empty, or in one line why it cannot be. [main]
    std::string open(const output_wish& wish);

    // To be called as time passes, as often as one likes: looks every second whether the devices are still there. [main]
    void poll();

    // Ends whatever sounds. [main]
    void silence();

    // Whether something is still dying away. [main]
    bool ringing() const;

private:
    std::string add(std::unique_ptr<midi_wire> wire, const std::string& error);

    std::vector<std::unique_ptr<midi_sender>> senders;
    std::int64_t polled = 0; // kel_now then
    std::uint32_t told_lost = 0;
};

// The options that choose where notes come from.
struct input_wish {
    std::string port;
    std::string virtual_port;
    bool any() const { return !port.empty() || !virtual_port.empty(); }
};

// Adds --port and --virtual in a group of which one option at most is given, exactly one when `required`; the command may
// add others to it. [main]
CLI::Option_group* add_input_options(CLI::App* command, input_wish& wish, bool required);

// Where notes come from while it stands, each handed to the patches' note-in boxes as it comes.
class note_input {
public:
    // Opens what is wished for. Empty, or in one line why it cannot be. [main]
    std::string open(const input_wish& wish, const midi_arrival& arrival = {});

    // Hears no more; what was heard has been carried out. [main]
    void close();

    // As note_outputs::poll. [main]
    void poll();
    // Whether the port was there at the last poll. [main]
    bool there() const { return source && source->there(); }

private:
    std::unique_ptr<midi_source> source;
    std::int64_t polled = 0;
};
