// transport/input.cpp: what arrives at the inlets, and where it goes by mode.
// Layer: transport. Called by the host for numbers and lists from cords or the user.
#include "transport/input.h"

#include <algorithm>

#include "core/messages.h"
#include "transport/follow.h"
#include "transport/playback.h"
#include "transport/record.h"

namespace {

void set_input(brisolan* x, int index, std::int32_t value) {
    if (x->restoring) return;
    param_record& p = x->params[static_cast<std::size_t>(index)];
    p.curvalue = value;
    p.isset = std::uint8_t{1};
}

} // namespace

void brisolan_in1(brisolan* x, std::int32_t value) {
    set_input(x, PARAM_PITCH, value);
}
void brisolan_in2(brisolan* x, std::int32_t value) {
    set_input(x, PARAM_VEL, value);
}
void brisolan_in3(brisolan* x, std::int32_t value) {
    set_input(x, PARAM_DUR, value);
}
void brisolan_in4(brisolan* x, std::int32_t value) {
    set_input(x, PARAM_CHAN, value);
}
void brisolan_in5(brisolan* x, std::int32_t value) {
    set_input(x, PARAM_TRACK, value);
}
void brisolan_in6(brisolan* x, std::int32_t value) {
    set_input(x, PARAM_X1, value);
}
void brisolan_in7(brisolan* x, std::int32_t value) {
    set_input(x, PARAM_X2, value);
}

void brisolan_list(brisolan* x, symbol*, std::int32_t argc, const atom* argv) {
    if (x->restoring) return;
    for (int i = std::min<std::int32_t>(argc, NPARAMS) - 1; i >= 1; --i) {
        if (argv[i].type != A_LONG) continue;
        x->params[static_cast<std::size_t>(i)].curvalue = argv[i].l;
        // Kept: a duration given in a list marks Vel as set, not Dur, so that listed notes are still paired with their
        // note-offs. Saved sequences come back as lists and rely on it.
        const int marked = i == PARAM_DUR ? PARAM_VEL : i;
        x->params[static_cast<std::size_t>(marked)].isset = std::uint8_t{1};
    }
    if (argc > 0 && argv[0].type == A_LONG) brisolan_int(x, argv[0].l);
}

void brisolan_int(brisolan* x, std::int32_t value) {
    if (x->mode == MODE_RECORD) {
        brisolan_recordinput(x, value);
    } else if (x->mode == MODE_FOLLOW) {
        brisolan_followinput(x);
    } else {
        brisolan_nth(x, std::max(value, 0));
    }
}

void brisolan_float(brisolan* x, float value) {
    // 2^31 is a float, the largest 32-bit integer is not. What is no number counts as 0.
    constexpr float limit = 2147483648.0F;
    std::int32_t whole = 0;
    if (value >= limit)
        whole = INT32_MAX;
    else if (value < -limit)
        whole = INT32_MIN;
    else if (value == value)
        whole = static_cast<std::int32_t>(value);
    brisolan_int(x, whole);
}
