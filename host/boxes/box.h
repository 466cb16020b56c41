// host/boxes/box.h: what several of the small classes share.
// Layer: host, private to host/boxes/.
#pragma once

#include <array>

#include "host/kel.h"

constexpr std::int32_t MAX_MIDI_VALUE = 127; // of a pitch or a velocity
constexpr std::int32_t MIDI_CHANNELS = 16;
constexpr std::int64_t NS_PER_MILLISECOND = 1'000'000;

// A number as an integer: cut toward zero, held in 32 bits; what is no number is 0.
inline std::int32_t whole(double v) {
    if (!(v > -2147483648.0)) return v == v ? INT32_MIN : 0;
    return v >= 2147483647.0 ? INT32_MAX : static_cast<std::int32_t>(v);
}

// Hands a list's atoms to the handlers of the inlets, the rightmost first; an atom that is no number leaves its inlet as
// it was. [scheduler]
template <class T, std::size_t N>
void spread(T* x, std::int32_t argc, const atom* argv, void (*const (&inlets)[N])(T*, std::int32_t)) {
    for (std::size_t i = N; i-- > 0;) {
        if (static_cast<std::int32_t>(i) >= argc) continue;
        if (argv[i].type == A_LONG) inlets[i](x, argv[i].l);
        if (argv[i].type == A_FLOAT) inlets[i](x, whole(static_cast<double>(argv[i].f)));
    }
}

// The number at a place of a constructor's arguments; `otherwise` when there is none there.
inline double number_at(std::int32_t argc, const atom* argv, std::int32_t i, double otherwise) {
    if (i >= argc) return otherwise;
    if (argv[i].type == A_LONG) return argv[i].l;
    return argv[i].type == A_FLOAT ? static_cast<double>(argv[i].f) : otherwise;
}
