// host/kernel/notify.cpp: console, dialogs, inspector, and the named connection points.
// Layer: kernel. Called by the object; what it says goes to the platform.
#include <cstdarg>
#include <cstdio>
#include <map>
#include <vector>

#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/kernel.h"
#include "host/kernel/notify.h"

namespace {

constexpr std::size_t CONSOLE_LINE = 1000;

void say(console_kind kind, const char* format, va_list arguments) {
    char line[CONSOLE_LINE];
    std::vsnprintf(line, sizeof line, format, arguments);
    const host_platform& p = kel_platform();
    if (p.console) p.console(p.user, kind, line);
}

// Who listens to a named connection point; main level.
std::multimap<symbol*, host_object*>& listeners() {
    static std::multimap<symbol*, host_object*> all;
    return all;
}

} // namespace

void host_post(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    say(console_kind::notice, format, arguments);
    va_end(arguments);
}

void host_error(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    say(console_kind::error, format, arguments);
    va_end(arguments);
}

void host_inspector_open(host_object* x) {
    const host_platform& p = kel_platform();
    if (p.inspector) p.inspector(p.user, x);
}

host_err host_open_dialog(char* name, std::int16_t* path, file_type* type, std::span<const file_type> types) {
    const host_platform& p = kel_platform();
    return p.open_dialog ? p.open_dialog(p.user, name, path, type, types) : HOST_CANCELLED;
}

host_err host_saveas_dialog(char* name, std::int16_t* path, file_type* type,
                            std::span<const file_type> types) {
    const host_platform& p = kel_platform();
    const host_err e = p.saveas_dialog ? p.saveas_dialog(p.user, name, path, type, types) : HOST_CANCELLED;
    if (e == HOST_OK) kel_file_allow(kel_filepath(name, *path));
    return e;
}

void host_connection_server(host_object* x, symbol* name) {
    name->thing = x;
}

void host_notify_free(host_object* x) {
    kel_unlisten(x);
}

void host_connection_send(symbol* name, symbol* message) {
    const host_platform& p = kel_platform();
    if (p.notice) p.notice(p.user, name, message);
    const auto [first, last] = listeners().equal_range(name);
    std::vector<host_object*> told;
    for (auto at = first; at != last; ++at) told.push_back(at->second);
    for (host_object* x : told) kel_send(x, message, {});
}

void kel_listen(host_object* x, symbol* name) {
    listeners().emplace(name, x);
}

void kel_unlisten(const host_object* x) {
    std::erase_if(listeners(), [x](const auto& entry) { return entry.second == x; });
}
