// view/gather.cpp: erasings and drawings of many events, carried out together.
// Layer: view, internal to the data area.
// Called by the erasing and the drawing of events.
#include "view/gather.h"

#include <algorithm>

#include "view/draw.h"
#include "view/eventclip.h"

namespace {

// ---- put down

// The event's place is that of the drawing made last.
void keep_place(const view_index& ix, event* e) {
    const auto now = static_cast<std::uint32_t>(ix.drawings.size());
    if (e->place != now) e->place = now;
}

// For the list as it is, should it turn out that the drawings are all there is.
void begin_whole(const brisolan* x, view_index& ix) {
    brisolan_beginplaces(x, ix);
    ix.placed = false;
    ix.whole = true;
    ix.in_order = true;
    ix.expected = x->events;
}

// Something else is gathered than what leaves the drawings whole: the log is written from here on.
void end_whole(view_index& ix) {
    if (!ix.whole) return;
    ix.whole = false;
    for (std::uint32_t i = 0; i < ix.drawings.size(); ++i)
        ix.log.push({brisolan_erasedbox(ix.drawings[i].look), i + 1});
}

void log_erasing(view_index& ix, const bar_box& box) {
    ix.log.push({box, 0});
}

void log_drawing(view_index& ix, event* e, const bar_look& look) {
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

// ---- carried out from the log

template <class Each> void each_far_box(const view_index& ix, const log_step& step, Each each) {
    for (auto i = step.erased.left; i < step.erased.right; ++i) {
        bar_look look = brisolan_place(ix.frame, ix.far_erased[static_cast<std::size_t>(i)]);
        brisolan_measure(ix.frame, &look);
        each(brisolan_erasedbox(look));
    }
}

// Tells for each gathered drawing whether anything erased after it overlapped it; leaves the map of all that was erased.
void find_touched_drawings(view_index& ix) {
    ix.touches.begin(ix.frame);
    for (std::size_t i = ix.log.size(); i-- > 0;) {
        const log_step& step = ix.log[i];
        if (step.drawing == FAR_ERASINGS) {
            each_far_box(ix, step, [&ix](const bar_box& box) { ix.touches.add(box); });
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
        if (drawn && brisolan_shows(x, ix, *e, look)) {
            if (d && d->look == look) d->redundant = true;
            ix.wanted.push(brisolan_lastentry(ix));
            e->needsdraw = std::uint8_t{0};
        } else {
            ix.dirty.add(brisolan_lastentry(ix));
            e->needsdraw = std::uint8_t{1};
        }
    });
}

// ---- with drawings of the marked ones in between

// Who is drawn by each step of the log that draws the marked ones. These are counted from 0; behind the last of them stands
// what is drawn over the whole log.
struct marked_drawings {
    std::vector<std::uint32_t> next;    // of each step of the log, and of its end: which of them is the next
    std::vector<std::uint32_t> begin;   // of each of them: where its entries begin; one more for the end
    std::vector<std::uint32_t> entries; // in list order
};

void find_next(const view_index& ix, marked_drawings& m) {
    m.next.resize(ix.log.size() + 1);
    std::uint32_t left = ix.nmarked;
    m.next.back() = left;
    for (std::size_t i = ix.log.size(); i-- > 0;) {
        if (ix.log[i].drawing == MARKED_DRAWN) --left;
        m.next[i] = left;
    }
}

// The map of what each step erased, steps counted from 1.
last_touch_map last_touches(const view_index& ix) {
    last_touch_map touches;
    touches.begin(ix.frame);
    for (std::size_t i = 0; i < ix.log.size(); ++i) {
        const auto now = static_cast<std::uint32_t>(i + 1);
        const auto add = [&touches, now](const bar_box& box) { touches.add(box, now); };
        if (ix.log[i].drawing == FAR_ERASINGS)
            each_far_box(ix, ix.log[i], add);
        else
            add(ix.log[i].erased);
    }
    return touches;
}

// By which step, counted from 1, each drawing was made; 0 for the drawing of that number, which there is none of.
std::vector<std::uint32_t> steps_of_drawings(const view_index& ix) {
    std::vector<std::uint32_t> steps(ix.drawings.size() + 1, 0);
    for (std::size_t i = 0; i < ix.log.size(); ++i) {
        const std::uint32_t drawing = ix.log[i].drawing;
        if (drawing > 0 && drawing < steps.size()) steps[drawing] = static_cast<std::uint32_t>(i + 1);
    }
    return steps;
}

// The wanted entries by their drawing, `when`; left in `wanted` are those that are drawn over the whole log.
void sort_by_drawing(view_index& ix, const std::vector<std::uint32_t>& when, marked_drawings& m) {
    m.begin.assign(ix.nmarked + 2, 0);
    for (const std::uint32_t w : when) ++m.begin[w + 1];
    for (std::size_t w = 1; w < m.begin.size(); ++w) m.begin[w] += m.begin[w - 1];
    m.entries.resize(when.size());
    std::vector<std::uint32_t> to = m.begin;
    for (std::size_t i = 0; i < when.size(); ++i) m.entries[to[when[i]]++] = ix.wanted[i];
    ix.wanted.clear();
    for (std::uint32_t i = m.begin[ix.nmarked]; i < m.begin[ix.nmarked + 1]; ++i)
        ix.wanted.push(m.entries[i]);
}

// As mark_gathered. An event is drawn in the last of the drawings that it would be drawn in: whatever is drawn of it
// before, is drawn again or erased by then.
marked_drawings mark_in_between(brisolan* x, view_index& ix, bool drawn) {
    marked_drawings m;
    find_next(ix, m);
    const last_touch_map touches = last_touches(ix);
    const std::vector<std::uint32_t> steps = steps_of_drawings(ix);
    std::vector<std::uint32_t> when; // each wanted entry is drawn
    ix.wanted.clear();
    brisolan_placeall(x, ix, [&](event* e, const bar_look& look, std::uint32_t place) {
        placed_event* d = brisolan_drawingof(ix, e, place);
        const std::uint32_t by = d ? steps[place] : 0;
        const std::uint32_t touched = touches.last(brisolan_touchedbox(ix.frame, look));
        if (touched <= by && !e->needsdraw) return;
        const std::uint32_t at = m.next[touched > by ? touched - 1 : by];
        if ((at < ix.nmarked || drawn) && brisolan_shows(x, ix, *e, look)) {
            if (d && d->look == look) d->redundant = true;
            ix.wanted.push(brisolan_lastentry(ix));
            when.push_back(at);
            e->needsdraw = std::uint8_t{0};
        } else {
            ix.dirty.add(brisolan_lastentry(ix));
            e->needsdraw = std::uint8_t{1};
        }
    });
    sort_by_drawing(ix, when, m);
    return m;
}

void add_drawing(view_index& ix, const marked_drawings& m, std::uint32_t which) {
    for (std::uint32_t i = m.begin[which + 1]; i-- > m.begin[which];)
        ix.pass.add(ix.entries[m.entries[i]].look);
}

// Carries the log out, and then draws the wanted ones over it; but of neither what does not stay in sight, nor the
// drawings that are made again anyway.
void replay(view_index& ix, const marked_drawings& m) {
    ix.pass.begin(ix.frame);
    brisolan_addwanted(ix);
    std::uint32_t marked = ix.nmarked;
    for (std::size_t i = ix.log.size(); i-- > 0;) {
        const log_step& step = ix.log[i];
        if (step.drawing == FAR_ERASINGS) continue;
        if (step.drawing == MARKED_DRAWN) {
            add_drawing(ix, m, --marked);
            continue;
        }
        if (step.drawing != 0 && !ix.drawings[step.drawing - 1].redundant)
            ix.pass.add(ix.drawings[step.drawing - 1].look);
        if (step.erased.left < step.erased.right) ix.pass.add_erasing(step.erased);
    }
    ix.pass.draw(ix.frame);
}

void settle_log(brisolan* x, view_index& ix, settling how) {
    end_whole(ix);
    marked_drawings m;
    if (ix.nmarked > 0)
        m = mark_in_between(x, ix, how == settling::all);
    else
        mark_gathered(x, ix, how == settling::all);
    if (how == settling::nothing) return;
    const event_clip clip(x);
    replay(ix, m);
}

// ---- carried out from the drawings alone

// Whether the drawings are every event of the sequence, each once and as it is.
bool is_whole(const brisolan* x, const view_index& ix) {
    const bool same_list =
        ix.relinked == x->relinked && ix.reshaped == x->reshaped && ix.nevents == x->nevents;
    return ix.whole && same_list && static_cast<std::int64_t>(ix.drawings.size()) == x->nevents;
}

// The drawings become the places, in the list's order. Where it is not theirs, `ranks` tells of each entry the drawing's
// number and `drawn` the other way about. False when the scheduler has taken events away this moment.
bool put_in_list_order(const brisolan* x, view_index& ix) {
    if (ix.in_order) {
        ix.entries.swap(ix.drawings);
        return true;
    }
    ix.entries.clear();
    ix.ranks.clear();
    ix.drawn.resize(ix.drawings.size());
    for (event* e : brisolan_each(x)) {
        const placed_event* d = brisolan_drawingof(ix, e, e->place);
        if (!d) continue; // it was recorded this moment
        const std::uint32_t rank = e->place - 1;
        ix.entries.push(*d);
        ix.ranks.push(rank);
        ix.drawn[rank] = brisolan_lastentry(ix);
        e->place = brisolan_lastentry(ix) + 1;
    }
    return ix.entries.size() == ix.drawings.size();
}

// Entries from `first` to before `behind` are a run of drawings, too: those of the same numbers, in whatever order.
std::size_t begin_of_run(const view_index& ix, std::size_t behind) {
    std::size_t first = behind - 1;
    if (ix.in_order) return first;
    for (std::size_t least = ix.ranks[first]; least < first;
         least = std::min<std::size_t>(least, ix.ranks[first]))
        --first;
    return first;
}

// Who of a run was touched by what was erased after its drawing. Whatever stands over an event was erased as well as
// drawn: so one that anything stands over was touched, and one that lies below others altogether adds nothing to what was
// erased.
void find_touched_in_run(view_index& ix, std::size_t first, std::size_t behind) {
    if (ix.outlooks.size() < behind - first) ix.outlooks.resize(behind - first);
    for (std::size_t rank = behind; rank-- > first;) {
        const std::size_t id = ix.in_order ? rank : ix.drawn[rank];
        placed_event& p = ix.entries[id];
        const bar_outlook outlook = ix.pass.outlook(p.look);
        ix.outlooks[id - first] = outlook;
        p.touched = outlook.overlain || ix.touches.touched(brisolan_touchedbox(ix.frame, p.look));
        if (outlook.buried) continue;
        ix.touches.add(brisolan_erasedbox(p.look));
        ix.wanted.push(static_cast<std::uint32_t>(id));
    }
}

// Every event was erased and drawn. Those that were touched later are drawn in the list's order over all that was erased
// and drawn, as everywhere. From the last to the first one walk finds both who was touched and what stays in sight.
void settle_whole(brisolan* x, view_index& ix) {
    if (!put_in_list_order(x, ix)) {
        settle_log(x, ix, settling::all);
        return;
    }
    const event_clip clip(x);
    brisolan_clearplaces(ix); // what they hold for was told when the first was gathered
    ix.touches.begin(ix.frame);
    ix.pass.begin(ix.frame);
    ix.wanted.clear(); // those of which anything may stay in sight, the last drawn first
    for (std::size_t behind = ix.entries.size(); behind > 0;) {
        const std::size_t first = begin_of_run(ix, behind);
        find_touched_in_run(ix, first, behind);
        while (behind > first) {
            const placed_event& p = ix.entries[--behind];
            if (p.touched) ix.pass.add(p.look, ix.outlooks[behind - first]);
        }
    }
    for (const std::uint32_t id : ix.wanted) {
        const placed_event& p = ix.entries[id];
        if (!p.touched) ix.pass.add(p.look);
        ix.pass.add_erasing(brisolan_erasedbox(p.look));
    }
    ix.pass.draw(ix.frame);
}

} // namespace

void brisolan_begingathering(brisolan* x, view_index& ix) {
    if (ix.gathering) return;
    ix.gathering = true;
    begin_whole(x, ix);
}

void brisolan_gathererasing(view_index& ix, const bar_box& box) {
    end_whole(ix);
    log_erasing(ix, box);
}

void brisolan_gatherfarerasing(view_index& ix, const event& e) {
    end_whole(ix);
    const auto end = static_cast<std::int32_t>(ix.far_erased.size());
    ix.far_erased.push(brisolan_valuesof(ix.frame, e));
    if (ix.log.empty() || ix.log.back().drawing != FAR_ERASINGS)
        ix.log.push({{end, end, 0, 0}, FAR_ERASINGS});
    ix.log.back().erased.right = end + 1;
}

void brisolan_gathermarked(view_index& ix) {
    end_whole(ix);
    if (!ix.log.empty() && ix.log.back().drawing == MARKED_DRAWN) return;
    ix.log.push({{}, MARKED_DRAWN});
    ++ix.nmarked;
}

void brisolan_gatherdrawing(view_index& ix, event* e, const bar_look& look) {
    end_whole(ix);
    log_drawing(ix, e, look);
}

bool brisolan_gatheragain(brisolan* x, view_index& ix, event* e) {
    if (ix.whole && ix.drawings.empty())
        begin_whole(x, ix); // the list may have changed since nothing was gathered
    const bool first_time = !brisolan_drawingof(ix, e, e->place);
    placed_event& drawing = ix.drawings.push(); // in its place already: mostly that is all there is to do
    drawing = {e, brisolan_look(ix.frame, *e), false, false, false};
    const bool drawn = brisolan_shows(x, ix, *e, drawing.look);
    if (ix.whole && drawn && first_time) {
        if (e != ix.expected) ix.in_order = false;
        ix.expected = e->next;
        keep_place(ix, e);
        return true;
    }
    const bar_look look = drawing.look;
    ix.drawings.pop();
    end_whole(ix);
    log_erasing(ix, brisolan_erasedbox(look));
    if (drawn) log_drawing(ix, e, look);
    return drawn;
}

void brisolan_settlegathered(brisolan* x, view_index& ix, settling how) {
    if (how == settling::all && is_whole(x, ix))
        settle_whole(x, ix);
    else
        settle_log(x, ix, how);
    ix.gathering = false;
    ix.whole = false;
    ix.log.clear();
    ix.nmarked = 0;
    ix.far_erased.clear();
    ix.drawings.clear();
}
