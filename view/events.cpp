// view/events.cpp: drawing events, erasing and redrawing single ones or many, the hit test.
// Layer: view.
// Called by the queued redraw, the scroll bars, the selection and every edit.
#include "view/events.h"

#include <algorithm>

#include "core/sequence.h"
#include "view/bars.h"
#include "view/draw.h"
#include "view/eventclip.h"
#include "view/format.h"
#include "view/gather.h"
#include "view/geometry.h"
#include "view/index.h"

std::uint32_t g_datadrawings = 0;

namespace {

// So many erasings are carried out at once; with more it is cheaper to gather them. One pass over everything in sight
// costs as much as some hundred of them.
constexpr int FEW = 24;

void want_marked(brisolan* x) {
    if (x->redraw.redraw_marked && x->window->visible) return; // it is asked for
    x->redraw.redraw_marked = std::uint8_t{1};
    brisolan_redraw(x);
}

// ---- at once

void erase_now(brisolan* x, view_index& ix, event* e, const bar_box& box) {
    {
        const event_clip clip(x);
        brisolan_drawpattern(x, box.left, box.top, box.right, box.bottom + 1);
    }
    ++ix.erased;
    const std::int64_t id = brisolan_entryof(ix, e);
    if (id >= 0) {
        ix.dirty.add(static_cast<std::uint32_t>(id));
        ix.stale.add(static_cast<std::uint32_t>(id));
    } else {
        ix.strayed = true;
    }
    brisolan_marktouched(ix, box);
}

void draw_now(brisolan* x, view_index& ix, event* e, const bar_look& look) {
    {
        const event_clip clip(x);
        brisolan_drawbar(ix.frame, look);
    }
    if (ix.placed) brisolan_entrymoved(ix, e, look);
}

// ---- the marked ones

// Those of the entries that may be marked, in list order: what shows is drawn and no longer marked. Mostly they were
// touched by an erasing and look as they did.
void draw_dirty(brisolan* x, view_index& ix) {
    ix.stale.walk([&](std::uint32_t id) {
        event* e = ix.entries[id].e;
        brisolan_entrymoved(ix, e, brisolan_look(ix.frame, *e));
    });
    ix.stale.clear();
    ix.wanted.clear();
    ix.dirty.walk([&](std::uint32_t id) {
        const placed_event& p = ix.entries[id];
        if (!p.e->needsdraw || !brisolan_shows(x, ix, *p.e, p.look)) return;
        ix.wanted.push(id);
        p.e->needsdraw = std::uint8_t{0};
    });
    ix.dirty.clear();
    const event_clip clip(x);
    brisolan_drawwanted(ix);
}

// A walk over all: marked ones are drawn.
void draw_all_marked(brisolan* x, view_index& ix) {
    const event_clip clip(x);
    ix.wanted.clear();
    brisolan_placeall(x, ix, [&](event* e, const bar_look& look, std::uint32_t) {
        if (!e->needsdraw || !brisolan_shows(x, ix, *e, look)) return;
        ix.wanted.push(brisolan_lastentry(ix));
        e->needsdraw = std::uint8_t{0};
    });
    brisolan_drawwanted(ix);
}

// ---- the hit test

bool is_under(const view_frame& f, const event& e, int h, int v) {
    bar_look look = brisolan_place(f, e);
    if (v < look.y - 1 || v > look.y + 1 || h < look.left) return false;
    brisolan_measure(f, &look);
    return h <= look.right();
}

event* find_by_walk(const brisolan* x, const view_frame& f, int h, int v) {
    for (event* e : brisolan_each(x)) {
        if (brisolan_trackisshown(x, e->track) && is_under(f, *e, h, v)) return e;
    }
    return nullptr;
}

// Placing all anew outside a redraw must not lose who is marked.
void place_for_finding(brisolan* x, view_index& ix) {
    brisolan_placeall(x, ix, [&](event* e, const bar_look& look, std::uint32_t) {
        if (e->needsdraw && brisolan_shows(x, ix, *e, look)) ix.dirty.add(brisolan_lastentry(ix));
    });
}

// Both ends of a bar and the rows beside its middle count as under it: a box of open sides around the point.
event* find_placed(brisolan* x, view_index& ix, int h, int v) {
    const bar_box around{h - 1, h + 1, static_cast<std::int16_t>(v - 2), static_cast<std::int16_t>(v + 2)};
    std::uint32_t first = UINT32_MAX;
    brisolan_overlapping(ix, around, [&](std::uint32_t id) {
        const placed_event& p = ix.entries[id];
        const bool near = v >= p.look.y - 1 && v <= p.look.y + 1;
        if (id < first && near && brisolan_trackisshown(x, p.e->track)) first = id;
    });
    return first == UINT32_MAX ? nullptr : ix.entries[first].e;
}

} // namespace

void brisolan_eventclip(brisolan* x) {
    Rect data;
    brisolan_getdatarect(x, &data);
    ClipRect(&data);
}

void brisolan_drawbg(brisolan* x) {
    view_index& ix = brisolan_index(x);
    if (ix.gathering) brisolan_settlegathered(x, ix, settling::nothing);
    Rect data;
    brisolan_getdatarect(x, &data);
    const RgnHandle saved = t_cliprect(data.left, data.top, data.right, data.bottom);
    brisolan_drawpattern(x, data.left, data.top, data.right, data.bottom);
    // Below it nothing is, but a larger range may have reached there.
    const int foot = x->window->height - BOTTOM_MARGIN;
    const int below = std::max(data.bottom, data.top);
    if (below < foot) {
        t_clipit(data.left, below, data.right, foot);
        t_eraserect(data.left, below, data.right, foot);
    }
    t_restoreclip(saved);
}

