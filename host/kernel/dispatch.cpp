// host/kernel/dispatch.cpp: classes by name, and the delivery of messages with their checks.
// Layer: kernel.
#include "host/kernel/dispatch.h"

#include <atomic>
#include <map>
#include <memory>

#include "host/kernel/class_record.h"
#include "host/kernel/kernel.h"
#include "host/kernel/level.h"

namespace {

std::map<std::string, host_class*, std::less<>>& classes() {
    static std::map<std::string, host_class*, std::less<>> all;
    return all;
}

// How deep messages may set each other off from inside their own delivery: a patch that feeds itself is ended long before
// the stack is.
constexpr int MAX_NESTING = 400;

// How many messages one may set off all told: a patch in which each box sets off two doubles them a few dozen times.
constexpr int MAX_SET_OFF = 10'000'000;
std::atomic<int> max_set_off{MAX_SET_OFF};

// The deliveries that run on the calling thread, inside one another.
struct nesting {
    int depth = 0;
    int set_off = 0; // since the outermost began
    bool unwinding =
        false; // too deep or too many: nothing more is delivered until the outermost has returned
};
thread_local nesting t_nesting;

// One delivery. Messages that the main level sends for a person, and those of the scheduler, never overlap.
class delivery {
public:
    delivery() {
        nesting& n = t_nesting;
        const bool deep = ++n.depth > MAX_NESTING;
        if (n.unwinding || (!deep && ++n.set_off <= max_set_off.load(std::memory_order_relaxed))) return;
        n.unwinding = true;
        host_error(deep ? "host: messages nested too deep" : "host: too many messages at once");
    }
    ~delivery() {
        if (--t_nesting.depth == 0) t_nesting = {};
    }
    delivery(const delivery&) = delete;
    delivery& operator=(const delivery&) = delete;

    bool allowed() const { return !t_nesting.unwinding; }

private:
    host_locked_out now;
};

std::int32_t truncated(float f) {
    if (!(f > -2147483648.0F)) return f == f ? INT32_MIN : 0;
    return f >= 2147483648.0F ? INT32_MAX : static_cast<std::int32_t>(f);
}

const char* wanted(arg_word w) {
    switch (w) {
    case ARG_LONG:
    case ARG_DEFLONG: return "an integer";
    case ARG_FLOAT: return "a float";
    default: return "a symbol";
    }
}

bool is_optional(arg_word w) {
    return w == ARG_DEFLONG || w == ARG_DEFSYM;
}

// Looked up once, at main level, when the first class is set up: interning is the main level's, sending is not.
struct known_symbols {
    symbol* list = host_symbol("list");
    symbol* bang = host_symbol("bang");
    symbol* empty = host_symbol("");
};

const known_symbols& known() {
    static const known_symbols k;
    return k;
}

// Turns an atom into what the word wants; false when it is of another nature.
bool fit(arg_word w, const atom& from, atom& to) {
    const bool number = from.type == A_LONG || from.type == A_FLOAT;
    switch (w) {
    case ARG_LONG:
    case ARG_DEFLONG:
        if (!number) return false;
        to = from.type == A_LONG ? from : atom(truncated(from.f));
        return true;
    case ARG_FLOAT:
        if (!number) return false;
        to = from.type == A_FLOAT ? from : atom(static_cast<float>(from.l));
        return true;
    default:
        if (from.type != A_SYM) return false;
        to = from;
        return true;
    }
}

using typed_atoms = std::array<atom, MAX_ARG_WORDS>;

// Checks the arguments of `what` against the words and completes them; says what is wrong on the console.
bool complete(const char* owner, const char* what, const std::array<arg_word, MAX_ARG_WORDS>& words,
              std::span<const atom> given, typed_atoms& out) {
    for (std::size_t i = 0; i < words.size() && words[i] != ARG_NONE; ++i) {
        if (i < given.size()) {
            if (fit(words[i], given[i], out[i])) continue;
            host_error("host: %s: %s: argument %d must be %s", owner, what, static_cast<int>(i) + 1,
                       wanted(words[i]));
            return false;
        }
        if (!is_optional(words[i])) {
            host_error("host: %s: %s: too few arguments", owner, what);
            return false;
        }
        out[i] = words[i] == ARG_DEFLONG ? atom(0) : atom(known().empty);
    }
    return true;
}

bool refuse(const host_object* x, const char* what) {
    host_error("host: %s: no message \"%s\"", x->cls->name.c_str(), what);
    return false;
}

bool deliver(host_object* x, const host_handler& h, symbol* selector, std::span<const atom> arguments) {
    const delivery now;
    if (!now.allowed()) return false;
    if (h.words[0] == ARG_LIST) {
        h.deliver(x, selector, static_cast<std::int32_t>(arguments.size()), arguments.data());
        return true;
    }
    typed_atoms typed;
    if (!complete(x->cls->name.c_str(), selector->name, h.words, arguments, typed)) return false;
    h.deliver(x, selector, MAX_ARG_WORDS, typed.data());
    return true;
}

const host_handler* method(const host_object* x, const symbol* selector) {
    if (selector == known().list) return x->cls->list;
    const auto found = x->cls->methods.find(selector);
    return found == x->cls->methods.end() ? nullptr : &found->second;
}

} // namespace

