// host/kernel/dispatch.h: classes by name, and the delivery of messages with their checks.
// Layer: kernel. Called by cords, documents, patches, platforms and the script runner.
#pragma once

#include <span>
#include <string>

#include "host/kel.h"

// The class registered under a name; null if none. [main]
host_class* kel_class(const char* name);
const char* kel_class_name(const host_class* c);

// A new object of the class, built by its constructor with these arguments (checked and completed as a message's are);
// null, with a console line, when they do not fit or the constructor refuses. [main]
host_object* kel_object_new(host_class* c, std::span<const atom> arguments);

// Delivers a message to the object's left inlet: the selector and its arguments, checked against the class's argument
// words. What does not fit gives one error on the console, "host: …", and false. `selector` may be "bang"; "list" with
// atoms; for a lone number see kel_number. At main level the caller's lockout is taken for the delivery. [both]
bool kel_send(host_object* x, symbol* selector, std::span<const atom> arguments);

// How many messages one may set off, all told, before the rest is dropped with a console line; 0 puts the ten million back
// that it begins with. [main]
void kel_message_limit(int n);

// Delivers a number, or a symbol-less list, to the left inlet. [both]
bool kel_number(host_object* x, const atom& value);

// Delivers what stands in a line: a first symbol is the selector; one number is that number; several are a "list".
// [both]
bool kel_message(host_object* x, std::span<const atom> message);

// The same to whatever object the symbol is bound to; a console line when it is bound to none. [main]
bool kel_message(symbol* receiver, std::span<const atom> message);

// Delivers an integer to inlet `number`; 0 is the left one. False when the object has no such inlet. [both]
bool kel_inlet(host_object* x, int number, std::int32_t value);

// Whether the class takes this selector from the host itself. [both]
bool kel_has_private(const host_object* x, const char* selector);

namespace kel_detail {
const host_handler* private_handler(const host_object* x, const char* selector, const void* signature);
template <host_name Name, class Signature> struct private_send;
template <host_name Name, class R, class... A> struct private_send<Name, R(A...)> {
    static R send(host_object* x, A... a) {
        const host_handler* h = private_handler(x, Name.text, &host_detail::signature_tag<R(A...)>);
        if (!h) return R();
        return reinterpret_cast<R (*)(host_object*, A...)>(h->routine)(x, a...);
    }
};
} // namespace kel_detail

// Sends one of the messages that only the host sends; nothing, and a zero result, when the class has none of that name.
// [main]
template <host_name Name, class... A> auto kel_private(host_object* x, A... arguments) {
    return kel_detail::private_send<Name, typename host_private<Name>::signature>::send(x, arguments...);
}
