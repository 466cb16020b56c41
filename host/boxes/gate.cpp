// host/boxes/gate.cpp: `gate [open]`: lets integers through while it is open.
// Layer: host. Closed without an argument; the right inlet opens it (any number but 0) and closes it (0). What comes to
// a closed gate is lost.
#include "host/boxes/boxes.h"
#include "host/kel.h"

namespace {

struct gate : host_object {
    host_outlet* out = nullptr;
    bool open = false;
};

host_class* gate_class = nullptr;

void gate_int(gate* x, std::int32_t value) {
    if (x->open) host_outlet_int(x->out, value);
}

void gate_open(gate* x, std::int32_t open) {
    x->open = open != 0;
}

gate* gate_new(std::int32_t open) {
    gate* x = host_object_new<gate>(gate_class);
    gate_open(x, open);
    host_inlet_int(x, 1);
    x->out = host_outlet_int_new(x);
    return x;
}

void gate_free(gate*) {}

} // namespace

void gate_setup() {
    gate_class = host_class_setup("gate", host_typed_lifecycle<gate_new, gate_free, ARG_DEFLONG>());
    host_class_addint(gate_class, host_typed<gate_int, ARG_LONG>());
    host_class_addinletint(gate_class, 1, host_typed<gate_open, ARG_LONG>());
}
