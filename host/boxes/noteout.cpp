// host/boxes/noteout.cpp: MIDI note out: `noteout [port] [channel]`, both 1 when absent.
// Layer: host. Inlets: pitch, which sends the note; velocity, 0 ends the note; channel.
#include <algorithm>

#include "host/boxes/box.h"
#include "host/boxes/boxes.h"
#include "host/boxes/midi_device.h"

namespace {

struct noteout : host_object {
    std::int32_t port = 1;
    std::int32_t velocity = 0;
    std::int32_t channel = 1;
};

host_class* noteout_class = nullptr;

noteout* noteout_new(std::int32_t port, std::int32_t channel) {
    noteout* x = host_object_new<noteout>(noteout_class);
    x->port = std::clamp(port, 1, MIDI_PORTS);
    x->channel = std::max(channel, 1);
    host_inlet_int(x, 2);
    host_inlet_int(x, 1);
    return x;
}

void noteout_free(noteout*) {}

void noteout_velocity(noteout* x, std::int32_t v) {
    x->velocity = v;
}
void noteout_channel(noteout* x, std::int32_t v) {
    x->channel = v;
}

// What is no pitch is not sent; velocity and channel are held in their ranges.
void noteout_pitch(noteout* x, std::int32_t pitch) {
    if (pitch < 0 || pitch > MAX_MIDI_VALUE) return;
    midi_send(x->port, std::clamp(x->channel, 1, MIDI_CHANNELS), pitch,
              std::clamp(x->velocity, 0, MAX_MIDI_VALUE));
}

void noteout_list(noteout* x, symbol*, std::int32_t argc, const atom* argv) {
    spread(x, argc, argv, {noteout_pitch, noteout_velocity, noteout_channel});
}

} // namespace

void noteout_setup() {
    noteout_class = host_class_setup(
        "noteout", host_typed_lifecycle<noteout_new, noteout_free, ARG_DEFLONG, ARG_DEFLONG>());
    host_class_addint(noteout_class, host_typed<noteout_pitch, ARG_LONG>());
    host_class_addinletint(noteout_class, 1, host_typed<noteout_velocity, ARG_LONG>());
    host_class_addinletint(noteout_class, 2, host_typed<noteout_channel, ARG_LONG>());
    host_class_addmethod(noteout_class, "list", host_typed<noteout_list, ARG_LIST>());
}
