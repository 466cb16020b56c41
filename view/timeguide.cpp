// view/timeguide.cpp: the time ruler above the data area.
// Layer: view.
// Called by the panel and by every drawing of the content.
#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"
#include "view/grid.h"

namespace {

constexpr int RULER_LEFT = 43;
constexpr int RULER_TOP = 40;
constexpr int RULER_BOTTOM = 61;
constexpr int RULER_LINE = 60;
constexpr int TICK_TOP = 56;
constexpr int BASELINE = 55;
// No label reaches further to either side of its tick, in pixels.
constexpr int WIDEST_HALF = 60;

void draw_tick(brisolan* x, int h) {
    t_drawline(h, RULER_LINE, h, TICK_TOP);
    const std::int32_t time = brisolan_htotime(x, h);
    t_drawlong(time, h - t_numwidth(time) / 2 + 1, BASELINE);
}

} // namespace

void brisolan_drawtimeguide(brisolan* x) {
    const int right = x->window->width - SCROLLBAR;
    t_textface(FACE_PLAIN);
    const RgnHandle saved = t_cliprect(RULER_LEFT, RULER_TOP, right, RULER_BOTTOM);
    t_eraserect(RULER_LEFT, RULER_TOP, right, RULER_BOTTOM);
    t_drawline(DATA_LEFT - brisolan_hpixels(x), RULER_LINE, right, RULER_LINE);
    const std::int16_t scroll = x->window->hscroll_value;
    for (int h = brisolan_gridcolumn(scroll, RULER_LEFT - WIDEST_HALF); h <= right; h += GRID_COLUMN)
        draw_tick(x, h);
    t_restoreclip(saved);
}
