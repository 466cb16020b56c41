// view/events.cpp: drawing events, erasing and redrawing single ones or many, the hit test.
// Layer: view.
// Called by the queued redraw, the scroll bars, the selection and every edit.
#include "view/events.h"

#include <algorithm>

#include "core/sequence.h"
#include "view/bars.h"
#include "view/draw.h"
#include "view/format.h"
#include "view/geometry.h"
#include "view/index.h"

std::uint32_t g_datadrawings = 0;

namespace {

// Scroll bar and track buttons, which the data area ends above.
constexpr int BOTTOM_MARGIN = 30;

// So many erasings are carried out at once; with more it is cheaper to gather them. One pass over everything in sight
// costs as much as some hundred of them.
constexpr int FEW = 24;

// The window's port, clipped to the data area, for the scope's life.
class event_clip {
public:
    explicit event_clip(brisolan* x) {
        GetPort(&before);
        SetPort(x->window->port);
        saved = t_getclip();
        brisolan_eventclip(x);
        brisolan_beginbars();
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

void want_marked(brisolan* x) {
    if (x->redraw.redraw_marked && x->window->visible) return; // it is asked for
    x->redraw.redraw_marked = std::uint8_t{1};
    brisolan_redraw(x);
}

bool shows(const brisolan* x, const view_index& ix, const event& e, const bar_look& look) {
    return brisolan_inspan(ix.frame, look) && brisolan_trackisshown(x, e.track);
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

// ---- gathered

// From the first one on that is gathered, what was placed counts no more.
void begin_gathering(brisolan* x, view_index& ix) {
    if (ix.gathering) return;
    brisolan_beginplaces(x,
                         ix); // for the list as it is, should it turn out that the drawings are all there is
    ix.placed = false;
    ix.gathering = true;
    ix.whole = true;
    ix.expected = x->events;
}

void gather_erasing(view_index& ix, const bar_box& box) {
    ix.log.push({box, 0});
}

void gather_far_erasing(view_index& ix, const event& e) {
    const auto end = static_cast<std::int32_t>(ix.far_erased.size());
    ix.far_erased.push(brisolan_valuesof(ix.frame, e));
    if (ix.log.empty() || ix.log.back().drawing != FAR_ERASINGS)
        ix.log.push({{end, end, 0, 0}, FAR_ERASINGS});
    ix.log.back().erased.right = end + 1;
}

// The event's place is that of the drawing made last.
void keep_place(const view_index& ix, event* e) {
    const auto now = static_cast<std::uint32_t>(ix.drawings.size());
    if (e->place != now) e->place = now;
}

void gather_drawing(view_index& ix, event* e, const bar_look& look) {
    placed_event* before = brisolan_drawingof(ix, e, e->place);
    if (before && before->look == look) before->redundant = true;
    ix.drawings.push({e, look, false, false, false});
    keep_place(ix, e);
    const std::uint32_t now = e->place;
    if (!ix.log.empty() && ix.log.back().drawing == 0)
        ix.log.back().drawing = now;
    else
        ix.log.push({{}, now});
}

// Something else is gathered than what leaves the drawings whole: the log is written from here on.
void end_whole(view_index& ix) {
    if (!ix.whole) return;
    ix.whole = false;
    for (std::uint32_t i = 0; i < ix.drawings.size(); ++i)
        ix.log.push({brisolan_erasedbox(ix.drawings[i].look), i + 1});
}

// Erases and draws the event as it is, or erases it alone when it does not show; whether it was drawn.
bool gather_again(brisolan* x, view_index& ix, event* e) {
    placed_event& drawing = ix.drawings.push(); // in its place already: mostly that is all there is to do
    drawing = {e, brisolan_look(ix.frame, *e), false, false, false};
    const bool drawn = shows(x, ix, *e, drawing.look);
    if (ix.whole && drawn && e == ix.expected) {
        ix.expected = e->next;
        keep_place(ix, e);
        return true;
    }
    const bar_look look = drawing.look;
    ix.drawings.pop();
    end_whole(ix);
    gather_erasing(ix, brisolan_erasedbox(look));
    if (drawn) gather_drawing(ix, e, look);
    return drawn;
}

void add_far_touches(view_index& ix, const log_step& step) {
    for (auto i = step.erased.left; i < step.erased.right; ++i) {
        bar_look look = brisolan_place(ix.frame, ix.far_erased[static_cast<std::size_t>(i)]);
        brisolan_measure(ix.frame, &look);
        ix.touches.add(brisolan_erasedbox(look));
    }
}

// Tells for each gathered drawing whether anything erased after it overlapped it; leaves the map of all that was erased.
void find_touched_drawings(view_index& ix) {
    ix.touches.begin(ix.frame);
    for (std::size_t i = ix.log.size(); i-- > 0;) {
        const log_step& step = ix.log[i];
        if (step.drawing == FAR_ERASINGS) {
            add_far_touches(ix, step);
            continue;
        }
        if (step.drawing != 0) {
            placed_event& d = ix.drawings[step.drawing - 1];
            d.touched = ix.touches.touched(brisolan_touchedbox(ix.frame, d.look));
        }
        ix.touches.add(step.erased);
    }
}

// Marks whoever was touched, and places all. With `drawn`, the marked ones that show are drawn next: they are wanted,
// in list order, and are not marked any more.
void mark_gathered(brisolan* x, view_index& ix, bool drawn) {
    bool looked = false; // for the touched ones: when all are marked already nobody asks
    ix.wanted.clear();
    brisolan_placeall(x, ix, [&](event* e, const bar_look& look, std::uint32_t place) {
        placed_event* d = brisolan_drawingof(ix, e, place);
        if (!e->needsdraw) {
            if (!looked) find_touched_drawings(ix);
            looked = true;
            const bool touched = d ? d->touched : ix.touches.touched(brisolan_touchedbox(ix.frame, look));
            if (!touched) return;
        }
        if (drawn && shows(x, ix, *e, look)) {
            if (d && d->look == look) d->redundant = true;
            ix.wanted.push(brisolan_lastentry(ix));
            e->needsdraw = std::uint8_t{0};
        } else {
            ix.dirty.add(brisolan_lastentry(ix));
            e->needsdraw = std::uint8_t{1};
        }
    });
}

// Whether the drawings are every event in sight, in the list's order and as they are.
bool is_whole(const brisolan* x, const view_index& ix) {
    const bool same_list =
        ix.relinked == x->relinked && ix.reshaped == x->reshaped && ix.nevents == x->nevents;
    return ix.whole && !ix.expected && same_list;
}

// Carries the log out, and then draws the wanted ones over it; but of neither what does not stay in sight, nor the
// drawings that are made again anyway.
void replay(view_index& ix) {
    ix.pass.begin(ix.frame);
    brisolan_addwanted(ix);
    for (std::size_t i = ix.log.size(); i-- > 0;) {
        const log_step& step = ix.log[i];
        if (step.drawing == FAR_ERASINGS) continue;
        if (step.drawing != 0 && !ix.drawings[step.drawing - 1].redundant)
            ix.pass.add(ix.drawings[step.drawing - 1].look);
        if (step.erased.left < step.erased.right) ix.pass.add_erasing(step.erased);
    }
    ix.pass.draw(ix.frame);
}

// What becomes of what was gathered when it is settled.
enum class settling {
    nothing, // it is not seen: the whole data area is drawn over next
    erased,  // it comes onto the screen; who was touched waits marked
    all      // and is drawn as well
};

// Where the drawings are whole, they are the places from now on, and the touched ones are drawn over what the log would
// tell, as everywhere: found on the way from the last to the first, since it is the later erasings that touch.
void settle_whole(brisolan* x, view_index& ix, settling how) {
    const event_clip clip(x);
    brisolan_beginplaces(x, ix);
    ix.entries.swap(ix.drawings);
    ix.touches.begin(ix.frame);
    ix.pass.begin(ix.frame);
    for (std::size_t i = ix.entries.size(); i-- > 0;) {
        placed_event& p = ix.entries[i];
        p.touched = ix.touches.touched(brisolan_touchedbox(ix.frame, p.look));
        ix.touches.add(brisolan_erasedbox(p.look));
        if (!p.touched) continue;
        if (how == settling::all) {
            ix.pass.add(p.look);
        } else {
            p.e->needsdraw = std::uint8_t{1};
            ix.dirty.add(static_cast<std::uint32_t>(i));
        }
    }
    if (how == settling::nothing) return;
    for (std::size_t i = ix.entries.size(); i-- > 0;) {
        const placed_event& p = ix.entries[i];
        if (how != settling::all || !p.touched) ix.pass.add(p.look);
        ix.pass.add_erasing(brisolan_erasedbox(p.look));
    }
    ix.pass.draw(ix.frame);
}

void settle_log(brisolan* x, view_index& ix, settling how) {
    end_whole(ix);
    mark_gathered(x, ix, how == settling::all);
    if (how == settling::nothing) return;
    const event_clip clip(x);
    replay(ix);
}

void settle(brisolan* x, view_index& ix, settling how) {
    if (is_whole(x, ix))
        settle_whole(x, ix, how);
    else
        settle_log(x, ix, how);
    ix.gathering = false;
    ix.whole = false;
    ix.log.clear();
    ix.far_erased.clear();
    ix.drawings.clear();
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
        if (!p.e->needsdraw || !shows(x, ix, *p.e, p.look)) return;
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
        if (!e->needsdraw || !shows(x, ix, *e, look)) return;
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
    for (event* e = x->events; e; e = e->next) {
        if (brisolan_trackisshown(x, e->track) && is_under(f, *e, h, v)) return e;
    }
    return nullptr;
}

// Placing all anew outside a redraw must not lose who is marked.
void place_for_finding(brisolan* x, view_index& ix) {
    brisolan_placeall(x, ix, [&](event* e, const bar_look& look, std::uint32_t) {
        if (e->needsdraw && shows(x, ix, *e, look)) ix.dirty.add(brisolan_lastentry(ix));
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
    if (ix.gathering) settle(x, ix, settling::nothing);
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
        if (!shows(x, ix, *e, look)) return;
        ix.wanted.push(brisolan_lastentry(ix));
        if (e->needsdraw) e->needsdraw = std::uint8_t{0};
    });
    brisolan_drawwanted(ix);
}

event_pen::event_pen(brisolan* owner, std::int32_t count)
    : x(owner), ix(brisolan_index(owner)), visible(owner->window->visible) {
    if (count > FEW && visible) begin_gathering(x, ix);
}

void event_pen::draw(event* e) {
    if (ix.gathering && brisolan_isfaraway(ix.frame, *e)) return;
    // Of what is not seen it matters only whether it would be.
    if (!visible) {
        if (shows(x, ix, *e, brisolan_place(ix.frame, *e))) e->needsdraw = std::uint8_t{0};
        return;
    }
    const bar_look look = brisolan_look(ix.frame, *e);
    if (!shows(x, ix, *e, look)) return;
    e->needsdraw = std::uint8_t{0};
    if (!ix.gathering) {
        draw_now(x, ix, e, look);
        return;
    }
    end_whole(ix);
    gather_drawing(ix, e, look);
}

void event_pen::erase(event* e) {
    e->needsdraw = std::uint8_t{1};
    want_marked(x);
    // A hidden window has no port, and is drawn anew when it is shown.
    if (!visible) return;
    if (ix.gathering && brisolan_isfaraway(ix.frame, *e)) {
        end_whole(ix);
        gather_far_erasing(ix, *e);
        return;
    }
    const bar_box box = brisolan_erasedbox(brisolan_look(ix.frame, *e));
    if (!ix.gathering && ix.erased < FEW && brisolan_isplaced(x, ix)) {
        erase_now(x, ix, e, box);
        return;
    }
    begin_gathering(x, ix);
    end_whole(ix);
    gather_erasing(ix, box);
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
        drawn = shows(x, ix, *e, brisolan_place(ix.frame, *e));
    } else if (brisolan_isfaraway(ix.frame, *e)) {
        end_whole(ix);
        gather_far_erasing(ix, *e);
    } else {
        drawn = gather_again(x, ix, e);
    }
    e->needsdraw = std::uint8_t{drawn ? std::uint8_t{0} : std::uint8_t{1}};
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
        settle(x, ix, settling::all);
    else if (brisolan_isplaced(x, ix) && !ix.strayed)
        draw_dirty(x, ix);
    else
        draw_all_marked(x, ix);
    ix.erased = 0;
}

void brisolan_settle(brisolan* x) {
    view_index& ix = brisolan_index(x);
    if (ix.gathering) settle(x, ix, settling::erased);
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
