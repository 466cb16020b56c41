// host/kernel/notify.cpp: console, dialogs, inspector, and the named connection points.
// Layer: kernel. Called by the object; what it says goes to the platform.
#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/kernel.h"
#include "host/kernel/notify.h"

namespace {

constexpr std::size_t USUAL_LINE = 1000; // a longer one takes memory for its time

void say(console_kind kind, const char* format, va_list arguments) {
    const host_platform& p = kel_platform();
    if (!p.console) return;
    va_list again;
    va_copy(again, arguments);
    std::array<char, USUAL_LINE> usual;
    const int length = std::vsnprintf(usual.data(), usual.size(), format, arguments);
    if (length < static_cast<int>(usual.size())) {
        p.console(p.user, kind, usual.data());
    } else {
        std::string line(static_cast<std::size_t>(length), '\0');
        std::vsnprintf(line.data(), line.size() + 1, format, again);
        p.console(p.user, kind, line.c_str());
    }
    va_end(again);
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
    const host_err e = p.open_dialog ? p.open_dialog(p.user, name, path, type, types) : HOST_CANCELLED;
    if (e || std::find(types.begin(), types.end(), *type) != types.end()) return e;
    host_error("host: %s is of no type that was asked for", name);
    return HOST_CANCELLED;
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
