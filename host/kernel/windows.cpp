// host/kernel/windows.cpp: editor windows as records with a bitmap port, and the number field.
// Layer: kernel. Called by the object through host_window_… and by platforms through windows.h.
#include "host/kernel/windows.h"

#include <algorithm>

#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "host/toolbox/palette.h"
#include "host/toolbox/toolbox_host.h"

namespace {

constexpr std::int16_t BAR = 15;      // a scroll bar's width
constexpr std::int16_t BAR_LEFT = 60; // the horizontal bar begins right of the zoom box

struct kel_window : host_window {
    std::string title;
    std::int32_t flags = 0;
    std::int16_t least_width = 1;
    std::int16_t least_height = 1;
};

kel_window& record(host_window* w) {
    return *static_cast<kel_window*>(w);
}

std::vector<host_window*> windows;

// The press and the drag that run; one at a time.
struct drag_state {
    host_window* window = nullptr;
    void (*routine)(host_object*, Point, bool) = nullptr;
    Point press{};
} drag;

Rect bar_bounds(const host_window& w, bool vertical) {
    Rect r;
    if (vertical)
        SetRect(&r, w.width - BAR, 0, w.width, w.height - BAR);
    else
        SetRect(&r, BAR_LEFT, w.height - BAR, w.width - BAR, w.height);
    return r;
}

void place_bars(host_window* w) {
    for (const bool vertical : {true, false}) {
        const Rect r = bar_bounds(*w, vertical);
        toolbox_control_setbounds(vertical ? w->vscroll : w->hscroll, &r);
    }
}

// Makes a window's port current for the scope's life.
class in_port {
public:
    explicit in_port(host_window* w) {
        GetPort(&before);
        SetPort(w->port);
    }
    ~in_port() { SetPort(before); }
    in_port(const in_port&) = delete;
    in_port& operator=(const in_port&) = delete;

private:
    GrafPtr before = nullptr;
};

// A part of the window becomes white, whatever the port's clip.
void whiten(host_window* w, const Rect& part) {
    const in_port current(w);
    RgnHandle clip = NewRgn();
    GetClip(clip);
    ClipRect(&part);
    EraseRect(&part);
    SetClip(clip);
    DisposeRgn(clip);
}

// The corner between the bars, which neither they nor the object draw, may hold what stood there at another size.
void whiten_corner(host_window* w) {
    Rect corner;
    SetRect(&corner, w->width - BAR, w->height - BAR, w->width, w->height);
    whiten(w, corner);
}

void drawn(host_window* w) {
    const host_platform& p = kel_platform();
    if (p.window_drawn) p.window_drawn(p.user, w);
}

// Sends "update" with drawing cut to the invalid region, then the scroll bars.
void draw_invalid(host_window* w) {
    RgnHandle invalid = NewRgn();
    toolbox_port_takeinvalid(w->port, invalid);
    toolbox_port_setvisible(w->port, invalid);
    {
        const in_port current(w);
        kel_private<"update">(w->owner);
        toolbox_drawcontrols(w->port);
    }
    toolbox_port_setvisible(w->port, nullptr);
    DisposeRgn(invalid);
    drawn(w);
}

std::int16_t at_least_zero(std::int16_t v) {
    return std::max<std::int16_t>(v, 0);
}

void sync_bars(host_window* w) {
    if (!w->visible) return;
    const in_port current(w);
    SetControlMaximum(w->hscroll, w->hscroll_max);
    SetControlMaximum(w->vscroll, w->vscroll_max);
    SetControlValue(w->hscroll, w->hscroll_value);
    SetControlValue(w->vscroll, w->vscroll_value);
}

} // namespace

const std::vector<host_window*>& kel_windows() {
    return windows;
}
const std::string& kel_window_title(const host_window* w) {
    return static_cast<const kel_window*>(w)->title;
}
Point kel_window_least(const host_window* w) {
    const auto& r = static_cast<const kel_window&>(*w);
    return {r.least_height, r.least_width};
}
Point kel_last_press() {
    return drag.press;
}

