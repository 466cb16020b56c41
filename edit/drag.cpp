// edit/drag.cpp: the three drags that change events: move, tweak and draw, and the change they apply.
// Layer: edit. Called by the host's drag loop from a press on, and by the keyboard.
#include "edit/drag.h"

#include <algorithm>

#include "core/lifecycle.h"
#include "core/sequence.h"
#include "edit/params.h"
#include "edit/press.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"
#include "view/legend.h"
#include "view/legendvalues.h"
#include "view/scroll.h"
#include "view/tracking.h"
#include "view/window.h"

namespace {

// The data area is the clip for the scope's life.
class in_data_area {
public:
    explicit in_data_area(brisolan* x) : before(t_getclip()) { brisolan_eventclip(x); }
    ~in_data_area() { t_restoreclip(before); }
    in_data_area(const in_data_area&) = delete;
    in_data_area& operator=(const in_data_area&) = delete;

private:
    RgnHandle before;
};

// A bound that lies on the wrong side of the other is taken as it comes: the least one is looked at first.
std::int32_t held_in(const param_record& p, std::int64_t value) {
    if (value < p.min) return p.min;
    if (value > p.max) return p.max;
    return static_cast<std::int32_t>(value);
}

std::int32_t moved(const brisolan* x, int index, std::int64_t value) {
    if (index != PARAM_TIME) return held_in(x->params[static_cast<std::size_t>(index)], value);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, 0, INT32_MAX));
}

int grabbed_parameter(const brisolan* x) {
    switch (g_grabbedthird) {
    case THIRD_START: return PARAM_TIME;
    case THIRD_BODY: return x->yparam;
    default: return x->lenparam;
    }
}

void end_of_drag(brisolan* x) {
    brisolan_remax(x);
    brisolan_changed(x);
    brisolan_dirty(x);
    x->dragkind = DRAG_NONE;
    x->drawn = nullptr;
}

// The pointer's distance from where it was at the last step, up and right being more.
int tweak_step(brisolan* x, Point where) {
    if (g_grabbedthird == THIRD_BODY) {
        const int step = x->clickpt.v - where.v;
        x->clickpt.v = where.v;
        return step;
    }
    const int step = where.h - x->clickpt.h;
    x->clickpt.h = where.h;
    return step;
}

// The one event that is selected, where that can be told without looking for others: the counter never counts too few.
event* only_selected(const brisolan* x) {
    event* e = x->nselected == 1 ? static_cast<event*>(x->firstsel) : nullptr;
    return e && e->selected ? e : nullptr;
}

} // namespace

void brisolan_offset(brisolan* x, int index, std::int64_t delta) {
    event_pen pen(x, x->nselected);
    const auto move = [&](event* e) {
        pen.erase(e);
        cell<std::int32_t>& value = event_param(*e, index);
        value = moved(x, index, value.get() + delta);
        e->needsdraw = std::uint8_t{1};
    };
    if (event* only = only_selected(x)) {
        move(only);
    } else {
        for (event* e : brisolan_each(x)) {
            if (e->selected) move(e);
        }
    }
    if (index == PARAM_TIME) brisolan_resort(x);
}

void brisolan_eventconstrain(brisolan* x, Point* where) {
    Rect data;
    brisolan_getdatarect(x, &data);
    // In a window too small for a data area the far edge lies before the near one.
    where->h = std::max(std::min(where->h, data.right), data.left);
    where->v = std::max(std::min(where->v, data.bottom), data.top);
}

std::int32_t brisolan_grabbedvalue(brisolan* x, Point where) {
    switch (g_grabbedthird) {
    case THIRD_START: return brisolan_htotime(x, where.h);
    case THIRD_BODY: return brisolan_vtovalue(x, where.v);
    default: return brisolan_pixelstolength(x, where.h);
    }
}

void brisolan_movedrag(brisolan* x, Point where, bool stilldown) {
    if (!stilldown) {
        end_of_drag(x);
        return;
    }
    brisolan_eventconstrain(x, &where);
    const std::int32_t value = brisolan_grabbedvalue(x, where);
    const std::int64_t delta = std::int64_t{value} - x->dragvalue;
    if (delta == 0) return;
    {
        const in_data_area clipped(x);
        x->dragvalue = value;
        brisolan_offset(x, grabbed_parameter(x), delta);
    }
    brisolan_selectedtolegend(x, where);
}

void brisolan_tweakdrag(brisolan* x, Point where, bool stilldown) {
    if (!stilldown) {
        end_of_drag(x);
        t_mousetocenter();
        brisolan_bringpointer();
        return;
    }
    if (t_checkmouse(where)) {
        x->clickpt = g_clickpt;
        return;
    }
    const int delta = tweak_step(x, where);
    if (delta == 0) return;
    {
        const in_data_area clipped(x);
        brisolan_offset(x, grabbed_parameter(x), delta);
    }
    brisolan_selectedtolegend(x, where);
}

void brisolan_drawdrag(brisolan* x, Point where, bool stilldown) {
    if (!stilldown) {
        end_of_drag(x);
        return;
    }
    event* e = x->drawn;
    if (!e) return;
    const std::int32_t length = std::max(brisolan_pixelstolength(x, where.h - x->clickpt.h), 0);
    {
        const in_data_area clipped(x);
        brisolan_eraseit(x, e);
        event_param(*e, x->lenparam) = held_in(x->params[static_cast<std::size_t>(x->lenparam)], length);
        brisolan_drawit(x, e);
        brisolan_settle(x);
    }
    if (x->lenparam == PARAM_TIME) brisolan_timeschanged(x);
    // The legend follows the drawn event, even where a paste meanwhile has made another one the anchor.
    brisolan_plainnames(x);
    brisolan_copytolegend(x, e);
    brisolan_drawvaluerow(x);
}