void brisolan_drawevts(brisolan* x) {
    brisolan_settle(x);
    view_index& ix = brisolan_index(x);
    brisolan_eventclip(x);
    brisolan_beginbars();
    ix.wanted.clear();
    brisolan_placeall(x, ix, [&](event* e, const bar_look& look, std::uint32_t) {
        if (!brisolan_shows(x, ix, *e, look)) return;
        ix.wanted.push(brisolan_lastentry(ix));
        if (e->needsdraw) e->needsdraw = std::uint8_t{0};
    });
    brisolan_drawwanted(ix);
}

event_pen::event_pen(brisolan* owner, std::int32_t count)
    : x(owner), ix(brisolan_index(owner)), visible(owner->window->visible) {
    if (count > FEW && visible) brisolan_begingathering(x, ix);
}

void event_pen::draw(event* e) {
    if (ix.gathering && brisolan_isfaraway(ix.frame, *e)) return;
    // Of what is not seen it matters only whether it would be.
    if (!visible) {
        if (brisolan_shows(x, ix, *e, brisolan_place(ix.frame, *e))) e->needsdraw = std::uint8_t{0};
        return;
    }
    const bar_look look = brisolan_look(ix.frame, *e);
    if (!brisolan_shows(x, ix, *e, look)) return;
    e->needsdraw = std::uint8_t{0};
    if (!ix.gathering) {
        draw_now(x, ix, e, look);
        return;
    }
    brisolan_gatherdrawing(ix, e, look);
}

void event_pen::erase(event* e) {
    e->needsdraw = std::uint8_t{1};
    want_marked(x);
    // A hidden window has no port, and is drawn anew when it is shown.
    if (!visible) return;
    if (ix.gathering && brisolan_isfaraway(ix.frame, *e)) {
        brisolan_gatherfarerasing(ix, *e);
        return;
    }
    const bar_box box = brisolan_erasedbox(brisolan_look(ix.frame, *e));
    if (!ix.gathering && ix.erased < FEW && brisolan_isplaced(x, ix)) {
        erase_now(x, ix, e, box);
        return;
    }
    brisolan_begingathering(x, ix);
    brisolan_gathererasing(ix, box);
}

// In one go while many are: at one look at the event. Of what is not seen it matters only whether it would be drawn.
void event_pen::again(event* e) {
    if (visible && !ix.gathering) {
        erase(e);
        draw(e);
        return;
    }
    want_marked(x);
    bool drawn = false;
    if (!visible) {
        drawn = brisolan_shows(x, ix, *e, brisolan_place(ix.frame, *e));
    } else if (brisolan_isfaraway(ix.frame, *e)) {
        brisolan_gatherfarerasing(ix, *e);
    } else {
        drawn = brisolan_gatheragain(x, ix, e);
    }
    e->needsdraw = std::uint8_t{drawn ? std::uint8_t{0} : std::uint8_t{1}};
}

void event_pen::draw_marked() {
    if (!visible) return;
    if (!ix.gathering && ndrawn_marked < FEW) {
        ++ndrawn_marked;
        brisolan_drawdirtyevts(x);
        return;
    }
    brisolan_begingathering(x, ix);
    brisolan_gathermarked(ix);
}

void brisolan_drawit(brisolan* x, event* e) {
    event_pen(x, 1).draw(e);
}

void brisolan_eraseit(brisolan* x, event* e) {
    event_pen(x, 1).erase(e);
}

void brisolan_drawdirtyevts(brisolan* x) {
    if (!x->window->visible) return;
    view_index& ix = brisolan_index(x);
    if (ix.gathering)
        brisolan_settlegathered(x, ix, settling::all);
    else if (brisolan_isplaced(x, ix) && !ix.strayed)
        draw_dirty(x, ix);
    else
        draw_all_marked(x, ix);
    ix.erased = 0;
}

void brisolan_settle(brisolan* x) {
    view_index& ix = brisolan_index(x);
    if (ix.gathering) brisolan_settlegathered(x, ix, settling::erased);
}

void brisolan_freeindex(brisolan* x) {
    delete x->index;
    x->index = nullptr;
}

int brisolan_trackcolor(std::int32_t index) {
    const int colour = brisolan_trackpalette(index);
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

std::int32_t brisolan_eventrect(const brisolan* x, const event* e, std::int32_t* left, std::int32_t* top,
                                std::int32_t* right, std::int32_t* bottom) {
    const view_frame f = brisolan_frame(brisolan_framesettings(x));
    const bar_look look = brisolan_look(f, *e);
    const bar_box box = brisolan_erasedbox(look);
    *left = box.left;
    *top = box.top;
    *right = box.right;
    *bottom = box.bottom;
    return look.right() - look.left;
}

event* brisolan_findevent(brisolan* x, int h, int v) {
    view_index& ix = brisolan_index(x);
    if (x->nevents > FEW && !ix.gathering && !brisolan_isplaced(x, ix)) place_for_finding(x, ix);
    const bool in_window = h >= ix.frame.data.left && h <= ix.frame.set.width;
    if (in_window && brisolan_isplaced(x, ix) && !ix.strayed && ix.dirty.empty())
        return find_placed(x, ix, h, v);
    return find_by_walk(x, ix.frame, h, v);
}
