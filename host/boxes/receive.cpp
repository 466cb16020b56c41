// host/boxes/receive.cpp: `receive name`: puts out whatever is sent to that name, as by the program around the patch.
// Layer: host.
#include "host/boxes/boxes.h"
#include "host/kel.h"

namespace {

struct receive : host_object {
    host_outlet* out = nullptr;
};

host_class* receive_class = nullptr;

void receive_anything(receive* x, symbol* selector, std::int32_t argc, const atom* argv) {
    host_outlet_message(x->out, selector, argc, argv);
}

receive* receive_new(symbol* name) {
    receive* x = host_object_new<receive>(receive_class);
    x->out = host_outlet_new(x);
    if (name->thing)
        host_error("receive: %s: already exists", name->name);
    else
        name->thing = static_cast<host_object*>(x); // the host ends it with the box
    return x;
}

void receive_free(receive*) {}

} // namespace

void receive_setup() {
    receive_class = host_class_setup("receive", host_typed_lifecycle<receive_new, receive_free, ARG_SYM>());
    host_class_addanything(receive_class, host_typed<receive_anything, ARG_LIST>());
}