host_window* host_window_new(host_object* owner, std::int16_t left, std::int16_t top, std::int16_t right,
                             std::int16_t bottom, std::int32_t flags) {
    host_expect_main("host_window_new");
    auto* w = new kel_window;
    w->owner = owner;
    w->flags = flags;
    w->width = static_cast<std::int16_t>(right - left);
    w->height = static_cast<std::int16_t>(bottom - top);
    w->port = toolbox_port_new(w->width, w->height);
    toolbox_port_setorigin(w->port, left, top);
    const Rect none{};
    w->vscroll = toolbox_control_new(w->port, &none);
    w->hscroll = toolbox_control_new(w->port, &none);
    place_bars(w);
    windows.push_back(w);
    return w;
}

void host_window_free(host_window* w) {
    if (!w) return;
    if (drag.window == w) drag.window = nullptr;
    const host_platform& p = kel_platform();
    if (p.window_freed) p.window_freed(p.user, w);
    std::erase(windows, w);
    toolbox_port_free(w->port);
    delete &record(w);
}

void host_window_setmin(host_window* w, std::int16_t width, std::int16_t height) {
    record(w).least_width = width;
    record(w).least_height = height;
}

void host_window_vis(host_window* w) {
    const bool before = w->visible;
    w->visible = true;
    if (!before) {
        // What it showed before it was hidden may have had another size.
        Rect all;
        SetRect(&all, 0, 0, w->width, w->height);
        whiten(w, all);
        sync_bars(w);
        toolbox_port_invalidate(w->port);
    }
    const host_platform& p = kel_platform();
    if (p.window_shown) p.window_shown(p.user, w, true);
    if (p.wake) p.wake(p.user);
}

void host_window_invis(host_window* w) {
    if (!w->visible) return;
    w->visible = false;
    const host_platform& p = kel_platform();
    if (p.window_shown) p.window_shown(p.user, w, false);
}

void host_window_settitle(host_window* w, const char* title) {
    record(w).title = title;
    const host_platform& p = kel_platform();
    if (p.window_title) p.window_title(p.user, w, title);
}

GrafPtr host_window_setport(host_window* w) {
    host_expect_main("host_window_setport");
    if (!w->visible) return nullptr;
    GrafPtr before = nullptr;
    GetPort(&before);
    SetPort(w->port);
    drawn(w);
    return before ? before : w->port;
}

void host_window_setscrollmax(host_window* w, std::int16_t h, std::int16_t v) {
    w->hscroll_max = at_least_zero(h);
    w->vscroll_max = at_least_zero(v);
    sync_bars(w);
}

void host_window_setscrollval(host_window* w, std::int16_t h, std::int16_t v) {
    w->hscroll_value = at_least_zero(h);
    w->vscroll_value = at_least_zero(v);
    sync_bars(w);
}

void host_window_setcursor(host_window*) {
    InitCursor();
}
GrafPtr host_window_systemwindow(host_window* w) {
    return w->port;
}

namespace host_detail {

void window_drag(host_window* w, void (*routine)(host_object*, Point, bool)) {
    drag.window = w;
    drag.routine = routine;
}

// Follows the pointer from the press on: up adds one for each pixel, down takes one away.
void numfield_track(host_numfield* n, int (*track)(host_object*, std::int32_t)) {
    const toolbox_platform& p = toolbox_getplatform();
    if (!p.track) return;
    Point press = drag.press;
    LocalToGlobal(&press);
    const std::int64_t from = n->value;
    std::int32_t told = n->value;
    for (bool down = true; down;) {
        Point at = press;
        down = p.track(p.user, &at);
        const std::int64_t wanted = from + (press.v - at.v);
        if (!down) break;
        const std::int64_t value = std::max<std::int64_t>(n->min, std::min<std::int64_t>(wanted, n->max));
        if (value == told) continue;
        told = static_cast<std::int32_t>(value);
        n->value = told;
        host_numfield_draw(n);
        track(n->owner, told);
    }
}

} // namespace host_detail

host_window* kel_drag_window() {
    return drag.window;
}

