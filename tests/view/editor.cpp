// tests/view/editor.cpp: an instance in a patcher with its editor window open, driven through the kernel.
// Tests of the view.
#include "tests/view/editor.h"

#include <cstdio>

#include "view/scroll.h"
#include "view/tracking.h"
#include "view/window.h"

namespace {

played_machine& machine_of(void* user) {
    return *static_cast<played_machine*>(user);
}

host_platform host_hooks(played_machine* m) {
    host_platform p;
    p.user = m;
    p.console = [](void* user, console_kind, const char* text) {
        machine_of(user).console.emplace_back(text);
    };
    p.patcher_dirty = [](void* user, host_patcher*) { machine_of(user).sent.emplace_back("dirty"); };
    p.notice = [](void* user, symbol* name, symbol* selector) {
        machine_of(user).sent.push_back(std::string(name->name) + " " + selector->name);
    };
    p.inspector = [](void* user, host_object*) { machine_of(user).inspected = true; };
    p.move_pointer = [](void* user, Point global) { machine_of(user).moved_to = global; };
    return p;
}

toolbox_platform toolbox_hooks(played_machine* m) {
    toolbox_platform p;
    p.user = m;
    p.button = [](void* user) { return machine_of(user).button; };
    p.popup = [](void* user, MenuHandle menu, Point where, int) {
        played_machine& machine = machine_of(user);
        machine.menu.clear();
        machine.menu_at = where;
        for (int item = 1; item <= CountMenuItems(menu); ++item) {
            machine.menu += GetItemMark(menu, item) == bulletMark ? '*' : '.';
            if (!IsMenuItemEnabled(menu, item)) machine.menu += '-';
        }
        return machine.choice;
    };
    p.track = [](void* user, Point* where) {
        played_machine& machine = machine_of(user);
        if (machine.held_at >= machine.held.size()) return false;
        *where = machine.held[machine.held_at++];
        return true;
    };
    p.screen = [](void*) { return Rect{0, 0, 2000, 1500}; };
    return p;
}

} // namespace

picture picture_of(const brisolan* x) {
    picture p;
    const GrafPtr port = x->window->port;
    p.width = toolbox_port_width(port);
    p.height = toolbox_port_height(port);
    const int row = toolbox_port_rowpixels(port);
    for (int v = 0; v < p.height; ++v) {
        const std::uint32_t* at = toolbox_port_pixels(port) + static_cast<std::ptrdiff_t>(v) * row;
        p.pixels.insert(p.pixels.end(), at, at + p.width);
    }
    return p;
}

std::string difference(const picture& a, const picture& b) {
    if (a.width != b.width || a.height != b.height) return "other size";
    int count = 0;
    std::string first;
    for (int v = 0; v < a.height; ++v) {
        for (int h = 0; h < a.width; ++h) {
            if (a.at(h, v) == b.at(h, v)) continue;
            if (count++ == 0) first = " from (" + std::to_string(h) + ", " + std::to_string(v) + ")";
        }
    }
    return std::to_string(count) + " pixels differ" + first;
}

void editor_test::SetUp() {
    const host_platform hooks = host_hooks(&machine);
    toolbox_reset();
    kel_start(kel_timing::virtual_time, &hooks);
    const toolbox_platform drawn = toolbox_hooks(&machine);
    toolbox_setplatform(&drawn);
    brisolan_resettracking();
    brisolan_resetscroll();
    brisolan_main();
    patcher = kel_patcher_new();
    kel_patcher_build(patcher);
    x = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {}));
    ASSERT_NE(x, nullptr);
    kel_run_queue();
}

void editor_test::TearDown() {
    kel_patcher_free(patcher);
    EXPECT_TRUE(kel_end());
    toolbox_reset();
}

event* editor_test::add(std::int32_t time, std::int32_t pitch, std::int32_t vel, std::int32_t dur,
                        std::int32_t chan, std::int32_t track) {
    event* e = brisolan_newevent();
    e->time = time;
    e->pitch = pitch;
    e->vel = vel;
    e->dur = dur;
    e->chan = chan;
    e->track = track;
    brisolan_link(x, e);
    return e;
}

void editor_test::open() {
    kel_private<"dblclick">(x);
    kel_run_queue();
}

// Onto a white window, so that nothing that was left on the old one counts.
picture editor_test::full() {
    const GrafPtr port = x->window->port;
    toolbox_port_resize(port, 0, 0);
    toolbox_port_resize(port, x->window->width, x->window->height);
    kel_window_update(x->window);
    return now();
}

void editor_test::send(const char* selector, std::vector<atom> arguments) {
    kel_send(x, host_symbol(selector), arguments);
    kel_run_queue();
}
