// host/desktop/midi_open.h: opened MIDI ports: one that notes go to, one that notes come from.
// Layer: desktop platform. Made by rtmidi_ports.cpp; the synth is a wire too.
// Called by the commands and the editor, the wire through a midi_sender.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "host/boxes/midi_device.h"

// Which port a person wants.
struct midi_wish {
    std::string name;          // as midi_choose_port takes it; of a port of our own, its name
    bool virtual_port = false; // a port of our own, for other programs to connect to
};

// Where MIDI messages go to in the end: a port, a synth.
class midi_wire {
public:
    virtual ~midi_wire() = default;

    // Sends one whole message of three bytes, or drops it when the device has gone. May block. One thread at a time,
    // which need not be one of the host's.
    virtual void send(std::span<const std::uint8_t, 3> message) = 0;

    // Looks, about once a second, whether the device is still there. Tells on the console, once, when it has gone and
    // when it is back; a device that is back is connected again. [main]
    virtual void poll() {}

    // Whether something that has been ended is still to be heard. [main]
    virtual bool ringing() const { return false; }
};

// Who is told of a note that came in, at scheduler level at the time at which it came: midi_arrived, or whoever hands it
// on to that. `context` must stay until what was posted has been carried out after the source has gone.
struct midi_arrival {
    void (*call)(void* context, std::int32_t place, std::int32_t key) = midi_arrived;
    void* context = nullptr;
};

// Where notes come from, as midi_place and midi_key put them; the port is 1.
class midi_source {
public:
    virtual ~midi_source() = default;
    virtual void poll() = 0;        // as a wire's. [main]
    virtual bool there() const = 0; // whether the device was, at the last poll. [main]
};

// Opens a port for notes to go to, for notes to come from. Null when it cannot be; `error` then says why in one line.
// [main]
std::unique_ptr<midi_wire> midi_open_out(const midi_wish& wish, std::string& error);
std::unique_ptr<midi_source> midi_open_in(const midi_wish& wish, const midi_arrival& arrival,
                                          std::string& error);
