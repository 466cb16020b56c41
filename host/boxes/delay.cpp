// host/boxes/delay.cpp: `delay [ms]`: a bang out, some milliseconds later.
// Layer: host. Left inlet: an integer sets the time and starts, in place of a bang that is still to come; a bang starts
// with the time set last; "stop" takes back the bang to come. Right inlet: sets the time. A time below 0 is no time: it
// changes nothing, so the -1 by which a score tells its end starts nothing.
#include <algorithm>

#include "host/boxes/boxes.h"
#include "host/kel.h"

namespace {

struct delay : host_object {
    host_outlet* out = nullptr;
    host_clock* clock = nullptr;
    std::int32_t ms = 0;
};

host_class* delay_class = nullptr;
symbol* bang = nullptr;

void delay_due(delay* x) {
    host_outlet_message(x->out, bang, 0, nullptr);
}

void delay_start(delay* x) {
    host_clock_delay(x->clock, x->ms);
}

void delay_time(delay* x, std::int32_t ms) {
    if (ms >= 0) x->ms = ms;
}

void delay_int(delay* x, std::int32_t ms) {
    if (ms < 0) return;
    x->ms = ms;
    delay_start(x);
}

void delay_stop(delay* x) {
    host_clock_unset(x->clock);
}

delay* delay_new(std::int32_t ms) {
    delay* x = host_object_new<delay>(delay_class);
    x->ms = std::max(ms, 0);
    x->clock = host_clock_new<delay_due>(x);
    x->out = host_outlet_new(x);
    host_inlet_int(x, 1);
    return x;
}

void delay_free(delay* x) {
    host_clock_free(x->clock);
}

} // namespace

void delay_setup() {
    bang = host_symbol("bang");
    delay_class = host_class_setup("delay", host_typed_lifecycle<delay_new, delay_free, ARG_DEFLONG>());
    host_class_addint(delay_class, host_typed<delay_int, ARG_LONG>());
    host_class_addbang(delay_class, host_typed<delay_start>());
    host_class_addinletint(delay_class, 1, host_typed<delay_time, ARG_LONG>());
    host_class_addmethod(delay_class, "stop", host_typed<delay_stop>());
}
