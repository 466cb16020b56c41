// host/boxes/makenote.cpp: the note-off maker: `makenote [velocity] [duration] [channel]`.
// Layer: host. Inlets: pitch, which begins the note; velocity; duration in milliseconds; channel. Outlets: pitch,
// velocity, channel, put out from the right.
//
// A key, which is a pitch on a channel, sounds once at a time. Struck while it sounds, it is ended and begun anew at once,
// and sounds until the last of its notes has ended: two voices on one key leave it neither hanging nor cut off.
#include <algorithm>
#include <cmath>

#include "host/boxes/box.h"
#include "host/boxes/boxes.h"

namespace {

constexpr int PITCHES = MAX_MIDI_VALUE + 1;
constexpr int KEYS = MIDI_CHANNELS * PITCHES;
constexpr std::int32_t DEFAULT_VELOCITY = 64;
constexpr std::int32_t DEFAULT_DURATION = 200;

struct makenote : host_object {
    host_outlet* pitch_out = nullptr;
    host_outlet* vel_out = nullptr;
    host_outlet* chan_out = nullptr;
    host_clock* clock = nullptr; // due when the next key ends
    std::int32_t velocity = DEFAULT_VELOCITY;
    std::int32_t duration = DEFAULT_DURATION;
    std::int32_t channel = 1;
    float speed = 1; // durations are divided by it
    // The keys that sound, the one struck first at the front, and when each ends, host_now's nanoseconds.
    std::int32_t nsounding = 0;
    std::array<std::int16_t, KEYS> sounding{};
    std::array<std::int64_t, KEYS> ends{};
};

host_class* makenote_class = nullptr;

void put_out(makenote* x, int key, std::int32_t velocity) {
    host_outlet_int(x->chan_out, key / PITCHES + 1);
    host_outlet_int(x->vel_out, velocity);
    host_outlet_int(x->pitch_out, key % PITCHES);
}

// The place of a key among those that sound; nsounding when it does not.
std::int32_t place_of(const makenote* x, int key) {
    const auto* const end = x->sounding.data() + x->nsounding;
    return static_cast<std::int32_t>(std::find(x->sounding.data(), end, key) - x->sounding.data());
}

void forget(makenote* x, std::int32_t place) {
    std::copy(x->sounding.data() + place + 1, x->sounding.data() + x->nsounding, x->sounding.data() + place);
    x->nsounding -= 1;
}

void set_clock(makenote* x) {
    if (x->nsounding == 0) {
        host_clock_unset(x->clock);
        return;
    }
    std::int64_t first = INT64_MAX;
    for (std::int32_t i = 0; i < x->nsounding; ++i)
        first = std::min(first, x->ends[static_cast<std::size_t>(x->sounding[static_cast<std::size_t>(i)])]);
    const std::int64_t ms = (first - host_now() + NS_PER_MILLISECOND - 1) / NS_PER_MILLISECOND;
    host_clock_delay(x->clock, static_cast<std::int32_t>(std::clamp<std::int64_t>(ms, 0, INT32_MAX)));
}

// Ends the keys whose time has come, or all of them. What is put out may come back: the list is looked at anew.
void end_keys(makenote* x, bool all) {
    const std::int64_t now = host_now();
    for (std::int32_t i = 0; i < x->nsounding;) {
        const int key = x->sounding[static_cast<std::size_t>(i)];
        if (!all && x->ends[static_cast<std::size_t>(key)] > now) {
            ++i;
            continue;
        }
        forget(x, i);
        put_out(x, key, 0);
    }
    set_clock(x);
}

void makenote_due(makenote* x) {
    end_keys(x, false);
}
void makenote_stop(makenote* x) {
    end_keys(x, true);
}

void strike(makenote* x, int key, std::int32_t velocity) {
    const bool again = place_of(x, key) < x->nsounding;
    const double ms = std::max(x->duration, 0) / static_cast<double>(x->speed);
    const std::int64_t length = static_cast<std::int64_t>(std::min(ms + 0.5, 2147483647.0));
    const std::int64_t end = host_now() + length * NS_PER_MILLISECOND;
    std::int64_t& ends = x->ends[static_cast<std::size_t>(key)];
    ends = again ? std::max(ends, end) : end;
    if (again)
        put_out(x, key, 0);
    else
        x->sounding[static_cast<std::size_t>(x->nsounding++)] = static_cast<std::int16_t>(key);
    set_clock(x);
    put_out(x, key, velocity);
}

// A velocity of 0 ends the key now. What is no pitch or no channel makes no note.
void makenote_pitch(makenote* x, std::int32_t pitch) {
    if (pitch < 0 || pitch > MAX_MIDI_VALUE || x->channel < 1 || x->channel > MIDI_CHANNELS) return;
    const int key = (x->channel - 1) * PITCHES + pitch;
    if (x->velocity > 0) {
        strike(x, key, std::min(x->velocity, MAX_MIDI_VALUE));
        return;
    }
    const std::int32_t place = place_of(x, key);
    if (place == x->nsounding) return;
    forget(x, place);
    set_clock(x);
    put_out(x, key, 0);
}

void makenote_velocity(makenote* x, std::int32_t v) {
    x->velocity = v;
}
void makenote_duration(makenote* x, std::int32_t v) {
    x->duration = v;
}
void makenote_channel(makenote* x, std::int32_t v) {
    x->channel = v;
}

void makenote_list(makenote* x, symbol*, std::int32_t argc, const atom* argv) {
    spread(x, argc, argv, {makenote_pitch, makenote_velocity, makenote_duration, makenote_channel});
}

void makenote_speed(makenote* x, float speed) {
    if (speed > 0 && std::isfinite(speed))
        x->speed = speed;
    else
        host_error("makenote: a speed is a number above 0");
}

makenote* makenote_new(std::int32_t argc, const atom* argv) {
    makenote* x = host_object_new<makenote>(makenote_class);
    x->velocity = whole(number_at(argc, argv, 0, DEFAULT_VELOCITY));
    x->duration = whole(number_at(argc, argv, 1, DEFAULT_DURATION));
    x->channel = whole(number_at(argc, argv, 2, 1));
    x->clock = host_clock_new<makenote_due>(x);
    for (int i = 3; i >= 1; --i) host_inlet_int(x, i);
    x->chan_out = host_outlet_int_new(x);
    x->vel_out = host_outlet_int_new(x);
    x->pitch_out = host_outlet_int_new(x);
    return x;
}

void makenote_free(makenote* x) {
    host_clock_free(x->clock);
}

} // namespace

void makenote_setup() {
    makenote_class =
        host_class_setup("makenote", host_typed_lifecycle<makenote_new, makenote_free, ARG_LIST>());
    host_class_addint(makenote_class, host_typed<makenote_pitch, ARG_LONG>());
    host_class_addinletint(makenote_class, 1, host_typed<makenote_velocity, ARG_LONG>());
    host_class_addinletint(makenote_class, 2, host_typed<makenote_duration, ARG_LONG>());
    host_class_addinletint(makenote_class, 3, host_typed<makenote_channel, ARG_LONG>());
    host_class_addmethod(makenote_class, "list", host_typed<makenote_list, ARG_LIST>());
    host_class_addmethod(makenote_class, "stop", host_typed<makenote_stop>());
    host_class_addmethod(makenote_class, "speed", host_typed<makenote_speed, ARG_FLOAT>());
}
