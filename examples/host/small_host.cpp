// examples/host/small_host.cpp: a host in one thread, without windows, files or time of its own, that carries one score,
// fills it and plays it. What such a host has no use for stands in absent.cpp.
// Example; built against an installed brisolan, by CMakeLists.txt or with pkg-config.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/class.h"
#include "host/kel.h"

// ---------------------------------------------------------------------------------------------------------------------
// Symbols and classes

struct host_class {
    host_lifecycle lifecycle;
    std::map<std::string, host_handler> methods; // the lone integer is "int", the inlets are "in1" to "in9"
};

static host_class* g_score_class = nullptr;

symbol* host_symbol(const char* text) {
    static std::map<std::string, std::unique_ptr<symbol>> all;
    const auto [place, fresh] = all.try_emplace(text);
    if (fresh) place->second = std::make_unique<symbol>(symbol{place->first.c_str(), nullptr});
    return place->second.get();
}

host_class* host_class_setup(const char*, const host_lifecycle& lifecycle) {
    return g_score_class = new host_class{lifecycle, {}};
}

void host_class_addmethod(host_class* c, const char* name, const host_handler& handler) {
    c->methods[name] = handler;
}
void host_class_addint(host_class* c, const host_handler& handler) {
    c->methods["int"] = handler;
}
void host_class_addfloat(host_class* c, const host_handler& handler) {
    c->methods["float"] = handler;
}
void host_class_addbang(host_class* c, const host_handler& handler) {
    c->methods["bang"] = handler;
}
void host_class_addinletint(host_class* c, int number, const host_handler& handler) {
    c->methods["in" + std::to_string(number)] = handler;
}

// ---------------------------------------------------------------------------------------------------------------------
// Objects and outlets. Without cords, a value that leaves an outlet is written out.

struct host_outlet {
    host_outlet* next; // to the right
    int place;         // how many there are to the right
};

void* host_detail::object_storage(host_class*, std::size_t size) {
    return std::calloc(1, size);
}

void host_detail::object_begin(host_class* c, host_object* x) {
    x->cls = c;
}

void host_inlet_int(host_object*, int) {}

host_outlet* host_outlet_int_new(host_object* x) {
    x->outlets = new host_outlet{x->outlets, x->outlets ? x->outlets->place + 1 : 0};
    return x->outlets;
}

// The score writes its parameters from right to left and the time to wait last, at the leftmost outlet.
static std::vector<std::int32_t> g_event;
static std::int32_t g_wait = -1;

void host_outlet_int(host_outlet* o, std::int32_t value) {
    if (o->place < 7) {
        g_event.insert(g_event.begin(), value);
        return;
    }
    g_wait = value;
    for (const std::int32_t v : g_event) std::printf("%d ", v);
    std::printf(value < 0 ? "and no more\n" : "then wait %d\n", value);
    g_event.clear();
}

void host_object_free(host_object* x) {
    x->cls->lifecycle.destroy(x);
    while (host_outlet* first = x->outlets) {
        x->outlets = first->next;
        delete first;
    }
    std::free(x);
}

// Delivers a message whose atoms are of the right types, completing those that may be left out.
static void send(host_object* x, const char* name, std::vector<atom> atoms = {}) {
    const host_handler& h = x->cls->methods.at(name);
    const auto count = static_cast<std::int32_t>(atoms.size());
    if (h.words[0] != ARG_LIST) {
        for (std::size_t i = atoms.size(); i < h.words.size(); ++i)
            atoms.push_back(h.words[i] == ARG_DEFSYM ? atom(host_symbol("")) : atom(0));
    }
    const host_locked_out now;
    h.deliver(x, host_symbol(name), count, atoms.data());
}

// ---------------------------------------------------------------------------------------------------------------------
// One thread: the lockout is a flag, a critical region nothing

static bool g_lockout = false;

bool host_lockout_set(bool on) {
    return std::exchange(g_lockout, on);
}

// ---------------------------------------------------------------------------------------------------------------------
// Console and memory

static void line(const char* kind, const char* format, std::va_list values) {
    std::fputs(kind, stderr);
    std::vfprintf(stderr, format, values);
    std::fputc('\n', stderr);
}

void host_post(const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    line("", format, values);
    va_end(values);
}

void host_error(const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    line("error: ", format, values);
    va_end(values);
}

void* host_getbytes(std::size_t size) {
    return std::malloc(size);
}
void host_freebytes(void* block, std::size_t) {
    std::free(block);
}
void* host_newptr(std::size_t size) {
    return std::malloc(size);
}
void host_freeptr(void* block) {
    std::free(block);
}

// ---------------------------------------------------------------------------------------------------------------------

int main() {
    // The class is loaded under the name that "#I" is bound to.
    host_symbol("#I")->thing = host_symbol("brisolan");
    brisolan_main();
    host_symbol("#I")->thing = nullptr;

    const atom name(host_symbol("tune"));
    host_object* const score = g_score_class->lifecycle.construct(1, &name);

    // Fill it as a saved patch does: milliseconds since the event before, pitch, velocity, duration, channel, track, two more.
    send(score, "restore");
    for (const std::int32_t pitch : {60, 64, 67})
        send(score, "list", {atom(500), atom(pitch), 100, 400, 1, 1, 0, 0});
    send(score, "stop");

    // "start" tells the first event's time; each "next" sends one event and tells how long to wait for the following one.
    send(score, "start");
    while (g_wait >= 0) send(score, "next");

    host_object_free(score);
    return 0;
}
