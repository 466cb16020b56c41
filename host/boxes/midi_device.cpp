// host/boxes/midi_device.cpp: who hears what is played, and who is told what comes in.
// Layer: host.
#include "host/boxes/midi_device.h"

#include <algorithm>
#include <array>
#include <bitset>

#include "host/boxes/box.h"
#include "host/boxes/midi_ports.h"

namespace {

// Process-wide: written at main level under the lockout by the devices' and boxes' owners, who take out what they put
// in; read while notes pass.
std::array<const midi_device*, MAX_MIDI_DEVICES> devices{};
notein* first_notein = nullptr;

using midi_keys = std::bitset<MAX_MIDI_VALUE + 1>;

// The notes that were begun and not ended, by port, channel and pitch. Written as notes pass, one at a time.
std::array<midi_keys, std::size_t{MIDI_PORTS} * MIDI_CHANNELS> sounding;

midi_keys& keys_of(int port, int channel) {
    return sounding[static_cast<std::size_t>((port - 1) * MIDI_CHANNELS + channel - 1)];
}

bool in_range(int port, int channel, int pitch, int velocity) {
    return port >= 1 && port <= MIDI_PORTS && channel >= 1 && channel <= MIDI_CHANNELS && pitch >= 0 &&
           pitch <= MAX_MIDI_VALUE && velocity >= 0 && velocity <= MAX_MIDI_VALUE;
}

} // namespace

bool midi_device_add(const midi_device* device) {
    const host_locked_out now;
    const auto free = std::find(devices.begin(), devices.end(), nullptr);
    if (free == devices.end()) return false;
    *free = device;
    return true;
}

void midi_device_remove(const midi_device* device) {
    const host_locked_out now;
    std::replace(devices.begin(), devices.end(), device, static_cast<const midi_device*>(nullptr));
}

void midi_send(int port, int channel, int pitch, int velocity) {
    host_expect_scheduler("midi_send");
    keys_of(port, channel).set(static_cast<std::size_t>(pitch), velocity > 0);
    for (const midi_device* d : devices) {
        if (d && d->note) d->note(d->user, port, channel, pitch, velocity);
    }
}

void midi_silence() {
    host_expect_scheduler("midi_silence");
    for (int port = 1; port <= MIDI_PORTS; ++port) {
        for (int channel = 1; channel <= MIDI_CHANNELS; ++channel) {
            const midi_keys keys = keys_of(port, channel);
            for (int pitch = 0; keys.any() && pitch <= MAX_MIDI_VALUE; ++pitch) {
                if (keys[static_cast<std::size_t>(pitch)]) midi_send(port, channel, pitch, 0);
            }
        }
    }
}

void midi_receive(int port, int channel, int pitch, int velocity) {
    host_expect_scheduler("midi_receive");
    if (!in_range(port, channel, pitch, velocity)) return;
    for (notein* x = first_notein; x; x = x->next) notein_receive(x, port, channel, pitch, velocity);
}

void midi_arrived(void*, std::int32_t place, std::int32_t key) {
    midi_receive(place >> 8, place & 0xFF, key >> 8, key & 0xFF);
}

void midi_ports_enter(notein* x) {
    const host_locked_out now;
    notein** last = &first_notein;
    while (*last) last = &(*last)->next;
    *last = x;
}

void midi_ports_leave(notein* x) {
    const host_locked_out now;
    notein** at = &first_notein;
    while (*at && *at != x) at = &(*at)->next;
    if (*at) *at = x->next;
}
