// host/boxes/print.cpp: `print [prefix]`: whatever comes in becomes a line on the console.
// Layer: host. The line is written at main level: a console may be slow, and the scheduler does not wait for it.
#include <array>
#include <cstdio>
#include <string>

#include "host/boxes/boxes.h"
#include "host/kel.h"

namespace {

struct print : host_object {
    symbol* prefix = nullptr;
};

host_class* print_class = nullptr;
symbol* list = nullptr;
symbol* default_prefix = nullptr;

std::string text_of(const atom& a) {
    if (a.type == A_SYM) return a.s->name;
    if (a.type == A_LONG) return std::to_string(a.l);
    std::array<char, 64> number{};
    std::snprintf(number.data(), number.size(), "%.9g", static_cast<double>(a.f));
    return number.data();
}

void print_now(print* x, symbol* selector, std::int32_t argc, const atom* argv) {
    std::string line = std::string(x->prefix->name) + ":";
    if (selector != list) line += std::string(" ") + selector->name;
    for (std::int32_t i = 0; i < argc; ++i) line += " " + text_of(argv[i]);
    host_post("%s", line.c_str());
}

void print_anything(print* x, symbol* selector, std::int32_t argc, const atom* argv) {
    host_defer_low<print_now>(x, selector, argc, argv);
}

print* print_new(symbol* prefix) {
    print* x = host_object_new<print>(print_class);
    x->prefix = *prefix->name ? prefix : default_prefix;
    return x;
}

void print_free(print*) {}

} // namespace

void print_setup() {
    list = host_symbol("list");
    default_prefix = host_symbol("print");
    print_class = host_class_setup("print", host_typed_lifecycle<print_new, print_free, ARG_DEFSYM>());
    host_class_addanything(print_class, host_typed<print_anything, ARG_LIST>());
}
