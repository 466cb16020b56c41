// host/boxes/notein.cpp: MIDI note in: `notein [port] [channel]`, each 0 or absent for all of them.
// Layer: host. A note that comes in leaves as channel, velocity and pitch, in this order, the rightmost outlet first.
#include "host/boxes/boxes.h"
#include "host/boxes/midi_ports.h"

namespace {

host_class* notein_class = nullptr;

notein* notein_new(std::int32_t port, std::int32_t channel) {
    notein* x = host_object_new<notein>(notein_class);
    x->port = port;
    x->channel = channel;
    x->chan_out = host_outlet_int_new(x);
    x->vel_out = host_outlet_int_new(x);
    x->pitch_out = host_outlet_int_new(x);
    midi_ports_enter(x);
    return x;
}

void notein_free(notein* x) {
    midi_ports_leave(x);
}

std::uint64_t& keys_of(notein* x, int channel, int pitch) {
    return x->keys[static_cast<std::size_t>(channel - 1)][static_cast<std::size_t>(pitch / 64)];
}

void put_out(notein* x, int channel, int pitch, int velocity) {
    host_outlet_int(x->chan_out, channel);
    host_outlet_int(x->vel_out, velocity);
    host_outlet_int(x->pitch_out, pitch);
}

// Ends every key that is held, as if the player had let go of it now: before a recording is closed.
void notein_release(notein* x) {
    for (int channel = 1; channel <= 16; ++channel) {
        for (int pitch = 0; pitch <= 127; ++pitch) {
            std::uint64_t& keys = keys_of(x, channel, pitch);
            const std::uint64_t key = std::uint64_t{1} << pitch % 64;
            if (!(keys & key)) continue;
            keys &= ~key;
            put_out(x, channel, pitch, 0);
        }
    }
}

} // namespace

void notein_receive(notein* x, int port, int channel, int pitch, int velocity) {
    if ((x->port && x->port != port) || (x->channel && x->channel != channel)) return;
    std::uint64_t& keys = keys_of(x, channel, pitch);
    const std::uint64_t key = std::uint64_t{1} << pitch % 64;
    keys = velocity ? keys | key : keys & ~key;
    put_out(x, channel, pitch, velocity);
}

void notein_setup() {
    notein_class =
        host_class_setup("notein", host_typed_lifecycle<notein_new, notein_free, ARG_DEFLONG, ARG_DEFLONG>());
    host_class_addmethod(notein_class, "release", host_typed<notein_release>());
}
