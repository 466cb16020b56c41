// host/headless/headless.cpp: the machine played by a script.
// Layer: platform.
#include "host/headless/headless.h"

#include <cstring>

#include "host/kernel/files.h"

namespace {

headless& of(void* user) {
    return *static_cast<headless*>(user);
}

void say(headless& m, const std::string& line) {
    if (m.print) m.print(line);
}

void console(void* user, console_kind kind, const char* text) {
    say(of(user), std::string(kind == console_kind::notice ? "post " : "error ") + text);
}

void notice(void* user, symbol* name, symbol* selector) {
    say(of(user), std::string("notice ") + name->name + " " + selector->name);
}

void patcher_dirty(void* user, host_patcher*) {
    say(of(user), "dirty");
}

// What a dialog gives: the path whole as the name, in the folder that names are taken in.
host_err answer_dialog(headless& m, bool saving, char* name, std::int16_t* path, file_type* type,
                       std::span<const file_type> types) {
    m.asked.push_back({saving, saving ? name : "", {types.begin(), types.end()}});
    if (m.answers.empty()) return HOST_CANCELLED;
    const headless_answer a = m.answers.front();
    m.answers.pop_front();
    if (a.cancelled || a.path.size() >= HOST_NAME_SIZE) return HOST_CANCELLED;
    std::strcpy(name, a.path.c_str());
    *path = host_default_path();
    *type = a.type ? a.type : kel_typeofname(name);
    if (*type) return HOST_OK;
    // The ending tells none: a file that is there has the type it keeps, a new one is what the dialog proposed.
    if (!saving)
        *type = kel_filetype(kel_filepath(name, *path));
    else if (!types.empty())
        *type = types.front();
    return HOST_OK;
}

host_err open_dialog(void* user, char* name, std::int16_t* path, file_type* type,
                     std::span<const file_type> types) {
    return answer_dialog(of(user), false, name, path, type, types);
}

host_err saveas_dialog(void* user, char* name, std::int16_t* path, file_type* type,
                       std::span<const file_type> types) {
    return answer_dialog(of(user), true, name, path, type, types);
}

bool button(void* user) {
    return of(user).button;
}
Point mouse(void* user) {
    return of(user).pointer;
}
int modifiers(void* user) {
    return of(user).modifiers;
}
Rect screen(void* user) {
    return of(user).screen;
}
void move_pointer(void* user, Point global) {
    of(user).pointer = global;
}

// One turn of a loop that tracks the pointer by itself: the next held position; after the last the button is up there.
bool track(void* user, Point* where) {
    headless& m = of(user);
    if (m.held_at < m.held.size()) {
        m.pointer = m.held[m.held_at++];
        *where = m.pointer;
        return true;
    }
    *where = m.pointer;
    m.held.clear();
    m.held_at = 0;
    m.button = false;
    return false;
}

int popup(void* user, MenuHandle, Point, int) {
    headless& m = of(user);
    if (m.choices.empty()) return 0;
    const int item = m.choices.front();
    m.choices.pop_front();
    return item;
}

bool clipboard_read(void* user, std::string* text) {
    headless& m = of(user);
    if (m.has_clipboard) *text = m.clipboard;
    return m.has_clipboard;
}

void clipboard_write(void* user, const std::string& text) {
    of(user).clipboard = text;
    of(user).has_clipboard = true;
}

host_platform host_hooks(headless* m) {
    host_platform p;
    p.user = m;
    p.console = console;
    p.notice = notice;
    p.patcher_dirty = patcher_dirty;
    p.open_dialog = open_dialog;
    p.saveas_dialog = saveas_dialog;
    p.move_pointer = move_pointer;
    return p;
}

toolbox_platform toolbox_hooks(headless* m) {
    toolbox_platform p;
    p.user = m;
    p.button = button;
    p.mouse = mouse;
    p.modifiers = modifiers;
    p.screen = screen;
    p.track = track;
    p.popup = popup;
    p.clipboard_read = clipboard_read;
    p.clipboard_write = clipboard_write;
    return p;
}

} // namespace

void headless_start(headless* machine) {
    toolbox_reset();
    const toolbox_platform t = toolbox_hooks(machine);
    toolbox_setplatform(&t);
    const host_platform h = host_hooks(machine);
    kel_start(kel_timing::virtual_time, &h);
}

bool headless_end() {
    const bool clean = kel_end();
    toolbox_reset();
    return clean;
}

void headless_wait(std::int64_t ms, const std::function<void()>& after) {
    kel_advance(kel_now() + ms * NS_PER_MS, after);
}
