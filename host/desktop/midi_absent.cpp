// host/desktop/midi_absent.cpp: MIDI ports in a build without RtMidi: none, and the reason.
// Layer: desktop platform.
#include "host/desktop/midi_open.h"
#include "host/desktop/midi_ports.h"

#if !BRISOLAN_HAVE_RTMIDI

std::vector<midi_port> midi_list_ports(midi_direction) {
    return {};
}

std::string midi_why_absent() {
    return "this brisolan was built without MIDI ports (RtMidi and JACK)";
}

std::unique_ptr<midi_wire> midi_open_out(const midi_wish&, std::string& error) {
    error = midi_why_absent();
    return nullptr;
}

std::unique_ptr<midi_source> midi_open_in(const midi_wish&, const midi_arrival&, std::string& error) {
    error = midi_why_absent();
    return nullptr;
}

#endif