void kel_message_limit(int n) {
    max_set_off = n > 0 ? n : MAX_SET_OFF;
}

host_class* kel_class(const char* name) {
    const auto found = classes().find(name);
    return found == classes().end() ? nullptr : found->second;
}

const char* kel_class_name(const host_class* c) {
    return c->name.c_str();
}

host_class* host_class_setup(const char* name, const host_lifecycle& lifecycle) {
    host_expect_main("host_class_setup");
    known();
    static std::vector<std::unique_ptr<host_class>> all; // objects of a replaced class go on using it
    all.push_back(std::make_unique<host_class>());
    host_class* c = all.back().get();
    c->name = name;
    c->lifecycle = lifecycle;
    classes()[name] = c;
    return c;
}

void host_class_addmethod(host_class* c, const char* name, const host_handler& handler) {
    host_handler& method = c->methods[host_symbol(name)];
    method = handler;
    if (host_symbol(name) == known().list) c->list = &method;
}
void host_class_addint(host_class* c, const host_handler& handler) {
    c->integer = handler;
}
void host_class_addfloat(host_class* c, const host_handler& handler) {
    c->floating = handler;
}
void host_class_addbang(host_class* c, const host_handler& handler) {
    c->bang = handler;
}
void host_class_addinletint(host_class* c, int number, const host_handler& handler) {
    c->inlets.at(static_cast<std::size_t>(number)) = handler;
}
void host_class_addanything(host_class* c, const host_handler& handler) {
    c->anything = handler;
}

host_object* kel_object_new(host_class* c, std::span<const atom> arguments) {
    host_expect_main("kel_object_new");
    typed_atoms typed;
    if (c->lifecycle.words[0] == ARG_LIST) {
        return c->lifecycle.construct(static_cast<std::int32_t>(arguments.size()), arguments.data());
    }
    if (!complete(c->name.c_str(), "new", c->lifecycle.words, arguments, typed)) return nullptr;
    return c->lifecycle.construct(MAX_ARG_WORDS, typed.data());
}

bool kel_send(host_object* x, symbol* selector, std::span<const atom> arguments) {
    if (const host_handler* h = method(x, selector)) {
        if (h->words[0] != ARG_PRIVATE) return deliver(x, *h, selector, arguments);
        host_error("host: %s: only the host sends \"%s\"", x->cls->name.c_str(), selector->name);
        return false;
    }
    if (x->cls->bang.deliver && selector == known().bang) {
        return deliver(x, x->cls->bang, selector, {});
    }
    if (x->cls->anything.deliver) return deliver(x, x->cls->anything, selector, arguments);
    if (selector == known().list && arguments.size() == 1 && arguments[0].type != A_SYM)
        return kel_number(x, arguments[0]);
    return refuse(x, selector->name);
}

bool kel_number(host_object* x, const atom& value) {
    const host_class& c = *x->cls;
    atom converted;
    const bool as_float =
        value.type == A_FLOAT ? c.floating.deliver != nullptr : c.integer.deliver == nullptr;
    const host_handler& h = as_float ? c.floating : c.integer;
    if (h.deliver) {
        fit(as_float ? ARG_FLOAT : ARG_LONG, value, converted);
        const delivery now;
        if (now.allowed()) h.deliver(x, nullptr, 1, &converted);
        return now.allowed();
    }
    if (c.anything.deliver) return deliver(x, c.anything, known().list, {&value, 1});
    if (const host_handler* list = method(x, known().list))
        return deliver(x, *list, known().list, {&value, 1});
    return refuse(x, value.type == A_FLOAT ? "float" : "int");
}

bool kel_message(host_object* x, std::span<const atom> message) {
    if (message.empty()) return true;
    if (message[0].type == A_SYM) return kel_send(x, message[0].s, message.subspan(1));
    if (message.size() == 1) return kel_number(x, message[0]);
    return kel_send(x, known().list, message);
}

bool kel_message(symbol* receiver, std::span<const atom> message) {
    if (receiver->thing) return kel_message(static_cast<host_object*>(receiver->thing), message);
    host_error("host: no object named \"%s\"", receiver->name);
    return false;
}

bool kel_inlet(host_object* x, int number, std::int32_t value) {
    if (number == 0) return kel_number(x, atom(value));
    if (number < 0 || number > MAX_INLET) return false;
    const host_handler& h = x->cls->inlets[static_cast<std::size_t>(number)];
    if (!h.deliver) return false;
    const delivery now;
    const atom a(value);
    if (now.allowed()) h.deliver(x, nullptr, 1, &a);
    return now.allowed();
}

bool kel_has_private(const host_object* x, const char* selector) {
    const host_handler* h = method(x, host_symbol(selector));
    return h && h->words[0] == ARG_PRIVATE;
}

const host_handler* kel_detail::private_handler(const host_object* x, const char* selector,
                                                const void* signature) {
    const host_handler* h = method(x, host_symbol(selector));
    return h && h->words[0] == ARG_PRIVATE && h->signature == signature ? h : nullptr;
}
