// host/boxes/midi_ports.h: the note-in boxes there are.
// Layer: host, private to midi_device.cpp and notein.cpp.
#pragma once

#include "host/kel.h"

// One box that puts out what comes in.
struct notein : host_object {
    notein* next = nullptr; // the list of all of them; changed at main level under the lockout
    host_outlet* pitch_out = nullptr;
    host_outlet* vel_out = nullptr;
    host_outlet* chan_out = nullptr;
    std::int32_t port = 0;                               // listens to this one; 0: to every port
    std::int32_t channel = 0;                            // the same
    std::array<std::array<std::uint64_t, 2>, 16> keys{}; // bit p set: that pitch of the channel is held
};

// Puts the note out when the box listens to its port and channel. [scheduler]
void notein_receive(notein* x, int port, int channel, int pitch, int velocity);

// Enters the box into the list; takes it out. [main]
void midi_ports_enter(notein* x);
void midi_ports_leave(notein* x);
