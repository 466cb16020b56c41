// view/events.cpp: drawing events, erasing and redrawing single ones, the hit test.
// Layer: view.
// Called by the queued redraw, the scroll bars, the selection and every edit.
#include "view/events.h"

#include "core/sequence.h"
#include "view/bars.h"
#include "view/draw.h"
#include "view/format.h"
#include "view/geometry.h"

namespace {

// The window's port, clipped to the data area, for the scope's life. A hidden window has no port: nothing is drawn then.
class event_clip {
public:
    explicit event_clip(brisolan* x) {
        GetPort(&before);
        SetPort(x->window->visible ? x->window->port : nullptr);
        saved = t_getclip();
        brisolan_eventclip(x);
    }
    ~event_clip() {
        t_restoreclip(saved);
        SetPort(before);
    }
    event_clip(const event_clip&) = delete;
    event_clip& operator=(const event_clip&) = delete;

private:
    GrafPtr before = nullptr;
    RgnHandle saved = nullptr;
};

void draw_clipped(brisolan* x, event* e) {
    const bar b = brisolan_bar(x, e);
    if (!brisolan_inspan(x, b) || !brisolan_trackisshown(x, e->track)) return;
    brisolan_drawbar(x, e, b);
    e->needsdraw = std::uint8_t{0};
}

void want_marked(brisolan* x) {
    x->redraw.redraw_marked = std::uint8_t{1};
    brisolan_redraw(x);
}

} // namespace

void brisolan_eventclip(brisolan* x) {
    Rect data;
    brisolan_getdatarect(x, &data);
    ClipRect(&data);
}

void brisolan_drawevts(brisolan* x) {
    brisolan_eventclip(x);
    for (event* e = x->events; e; e = e->next) draw_clipped(x, e);
}

void brisolan_drawit(brisolan* x, event* e) {
    const event_clip clip(x);
    draw_clipped(x, e);
}

void brisolan_eraseit(brisolan* x, event* e) {
    std::int32_t left, top, right, bottom;
    brisolan_eventrect(x, e, &left, &top, &right, &bottom);
    {
        const event_clip clip(x);
        brisolan_drawpattern(x, left, top, right, bottom + 1);
    }
    e->needsdraw = std::uint8_t{1};
    for (event* other = x->events; other; other = other->next) {
        const bar_reach reach = brisolan_reach(x, other, brisolan_bar(x, other));
        if (reach.touched_by(left, top, right, bottom)) other->needsdraw = std::uint8_t{1};
    }
    want_marked(x);
}

void brisolan_drawdirtyevts(brisolan* x) {
    const event_clip clip(x);
    for (event* e = x->events; e; e = e->next) {
        if (e->needsdraw) draw_clipped(x, e);
    }
}

void brisolan_settle(brisolan*) {}

void brisolan_freeindex(brisolan*) {}

int brisolan_trackcolor(std::int32_t index) {
    constexpr int FIRST = 47; // tracks 1 to 16 downward, then 17 to 32 upward from LATER
    constexpr int LATER = 4;
    constexpr int HALF = 16;
    int colour = FIRST;
    if (index >= 0 && index < HALF) colour = FIRST - index;
    if (index >= HALF) colour = index % HALF + LATER;
    t_color(colour);
    return colour;
}

void brisolan_drawsharps(brisolan* x, int n) {
    x->show_sharps = n > 0 ? 1 : 0;
    sharp = 0;
    x->redraw.redraw_bg = std::uint8_t{1};
    x->redraw.redraw_events = std::uint8_t{1};
    x->redraw.redraw_panel = std::uint8_t{1};
    brisolan_redraw(x);
}

event* brisolan_findevent(brisolan* x, int h, int v) {
    for (event* e = x->events; e; e = e->next) {
        if (!brisolan_trackisshown(x, e->track)) continue;
        const std::int32_t y = brisolan_valuetov(x, event_param(*e, x->yparam));
        if (v < y - 1 || v > y + 1) continue;
        const std::int32_t left = brisolan_timetoh(x, e->time);
        if (h >= left && h <= left + brisolan_nwidth(x, e)) return e;
    }
    return nullptr;
}