int kel_window_click(host_window* w, Point where, int modifiers) {
    if (!w->visible) return 0;
    drag.press = where;
    const in_port current(w);
    const int used = kel_private<"click">(w->owner, where, modifiers);
    drawn(w);
    return used;
}

void kel_drag_move(Point where) {
    host_window* w = drag.window;
    if (!w || !w->visible) return;
    const in_port current(w);
    drag.routine(w->owner, where, true);
    drawn(w);
}

void kel_drag_release(Point where) {
    host_window* w = drag.window;
    if (!w) return;
    drag.window = nullptr;
    const in_port current(w);
    drag.routine(w->owner, where, false);
    drawn(w);
}

void kel_window_pointer(host_window* w, Point where, int modifiers) {
    if (w->visible) kel_private<"cursor">(w->owner, where, modifiers);
}

void kel_window_pointerout(host_window* w, Point where, int modifiers) {
    if (w->visible) kel_private<"cursorout">(w->owner, where, modifiers);
}

void kel_window_key(host_window* w, int code) {
    if (!w->visible) return;
    const in_port current(w);
    kel_private<"key">(w->owner, code);
    drawn(w);
}

void kel_window_resize(host_window* w, int width, int height) {
    w->width = static_cast<std::int16_t>(std::clamp<int>(width, 1, KEL_WINDOW_MOST));
    w->height = static_cast<std::int16_t>(std::clamp<int>(height, 1, KEL_WINDOW_MOST));
    toolbox_port_resize(w->port, w->width, w->height);
    place_bars(w);
    whiten_corner(w);
    kel_private<"wsize">(w->owner);
    drawn(w);
}

void kel_window_update(host_window* w) {
    if (!w->visible) return;
    toolbox_port_invalidate(w->port);
    draw_invalid(w);
}

bool kel_windows_draw_invalid() {
    bool any = false;
    const std::vector<host_window*> all = windows; // an update may make or free windows
    for (host_window* w : all) {
        if (std::find(windows.begin(), windows.end(), w) == windows.end()) continue;
        if (!w->visible || !toolbox_port_isinvalid(w->port)) continue;
        draw_invalid(w);
        any = true;
    }
    return any;
}

void kel_window_scroll_to(host_window* w, int h, int v) {
    if (!w->visible) return;
    const auto held = [](int value, std::int16_t max) {
        return static_cast<std::int16_t>(std::clamp<int>(value, 0, max));
    };
    const std::int16_t to_h = held(h, w->hscroll_max);
    const std::int16_t to_v = held(v, w->vscroll_max);
    if (to_h == w->hscroll_value && to_v == w->vscroll_value) return;
    host_window_setscrollval(w, to_h, to_v);
    const in_port current(w);
    kel_private<"scroll">(w->owner);
    drawn(w);
}

// ---------------------------------------------------------------------------------------------------------------------
// The number field and the palette

host_numfield* host_numfield_new(host_object* owner, void (*text)(std::int32_t value, char* out)) {
    auto* n = new host_numfield;
    n->owner = owner;
    n->text = text;
    return n;
}

void host_numfield_free(host_numfield* n) {
    delete n;
}

void host_numfield_draw(host_numfield* n) {
    char text[64] = "";
    n->text(n->value, text);
    unsigned char pascal[256];
    host_ctopcpy(pascal, text);
    EraseRect(&n->rect);
    TextFont(LMGetSysFontFam());
    TextSize(LMGetSysFontSize());
    TextFace(kFaceBold);
    MoveTo(n->rect.left + 2, n->rect.top + 14);
    DrawString(pascal);
    TextFace(kFacePlain);
}

void host_forecolor(int index, int set) {
    if (set != 1) return;
    const RGBColor c = palette_color(index);
    RGBForeColor(&c);
}

void host_movecursor(Point global) {
    const host_platform& p = kel_platform();
    if (p.move_pointer) p.move_pointer(p.user, global);
}

void host_rescopy(file_type, std::int16_t) {
    // The toolbox finds every resource of the object in its one table already.
}
