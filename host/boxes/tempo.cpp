// host/boxes/tempo.cpp: `tempo [speed]`: waits made shorter or longer.
// Layer: host. An integer of 0 or more leaves divided by the speed, which "speed" sets. What rounding to whole
// milliseconds leaves over goes into the next wait, so that a thousand waits are as long as their sum. An integer below
// 0 is no wait: it passes as it is, and the next wait begins anew.
#include <cmath>

#include "host/boxes/box.h"
#include "host/boxes/boxes.h"

namespace {

struct tempo : host_object {
    host_outlet* out = nullptr;
    double speed = 1;
    double rest = 0; // milliseconds that rounding kept back, -0.5 to 0.5
};

host_class* tempo_class = nullptr;

void tempo_int(tempo* x, std::int32_t wait) {
    std::int32_t ms = wait;
    if (wait < 0) {
        x->rest = 0;
    } else {
        const double exact = wait / x->speed + x->rest;
        ms = static_cast<std::int32_t>(std::fmin(std::fmax(std::floor(exact + 0.5), 0), 2147483647.0));
        x->rest = ms == INT32_MAX ? 0 : exact - ms;
    }
    host_outlet_int(x->out, ms);
}

bool set_speed(tempo* x, double speed) {
    if (!(speed > 0) || !std::isfinite(speed)) {
        host_error("tempo: a speed is a number above 0");
        return false;
    }
    x->speed = speed;
    return true;
}

void tempo_speed(tempo* x, float speed) {
    set_speed(x, static_cast<double>(speed));
}

tempo* tempo_new(std::int32_t argc, const atom* argv) {
    tempo* x = host_object_new<tempo>(tempo_class);
    set_speed(x, number_at(argc, argv, 0, 1));
    x->out = host_outlet_int_new(x);
    return x;
}

void tempo_free(tempo*) {}

} // namespace

void tempo_setup() {
    tempo_class = host_class_setup("tempo", host_typed_lifecycle<tempo_new, tempo_free, ARG_LIST>());
    host_class_addint(tempo_class, host_typed<tempo_int, ARG_LONG>());
    host_class_addmethod(tempo_class, "speed", host_typed<tempo_speed, ARG_FLOAT>());
}
