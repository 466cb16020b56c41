// The pointer: where it is, what it looks like, whether its button is down.
// Toolbox: implements the pointer calls of host/toolbox.h on the machine's hooks.
// Called by the view's cursors and the editing drags.
#include "host/toolbox/pin.h"
#include "host/toolbox/platform.h"
#include "host/toolbox/port.h"
#include "host/toolbox/region.h"

namespace {

// Written by the calls of this file, read by the platform. The pointer of the whole program.
struct {
    Cursor image{};
    bool set = false; // false: the host's own pointer
    int hidden = 0;   // hides not yet answered by a show
    toolbox_region screen;
} pointer;

constexpr Rect SCREEN_WITHOUT_MACHINE{0, 0, 1024, 768};

void tell_machine() {
    const toolbox_platform& p = platform_hooks();
    if (p.setcursor) p.setcursor(p.user, pointer.set ? &pointer.image : nullptr);
}

void tell_hidden() {
    const toolbox_platform& p = platform_hooks();
    if (p.hidecursor) p.hidecursor(p.user, pointer.hidden > 0);
}

} // namespace

void cursor_reset() {
    pointer = {};
}

void SetCursor(const Cursor* cursor) {
    pointer.image = *cursor;
    pointer.set = true;
    tell_machine();
}

void InitCursor() {
    bool was_hidden = pointer.hidden > 0;
    pointer.set = false;
    pointer.hidden = 0;
    tell_machine();
    if (was_hidden) tell_hidden();
}

void HideCursor() {
    if (pointer.hidden++ == 0) tell_hidden();
}

void ShowCursor() {
    if (pointer.hidden == 0) return;
    if (--pointer.hidden == 0) tell_hidden();
}

bool Button() {
    const toolbox_platform& p = platform_hooks();
    return p.button && p.button(p.user);
}

bool StillDown() {
    return Button();
}

void GetMouse(Point* pt) {
    const toolbox_platform& p = platform_hooks();
    *pt = p.mouse ? p.mouse(p.user) : Point{0, 0};
    GlobalToLocal(pt);
}

int GetCurrentKeyModifiers() {
    const toolbox_platform& p = platform_hooks();
    return p.modifiers ? p.modifiers(p.user) : 0;
}

RgnHandle GetGrayRgn() {
    const toolbox_platform& p = platform_hooks();
    pointer.screen = region_of(p.screen ? p.screen(p.user) : SCREEN_WITHOUT_MACHINE);
    return &pointer.screen;
}

const Cursor* toolbox_cursor() {
    return pointer.set ? &pointer.image : nullptr;
}
bool toolbox_cursor_hidden() {
    return pointer.hidden > 0;
}
