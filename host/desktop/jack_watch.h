// host/desktop/jack_watch.h: whether a JACK server runs, and when it dies, which RtMidi does not tell.
// Layer: desktop platform; the only file beside RtMidi and FluidSynth that speaks to JACK. Compiled where JACK's own
// header and library are.
// Called by rtmidi_ports.cpp and the synth.
#pragma once

#include <memory>

// A client without ports that the server tells of its end.
class jack_watch {
public:
    // Null when no server answers. Never starts one. [main]
    static std::unique_ptr<jack_watch> open();
    ~jack_watch();
    jack_watch(const jack_watch&) = delete;
    jack_watch& operator=(const jack_watch&) = delete;

    // False from the moment the server ended or threw the program out, whatever it does later. Any thread. [both]
    bool alive() const;

    // Whether the server has a port of this whole name. [main]
    bool has_port(const char* name) const;

private:
    jack_watch() = default;
    struct state;
    std::unique_ptr<state> inside;
};
