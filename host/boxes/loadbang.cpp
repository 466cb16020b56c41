// host/boxes/loadbang.cpp: `loadbang`: a bang once the patch around it is complete; also when it is banged itself.
// Layer: host.
#include "host/boxes/boxes.h"
#include "host/kel.h"

namespace {

struct loadbang : host_object {
    host_outlet* out = nullptr;
};

host_class* loadbang_class = nullptr;
symbol* bang = nullptr;

void loadbang_bang(loadbang* x) {
    host_outlet_message(x->out, bang, 0, nullptr);
}

// The host loads at main level: nothing of the scheduler's may come in between.
void loadbang_loaded(loadbang* x) {
    const host_locked_out now;
    loadbang_bang(x);
}

loadbang* loadbang_new() {
    loadbang* x = host_object_new<loadbang>(loadbang_class);
    x->out = host_outlet_new(x);
    return x;
}

void loadbang_free(loadbang*) {}

} // namespace

void loadbang_setup() {
    bang = host_symbol("bang");
    loadbang_class = host_class_setup("loadbang", host_typed_lifecycle<loadbang_new, loadbang_free>());
    host_class_addbang(loadbang_class, host_typed<loadbang_bang>());
    host_class_addmethod(loadbang_class, "loadbang", host_typed_private<"loadbang", loadbang_loaded>());
}
