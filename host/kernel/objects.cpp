// host/kernel/objects.cpp: instances, their outlets and the cords between them.
// Layer: kernel.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <set>

#include "host/kernel/class_record.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "host/kernel/queue.h"
#include "host/kernel/symbols.h"

namespace {

// Every object alive, so that cords to one that goes away can be taken away. Main level.
std::set<host_object*>& alive() {
    static std::set<host_object*> all;
    return all;
}

void free_outlets(host_object* x) {
    while (host_outlet* o = x->outlets) {
        x->outlets = o->right;
        delete o;
    }
}

void cut_cords_to(const host_object* gone) {
    for (host_object* x : alive()) {
        for (host_outlet* o = x->outlets; o; o = o->right) {
            std::erase_if(o->cords, [gone](const kel_cord& c) { return c.to == gone; });
        }
    }
}

} // namespace

namespace host_detail {

void* object_storage(host_class* c, std::size_t size) {
    host_expect_main("host_object_new");
    if (size != c->lifecycle.size) std::abort(); // T is not what the class was set up with
    void* memory = std::aligned_alloc(alignof(std::max_align_t), (size + 15) / 16 * 16);
    if (!memory) throw std::bad_alloc();
    return std::memset(memory, 0, size);
}

void object_begin(host_class* c, host_object* x) {
    x->cls = c;
    x->inlets = new host_inlets;
    alive().insert(x);
}

} // namespace host_detail

void host_object_free(host_object* x) {
    if (!x) return;
    host_expect_main("host_object_free");
    {
        const host_locked_out now;
        cut_cords_to(x);
        for (host_outlet* o = x->outlets; o; o = o->right) {
            o->cords.clear();
            o->watch = nullptr;
        }
    }
    x->cls->lifecycle.destroy(x);
    kel_queue_forget(x);
    kel_symbols_unbind(x);
    alive().erase(x);
    free_outlets(x);
    delete x->inlets;
    std::free(static_cast<void*>(x));
}

void host_inlet_int(host_object* x, int number) {
    x->inlets->there.at(static_cast<std::size_t>(number)) = true;
}

host_outlet* host_outlet_int_new(host_object* x) {
    auto* o = new host_outlet;
    o->owner = x;
    o->right = x->outlets;
    x->outlets = o;
    return o;
}

void host_outlet_int(host_outlet* o, std::int32_t value) {
    host_expect_scheduler("host_outlet_int");
    if (o->watch) o->watch(o->watch_context, o->watch_number, value);
    // A cord's receiver may change the cords: each is looked up anew.
    for (std::size_t i = 0; i < o->cords.size(); ++i) {
        const kel_cord c = o->cords[i];
        kel_inlet(c.to, c.inlet, value);
    }
}

host_outlet* host_outlet_new(host_object* x) {
    return host_outlet_int_new(x);
}

void host_outlet_message(host_outlet* o, symbol* selector, std::int32_t argc, const atom* argv) {
    host_expect_scheduler("host_outlet_message");
    const std::span<const atom> arguments(argv, static_cast<std::size_t>(argc));
    for (std::size_t i = 0; i < o->cords.size(); ++i) {
        const kel_cord c = o->cords[i];
        if (c.inlet == 0)
            kel_send(c.to, selector, arguments);
        else if (argc == 1 && argv[0].type == A_LONG)
            kel_inlet(c.to, c.inlet, argv[0].l);
        else
            host_error("host: %s: inlet %d takes integers, not \"%s\"", c.to->cls->name.c_str(), c.inlet,
                       selector->name);
    }
}

int kel_outlets(const host_object* x) {
    int n = 0;
    for (const host_outlet* o = x->outlets; o; o = o->right) ++n;
    return n;
}

host_outlet* kel_outlet(const host_object* x, int k) {
    host_outlet* o = k < 0 ? nullptr : x->outlets;
    for (; o && k > 0; --k) o = o->right;
    return o;
}

bool kel_has_inlet(const host_object* x, int inlet) {
    return inlet == 0 ||
           (inlet > 0 && inlet <= MAX_INLET && x->inlets->there[static_cast<std::size_t>(inlet)]);
}

bool kel_connect(host_object* from, int outlet, host_object* to, int inlet) {
    host_outlet* o = kel_outlet(from, outlet);
    if (!o || inlet < 0 || inlet > MAX_INLET) return false;
    const host_locked_out now;
    const bool there = std::any_of(o->cords.begin(), o->cords.end(),
                                   [&](const kel_cord& c) { return c.to == to && c.inlet == inlet; });
    if (!there) o->cords.push_back({to, inlet});
    return true;
}

bool kel_disconnect(host_object* from, int outlet, host_object* to, int inlet) {
    host_outlet* o = kel_outlet(from, outlet);
    if (!o) return false;
    const host_locked_out now;
    return std::erase_if(o->cords, [&](const kel_cord& c) { return c.to == to && c.inlet == inlet; }) > 0;
}

std::span<const kel_cord> kel_cords(const host_object* from, int outlet) {
    const host_outlet* o = kel_outlet(from, outlet);
    if (!o) return {};
    return o->cords;
}

void kel_watch_outlet(host_object* x, int outlet, kel_watch watch, void* context) {
    host_outlet* o = kel_outlet(x, outlet);
    if (!o) return;
    const host_locked_out now;
    o->watch_context = context;
    o->watch_number = outlet;
    o->watch = watch;
}
