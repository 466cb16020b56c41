// view/bars.cpp: one event as a bar: where it lies, what it covers, how it is drawn.
// Layer: view, internal to the data area.
// Called by the drawing of events, the erasing and the hit test.
#include "view/bars.h"

#include <algorithm>

#include "view/events.h"
#include "view/format.h"
#include "view/geometry.h"

namespace {

// A bar with a label: the head in the track's colour, the label's box, the rest.
constexpr int HEAD = 4;
constexpr int LEAST_LABEL_HALF = 2; // bars of less half height carry no label
constexpr int LABEL_LEFT = 5;
constexpr int LABEL_BASELINE = 4;
constexpr int LABEL_REACH = 6;
// The "#" mark.
constexpr int SHARP_WIDTH = 7;
constexpr int SHARP_BASELINE = 6;
constexpr int SHARP_REACH_ABOVE = 2;
constexpr int SHARP_REACH_BELOW = 6;

void set_track_colour(const brisolan* x, const event* e) {
    if (x->colorparam == PARAM_TRACK)
        brisolan_trackcolor(std::max<std::int32_t>(e->track, 0) - 1);
    else
        t_color(COLOR_FOREGROUND);
}

// The bar's rows. Where the zoom leaves it no height its middle row is its own, so that it is one pixel high, and three
// as the outline of a selected event.
struct bar_rows {
    int top, bottom;
    bar_rows(const brisolan* x, const bar& b)
        : top(b.y - b.half), bottom(b.y + b.half + (YSIZE(x) == 0 ? 1 : 0)) {}
};

// Selected events are outlines, others solid.
void fill(const event* e, int left, const bar_rows& rows, int right) {
    if (e->selected)
        t_framerect(left, rows.top, right, rows.bottom);
    else
        t_paintrect(left, rows.top, right, rows.bottom);
}

// The label's box behind the head, and what of the bar is longer than it.
void draw_body(const brisolan* x, const event* e, const bar& b, const bar_rows& rows, int text_width) {
    const int box = text_width + 2;
    const int right = b.left + b.length;
    const bool shortened = b.length < box + HEAD;
    const int box_right = shortened ? right : b.left + HEAD + box;
    t_color(COLOR_GRID);
    fill(e, b.left + HEAD, rows, box_right);
    if (shortened) return;
    set_track_colour(x, e);
    fill(e, box_right, rows, right);
}

void draw_labelled(const brisolan* x, const event* e, const bar& b, const bar_rows& rows) {
    fill(e, b.left, rows, b.left + HEAD);
    t_textface(FACE_PLAIN);
    const char* label = brisolan_midistr(x, x->labelparam, event_param(*e, x->labelparam));
    if (b.length > HEAD + 1) draw_body(x, e, b, rows, t_stringwidth(label));
    t_color(COLOR_FOREGROUND);
    TextMode(srcOr);
    t_drawstring(label, b.left + LABEL_LEFT, b.y + LABEL_BASELINE);
}

} // namespace

bar brisolan_bar(const brisolan* x, const event* e) {
    bar b;
    b.left = brisolan_timetoh(x, e->time);
    b.length = brisolan_barlength(x, e);
    sharp = 0;
    b.y = brisolan_valuetov(x, event_param(*e, x->yparam));
    b.black_key = sharp != 0;
    b.half = YSIZE(x) + (e->selected ? 1 : 0);
    return b;
}

bool brisolan_labelshows(const brisolan* x) {
    return x->labelparam >= 0 && YSIZE(x) >= LEAST_LABEL_HALF;
}

void brisolan_drawbar(brisolan* x, const event* e, const bar& b) {
    const bar_rows rows(x, b);
    set_track_colour(x, e);
    if (brisolan_labelshows(x))
        draw_labelled(x, e, b, rows);
    else
        fill(e, b.left, rows, b.left + b.length);
    t_color(COLOR_FOREGROUND);
    if (!b.black_key) return;
    t_textface(FACE_PLAIN);
    TextMode(srcOr);
    t_drawstring("#", b.left - SHARP_WIDTH, b.y + SHARP_BASELINE);
}

bar_reach brisolan_reach(const brisolan* x, const event* e, const bar& b) {
    const std::int32_t right = b.left + brisolan_nwidth(x, e);
    if (brisolan_labelshows(x)) return {b.left, right, b.y - LABEL_REACH, b.y + LABEL_REACH};
    if (b.black_key) return {b.left, right, b.y - SHARP_REACH_ABOVE, b.y + SHARP_REACH_BELOW};
    return {b.left, right, b.y - b.half, b.y + b.half};
}

std::int32_t brisolan_eventrect(const brisolan* x, const event* e, std::int32_t* left, std::int32_t* top,
                                std::int32_t* right, std::int32_t* bottom) {
    const bar b = brisolan_bar(x, e);
    const std::int32_t width = brisolan_nwidth(x, e);
    *left = b.left - (b.black_key ? SHARP_WIDTH : 0);
    *top = b.y - b.half;
    *right = b.left + width;
    *bottom = b.y + b.half;
    return width;
}
