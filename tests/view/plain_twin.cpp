// tests/view/plain_twin.cpp: the data area drawn event by event.
// Tests of the view.
#include "tests/view/plain_twin.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "core/class.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"

namespace {

struct plain_bar {
    std::int32_t left, length, y, half;
    bool black_key;
};

plain_bar bar_of(const brisolan* x, const event* e) {
    plain_bar b{};
    b.left = brisolan_timetoh(x, e->time);
    b.length = std::max(brisolan_lengthtopixels(x, event_param(*e, x->lenparam)), 4);
    sharp = 0;
    b.y = YLOC(x, event_param(*e, x->yparam)) - x->window->vscroll_value;
    b.black_key = sharp != 0;
    b.half = YSIZE(x) + (e->selected ? 1 : 0);
    return b;
}

bool label_shows(const brisolan* x) {
    return x->labelparam >= 0 && YSIZE(x) >= 2;
}

std::string label_of(const brisolan* x, const event* e) {
    const std::int32_t value = event_param(*e, x->labelparam);
    const bool as_note = x->params[static_cast<std::size_t>(x->labelparam)].notenames != 0;
    if (!as_note) return std::to_string(value);
    if (value < 0) return "-";
    if (value > 127) return "+";
    return notes[static_cast<std::size_t>(value % 12)] + std::to_string(value / 12 - 2);
}

int width_of(const brisolan* x, const event* e, const plain_bar& b) {
    if (x->labelparam < 0) return b.length;
    t_textface(FACE_PLAIN);
    return std::max(b.length, t_stringwidth(label_of(x, e).c_str()) + 6);
}

void track_colour(const brisolan* x, const event* e) {
    if (x->colorparam == PARAM_TRACK)
        brisolan_trackcolor(e->track - 1);
    else
        t_color(1);
}

void fill(const event* e, int left, int top, int right, int bottom) {
    if (e->selected)
        t_framerect(left, top, right, bottom);
    else
        t_paintrect(left, top, right, bottom);
}

void draw_bar(brisolan* x, const event* e) {
    const plain_bar b = bar_of(x, e);
    const int top = b.y - b.half;
    const int bottom = b.y + b.half + (YSIZE(x) == 0 ? 1 : 0);
    const int right = b.left + b.length;
    t_textface(FACE_PLAIN);
    track_colour(x, e);
    if (!label_shows(x)) {
        fill(e, b.left, top, right, bottom);
    } else {
        fill(e, b.left, top, b.left + 4, bottom);
        const std::string label = label_of(x, e);
        const int w = t_stringwidth(label.c_str()) + 2;
        if (b.length > 5) {
            const bool shortened = b.length < w + 4;
            t_color(22);
            fill(e, b.left + 4, top, b.left + 4 + (shortened ? b.length - 4 : w), bottom);
            if (!shortened) {
                track_colour(x, e);
                fill(e, b.left + 4 + w, top, right, bottom);
            }
        }
        t_color(1);
        TextMode(srcOr);
        t_drawstring(label.c_str(), b.left + 5, b.y + 4);
    }
    t_color(1);
    if (b.black_key) t_drawstring("#", b.left - 7, b.y + 6);
}

void draw_if_shown(brisolan* x, event* e) {
    const plain_bar b = bar_of(x, e);
    if (b.left + b.length < 48 || b.left > x->window->width) return;
    if (!brisolan_trackisshown(x, e->track)) return;
    draw_bar(x, e);
    e->needsdraw = std::uint8_t{0};
}

void mark_touched(brisolan* x, event* e, int left, int top, int right, int bottom) {
    const plain_bar b = bar_of(x, e);
    int above = b.half;
    int below = b.half;
    if (b.black_key) above = 2, below = 6;
    if (label_shows(x)) above = below = 6;
    const int width = width_of(x, e, b);
    if (b.y - above < bottom && top < b.y + below && right > b.left && left < b.left + width)
        e->needsdraw = std::uint8_t{1};
}

} // namespace

void plain_drawevts(brisolan* x) {
    SetPort(x->window->port);
    brisolan_eventclip(x);
    for (event* e = x->events; e; e = e->next) draw_if_shown(x, e);
}

void plain_drawit(brisolan* x, event* e) {
    SetPort(x->window->port);
    brisolan_eventclip(x);
    draw_if_shown(x, e);
}

void plain_eraseit(brisolan* x, event* e) {
    SetPort(x->window->port);
    brisolan_eventclip(x);
    const plain_bar b = bar_of(x, e);
    const int left = b.left - (b.black_key ? 7 : 0);
    const int right = b.left + width_of(x, e, b);
    brisolan_drawpattern(x, left, b.y - b.half, right, b.y + b.half + 1);
    e->needsdraw = std::uint8_t{1};
    for (event* other = x->events; other; other = other->next)
        mark_touched(x, other, left, b.y - b.half, right, b.y + b.half);
}

void plain_drawdirtyevts(brisolan* x) {
    SetPort(x->window->port);
    brisolan_eventclip(x);
    for (event* e = x->events; e; e = e->next) {
        if (e->needsdraw) draw_if_shown(x, e);
    }
}

event* plain_findevent(brisolan* x, int h, int v) {
    for (event* e = x->events; e; e = e->next) {
        const plain_bar b = bar_of(x, e);
        if (!brisolan_trackisshown(x, e->track) || v < b.y - 1 || v > b.y + 1) continue;
        if (h >= b.left && h <= b.left + width_of(x, e, b)) return e;
    }
    return nullptr;
}

void plain_select(brisolan* x, event* e) {
    e->selected = std::uint8_t{1};
    plain_eraseit(x, e);
    plain_drawit(x, e);
}

void plain_unselect(brisolan* x, event* e) {
    plain_eraseit(x, e);
    e->selected = std::uint8_t{0};
}
