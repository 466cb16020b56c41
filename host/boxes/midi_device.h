// host/boxes/midi_device.h: where the note boxes' notes go to and come from.
// Layer: interface between host/boxes/ and whatever plays or takes notes: a MIDI driver, a synth, a display, a test.
// Filled by platforms and the program; called by the note boxes.
#pragma once

#include <cstdint>

// Somebody who hears what the patches play. The functions are called at scheduler level, or at main level with the
// lockout held, one call at a time; they neither block nor allocate. kel_now() is the time at which a note was due.
struct midi_device {
    void* user = nullptr; // handed to every function

    // A note begins, or ends when `velocity` is 0. `port` is 1 to MIDI_PORTS, `channel` 1 to 16, `pitch` and `velocity` 0 to
    // 127.
    void (*note)(void* user, int port, int channel, int pitch, int velocity) = nullptr;
};

constexpr int MAX_MIDI_DEVICES = 8;
constexpr int MIDI_PORTS = 16;

// From now on the device hears every note; no more. The record stays the caller's and must live in between. False when
// there are MAX_MIDI_DEVICES already. [main]
bool midi_device_add(const midi_device* device);
void midi_device_remove(const midi_device* device);

// A note leaves for every device. Values as in midi_device::note. [scheduler]
void midi_send(int port, int channel, int pitch, int velocity);

// Ends every note that was begun and not ended: when a patch ends, however it does. [scheduler]
void midi_silence();

// A note has come in: every note-in box that listens to the port and the channel puts it out. Values as in
// midi_device::note; others are dropped. [scheduler]
void midi_receive(int port, int channel, int pitch, int velocity);

// The same in the shape that a device's thread hands to the host: kel_post(midi_arrived, nullptr, midi_place(port,
// channel), midi_key(pitch, velocity), the time at which it came). [scheduler]
void midi_arrived(void*, std::int32_t place, std::int32_t key);
constexpr std::int32_t midi_place(int port, int channel) {
    return port << 8 | channel;
}
constexpr std::int32_t midi_key(int pitch, int velocity) {
    return pitch << 8 | velocity;
}
