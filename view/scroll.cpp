// view/scroll.cpp: how far the content reaches, the scroll bars, and drawing the content.
// Layer: view.
// Called by the window, the zoom, the mouse and everything that changes the sequence's end.
#include "view/scroll.h"

#include <algorithm>

#include "core/sequence.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"
#include "view/legend.h"

namespace {

// Empty space behind the last event, in units of Time.
constexpr std::int32_t END_MARGIN = 40000;
constexpr int EXTENT_SHIFT = 4; // 16 pixels a step
// What of the window's width and height is not data area: left margin, row and scroll bars, less what may show beyond.
constexpr int WIDTH_AROUND = 73;
constexpr int HEIGHT_AROUND = 104;
// The horizontal scroll bar is so much shorter than the port: the zoom box and the corner.
constexpr int HBAR_LESS = 63;

// The scroll bar part being held: one for the whole program, since one button is held at a time. Valid while a part is
// held; main level.
std::int16_t scrollCode = 0;
std::int16_t scrollAmt = 0;
std::int16_t scrollVertical = 0;
brisolan* scrollInstance = nullptr;
ControlActionUPP brisolan_scrollUPP = nullptr; // made at its first use, kept for the life of the process

// The event that reaches furthest; of equals the first; null when there is none. Compared in units of Time.
const event* furthest_event(const brisolan* x) {
    const std::int64_t ratio = x->xzoom / brisolan_factor(x->lenzoom);
    const int length = x->lenparam;
    const event* furthest = nullptr;
    std::int64_t end = INT64_MIN;
    for (const event* e : brisolan_each(x)) {
        const std::int64_t its_end = ratio * event_param(*e, length) + e->time;
        const bool further = its_end > end; // no branch: while times rise it often is
        furthest = further ? e : furthest;
        end = further ? its_end : end;
    }
    return furthest;
}

// Kept: an empty sequence's margin is by the length's factor, any other's by Time's.
std::int64_t extent_in_pixels(const brisolan* x) {
    const event* e = furthest_event(x);
    if (!e) return static_cast<std::int16_t>(END_MARGIN / brisolan_factor(x->lenzoom));
    const std::int64_t start = std::int64_t{e->time} * UNIT / brisolan_factor(x->xzoom);
    return brisolan_barlength(x, e) + start + END_MARGIN / brisolan_factor(x->xzoom);
}

// Kept: the same numbers serve both bars, so a vertical page is short: its steps are single pixels.
std::int16_t step_of(std::int16_t part, int page) {
    switch (part) {
    case kControlUpButtonPart: return -1;
    case kControlDownButtonPart: return 1;
    case kControlPageUpPart: return static_cast<std::int16_t>(-page);
    default: return static_cast<std::int16_t>(page);
    }
}

int press_and_hold(brisolan* x, ControlHandle control, std::int16_t part, Point where) {
    Rect bounds;
    GetPortBounds(host_window_systemwindow(x->window), &bounds);
    int page = 0;
    if (control == x->window->vscroll)
        page = ((bounds.bottom - bounds.top - SCROLLBAR) >> EXTENT_SHIFT) - 1;
    else if (control == x->window->hscroll)
        page = ((bounds.right - bounds.left - HBAR_LESS) >> EXTENT_SHIFT) - 2;
    else
        return 1;
    scrollVertical = control == x->window->vscroll ? 1 : 0;
    scrollAmt = step_of(part, page);
    scrollCode = part;
    scrollInstance = x;
    if (!brisolan_scrollUPP) brisolan_scrollUPP = NewControlActionUPP(brisolan_scrollproc);
    TrackControl(control, where, brisolan_scrollUPP);
    return 1;
}

void set_scroll(brisolan* x, bool vertical, std::int16_t value) {
    const std::int16_t h = vertical ? x->window->hscroll_value.get() : value;
    const std::int16_t v = vertical ? value : x->window->vscroll_value.get();
    host_window_setscrollval(x->window, h, v);
}

int drag_thumb(brisolan* x, ControlHandle control, Point where) {
    const RgnHandle saved = t_cliprect(0, 0, x->window->width, x->window->height);
    TrackControl(control, where, nullptr);
    set_scroll(x, control == x->window->vscroll, GetControlValue(control));
    t_restoreclip(saved);
    brisolan_scroll(x);
    return 1;
}

void clip_to_port(GrafPtr port) {
    Rect bounds;
    GetPortBounds(port, &bounds);
    ClipRect(&bounds);
}

} // namespace

