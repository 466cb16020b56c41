// app/devices.cpp: where a command's notes go to and come from.
// Layer: program.
#include "app/devices.h"

#include <algorithm>

#include "app/live.h"
#include "host/desktop/synth.h"
#include "host/kernel/kernel.h"

namespace {

constexpr kel_time POLL_EVERY = 1000 * NS_PER_MS;

// Whether it is time to look after the devices again.
bool poll_is_due(std::int64_t& polled) {
    const kel_time now = kel_now();
    if (now - polled < POLL_EVERY) return false;
    polled = now;
    return true;
}

} // namespace

void add_output_options(CLI::App* command, output_wish& wish, const std::string& prefix) {
    CLI::Option* const port = command->add_option(
        "--" + prefix + "port", wish.port,
        "Play to this MIDI output: its number, name or the name's beginning; `brisolan ports` lists them");
    command
        ->add_option("--" + prefix + "virtual", wish.virtual_port,
                     "Play to a MIDI output of our own with this name, for other programs to connect to")
        ->excludes(port);
    command->add_flag("--synth", wish.synth, "Play through the synth");
    command->add_option("--soundfont", wish.soundfont, "The synth's sound font, an .sf2 or .sf3 file");
}

std::string note_outputs::add(std::unique_ptr<midi_wire> wire, const std::string& error) {
    if (!wire) return error;
    auto sender = std::make_unique<midi_sender>(std::move(wire));
    if (!sender->hears()) return "too many MIDI devices are in use";
    senders.push_back(std::move(sender));
    return "";
}

std::string note_outputs::open(const output_wish& wish) {
    std::string error;
    std::string why;
    if (!wish.port.empty()) why = add(midi_open_out({wish.port, false}, error), error);
    if (why.empty() && !wish.virtual_port.empty())
        why = add(midi_open_out({wish.virtual_port, true}, error), error);
    if (why.empty() && wish.synth) why = add(synth_open(wish.soundfont, error), error);
    return why;
}

void note_outputs::poll() {
    if (!poll_is_due(polled)) return;
    std::uint32_t lost = 0;
    for (const std::unique_ptr<midi_sender>& s : senders) {
        s->wire().poll();
        lost += s->lost();
    }
    if (lost != told_lost)
        host_error("%u MIDI messages were lost: the device takes no more", lost - told_lost);
    told_lost = lost;
}

void note_outputs::silence() {
    const host_locked_out now;
    for (const std::unique_ptr<midi_sender>& s : senders) s->silence();
}

bool note_outputs::ringing() const {
    return std::any_of(senders.begin(), senders.end(),
                       [](const std::unique_ptr<midi_sender>& s) { return s->wire().ringing(); });
}

CLI::Option_group* add_input_options(CLI::App* command, input_wish& wish, bool required) {
    CLI::Option_group* const group = command->add_option_group("Input");
    group->add_option(
        "--port", wish.port,
        "Listen to this MIDI input: its number, name or the name's beginning; `brisolan ports` lists them");
    group->add_option("--virtual", wish.virtual_port,
                      "Listen to a MIDI input of our own with this name, for other programs to connect to");
    group->require_option(required ? 1 : 0, 1);
    return group;
}

std::string note_input::open(const input_wish& wish, const midi_arrival& arrival) {
    std::string error;
    source = wish.virtual_port.empty() ? midi_open_in({wish.port, false}, arrival, error)
                                       : midi_open_in({wish.virtual_port, true}, arrival, error);
    return error;
}

void note_input::close() {
    source.reset();
    let_arrive();
}

void note_input::poll() {
    if (source && poll_is_due(polled)) source->poll();
}
