// host/boxes/message.cpp: `message atoms…`: a box that sends what stands in it, when it is clicked, banged or sent a
// number.
// Layer: host. A lone "," parts several messages, sent one after the other. A lone "$1" stands for the number that came
// in, 0 for a bang or a click.
#include <algorithm>
#include <memory>
#include <span>

#include "host/boxes/boxes.h"
#include "host/kel.h"

namespace {

struct message : host_object {
    host_outlet* out = nullptr;
    atom* atoms = nullptr; // as they were given; the box's own
    std::size_t natoms = 0;
};

host_class* message_class = nullptr;
symbol* list = nullptr;
symbol* comma = nullptr;
symbol* incoming = nullptr;

bool is(const atom& a, const symbol* s) {
    return a.type == A_SYM && a.s == s;
}

void send_whole(message* x, std::span<const atom> part) {
    const bool named = part[0].type == A_SYM;
    const std::span<const atom> arguments = part.subspan(named ? 1 : 0);
    host_outlet_message(x->out, named ? part[0].s : list, static_cast<std::int32_t>(arguments.size()),
                        arguments.data());
}

// One message of the box. Where the number is to be filled in, that is done in a copy: what is sent may set the same box
// off again before it returns.
void send_part(message* x, std::span<const atom> part, const atom& value) {
    const auto wants_value = [](const atom& a) { return is(a, incoming); };
    if (std::none_of(part.begin(), part.end(), wants_value)) return send_whole(x, part);
    const std::size_t bytes = part.size_bytes();
    auto* const filled = static_cast<atom*>(host_getbytes(bytes));
    if (!filled) return;
    std::replace_copy_if(part.begin(), part.end(), filled, wants_value, value);
    send_whole(x, {filled, part.size()});
    host_freebytes(filled, bytes);
}

void send_all(message* x, const atom& value) {
    const std::span<const atom> all(x->atoms, x->natoms);
    for (auto from = all.begin(); from != all.end();) {
        const auto to = std::find_if(from, all.end(), [](const atom& a) { return is(a, comma); });
        if (from != to) send_part(x, {from, to}, value);
        from = to == all.end() ? to : to + 1;
    }
}

void message_bang(message* x) {
    send_all(x, atom(0));
}
void message_int(message* x, std::int32_t value) {
    send_all(x, atom(value));
}
void message_float(message* x, float value) {
    send_all(x, atom(value));
}

// A person's click comes at main level: nothing of the scheduler's may come in between.
int message_click(message* x, Point, int) {
    const host_locked_out now;
    message_bang(x);
    return 1;
}

message* message_new(std::int32_t argc, const atom* argv) {
    message* x = host_object_new<message>(message_class);
    x->out = host_outlet_new(x);
    x->natoms = static_cast<std::size_t>(argc);
    x->atoms = static_cast<atom*>(host_newptr(std::max<std::size_t>(x->natoms, 1) * sizeof(atom)));
    if (!x->atoms) x->natoms = 0;
    std::uninitialized_copy_n(argv, x->natoms, x->atoms);
    return x;
}

void message_free(message* x) {
    host_freeptr(x->atoms);
}

} // namespace

void message_setup() {
    list = host_symbol("list");
    comma = host_symbol(",");
    incoming = host_symbol("$1");
    message_class = host_class_setup("message", host_typed_lifecycle<message_new, message_free, ARG_LIST>());
    host_class_addbang(message_class, host_typed<message_bang>());
    host_class_addint(message_class, host_typed<message_int, ARG_LONG>());
    host_class_addfloat(message_class, host_typed<message_float, ARG_FLOAT>());
    host_class_addmethod(message_class, "click", host_typed_private<"click", message_click>());
}