void brisolan_remax(brisolan* x) {
    const std::int64_t steps = extent_in_pixels(x) >> EXTENT_SHIFT;
    x->hscroll_extent = static_cast<std::uint16_t>(std::clamp<std::int64_t>(steps, 0, INT16_MAX));
    x->vscroll_extent = static_cast<std::uint16_t>(std::max<std::int16_t>(YDATAHEIGHT(x), 0));
    brisolan_redraw(x);
}

void brisolan_chkscroll(brisolan* x) {
    host_window* w = x->window;
    const auto h = static_cast<std::int16_t>(x->hscroll_extent - ((w->width - WIDTH_AROUND) >> EXTENT_SHIFT));
    const auto v = static_cast<std::int16_t>(x->vscroll_extent + HEIGHT_AROUND - w->height);
    host_window_setscrollmax(w, h, v);
    const std::int16_t within_h = std::min(w->hscroll_value.get(), h);
    const std::int16_t within_v = std::min(w->vscroll_value.get(), v);
    const std::int16_t h_before = w->hscroll_value;
    const std::int16_t v_before = w->vscroll_value;
    if (within_h == h_before && within_v == v_before) return;
    host_window_setscrollval(w, within_h, within_v);
    if (w->hscroll_value == h_before && w->vscroll_value == v_before) return; // the window held them at 0
    // All of it stands elsewhere now, and nobody else knows.
    x->redraw.redraw_bg = std::uint8_t{1};
    x->redraw.redraw_events = std::uint8_t{1};
    x->redraw.redraw_panel = std::uint8_t{1};
    brisolan_redraw(x);
}

int brisolan_inscroll(brisolan* x, Point where) {
    ControlHandle control = nullptr;
    const std::int16_t part = FindControl(where, host_window_systemwindow(x->window), &control);
    if (part == kControlIndicatorPart) return drag_thumb(x, control, where);
    if (part < kControlUpButtonPart || part > kControlPageDownPart) return 0;
    return press_and_hold(x, control, part, where);
}

void brisolan_scrollproc(ControlHandle control, std::int16_t part) {
    if (part != scrollCode) return;
    brisolan* x = scrollInstance;
    if (!x->window->visible) return;
    const GrafPtr before = host_window_setport(x->window);
    const std::int16_t was = GetControlValue(control);
    const int value = std::clamp(was + scrollAmt, 0, static_cast<int>(GetControlMaximum(control)));
    set_scroll(x, scrollVertical != 0, static_cast<std::int16_t>(value));
    clip_to_port(x->window->port);
    SetControlValue(control, value);
    if (GetControlValue(control) != was) brisolan_scroll(x);
    clip_to_port(x->window->port);
    SetPort(before);
}

void brisolan_scroll(brisolan* x) {
    const RgnHandle saved = t_getclip();
    brisolan_contents(x);
    t_restoreclip(saved);
}

void brisolan_contents(brisolan* x) {
    brisolan_drawbg(x);
    brisolan_drawevts(x);
    brisolan_drawtimeguide(x);
    brisolan_drawylegend(x);
}

void brisolan_zoomupdate(brisolan* x) {
    brisolan_remax(x);
    brisolan_chkscroll(x);
    brisolan_contents(x);
}

void brisolan_resetscroll() {
    scrollCode = 0;
    scrollAmt = 0;
    scrollVertical = 0;
    scrollInstance = nullptr;
}
