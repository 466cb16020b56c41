// host/boxes/timer.cpp: `timer`: the milliseconds between two bangs.
// Layer: host. A bang, or an integer of any value, puts out the whole milliseconds since the one before; "start" begins
// to measure and puts out nothing. Each instant is cut to whole milliseconds, not each interval, so that the sum of many
// intervals is the time that passed.
#include <algorithm>

#include "host/boxes/box.h"
#include "host/boxes/boxes.h"

namespace {

struct timer : host_object {
    host_outlet* out = nullptr;
    std::int64_t since = 0; // milliseconds since the host started
};

host_class* timer_class = nullptr;

std::int64_t now_in_ms() {
    return host_now() / NS_PER_MILLISECOND;
}

void timer_start(timer* x) {
    x->since = now_in_ms();
}

void timer_bang(timer* x) {
    const std::int64_t before = x->since;
    timer_start(x);
    host_outlet_int(x->out, static_cast<std::int32_t>(std::min<std::int64_t>(x->since - before, INT32_MAX)));
}

void timer_int(timer* x, std::int32_t) {
    timer_bang(x);
}

timer* timer_new() {
    timer* x = host_object_new<timer>(timer_class);
    timer_start(x);
    x->out = host_outlet_int_new(x);
    return x;
}

void timer_free(timer*) {}

} // namespace

void timer_setup() {
    timer_class = host_class_setup("timer", host_typed_lifecycle<timer_new, timer_free>());
    host_class_addbang(timer_class, host_typed<timer_bang>());
    host_class_addint(timer_class, host_typed<timer_int, ARG_LONG>());
    host_class_addmethod(timer_class, "start", host_typed<timer_start>());
}
