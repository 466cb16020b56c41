// view/tracking.cpp: the row that tells Time, value and event under the pointer, and pulling the pointer back.
// Layer: view.
// Called by the host's pointer messages, the panel and the drags that hide the pointer.
#include "view/tracking.h"

#include <cstdio>

#include "view/cursor.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/format.h"
#include "view/geometry.h"

std::int16_t g_numtracking = 0;
Point g_clickpt{};

namespace {

// Last tracked: the point, which outlives leaving the data area, and the event. One for the whole program; main level.
// The event is only ever compared, together with its instance's count of relinkings, since it may be gone.
Point last_point{};
const event* last_event = nullptr;
std::uint32_t last_relinked = 0;

// The row: two pictures, two texts, and the event's text.
constexpr int ROW_TOP = 20;
constexpr int ROW_BOTTOM = 39;
constexpr int BASELINE = 34;
constexpr int PICTURE_TOP = 23;
constexpr int TIME_PICTURE = 55;
constexpr int VALUE_PICTURE = 130;
constexpr int TIME_TEXT = 87;
constexpr int VALUE_TEXT = 140;
constexpr int EVENT_TEXT = 225;
constexpr int VALUE_END = 193;

constexpr int SCREEN_EDGE = 8;

int row_end(const brisolan* x) {
    return x->window->width - SCROLLBAR;
}

void clear_texts(brisolan* x) {
    x->track_time[0] = '\0';
    x->track_value[0] = '\0';
    x->track_event[0] = '\0';
}

// Writes Time and value under the point unless they stand there already; whether they must be drawn.
bool track_point(brisolan* x, Point where) {
    if (EqualPt(where, last_point) || x->cursor_override != 0 || g_numtracking) return false;
    std::snprintf(x->track_time, sizeof x->track_time, "%6ld",
                  static_cast<long>(brisolan_htotime(x, where.h)));
    std::snprintf(x->track_value, sizeof x->track_value, "%3s",
                  brisolan_midistr(x, x->yparam, brisolan_vtovalue(x, where.v)));
    last_point = where;
    return true;
}

void describe_event(brisolan* x, const event* e) {
    char pitch[VALUE_SIZE];
    cnote2str(e->pitch, pitch);
    const auto value = [e](int index) { return static_cast<long>(event_param(*e, index)); };
    std::snprintf(x->track_event, sizeof x->track_event, "%ld . %s . %ld . %ld . %ld . %ld . %ld . %ld",
                  value(PARAM_TIME), pitch, value(PARAM_VEL), value(PARAM_DUR), value(PARAM_CHAN),
                  value(PARAM_TRACK), value(PARAM_X1), value(PARAM_X2));
}

// The event under the point, its text written.
const event* track_over(brisolan* x, Point where, int tool) {
    const event* e = brisolan_findevent(x, where.h, where.v);
    if (!e) {
        x->track_event[0] = '\0';
        return nullptr;
    }
    if (x->cursor_override == 0) describe_event(x, e);
    if (tool == TOOL_ARROW) brisolan_eventcursor(x, e, where);
    return e;
}

void show_tool_cursor(brisolan* x, int tool, int modifiers) {
    if (x->cursor_override < 0)
        brisolan_cursor(x, CURSOR_HOST);
    else if (x->cursor_override > 0)
        brisolan_cursor(x, x->cursor_override - 1);
    else if (tool == TOOL_TWEAK)
        brisolan_cursor(x, CURSOR_TWEAK);
    else if (tool == TOOL_ARROW)
        brisolan_cursor(x, CURSOR_CROSS);
    else if (tool == TOOL_DRAW)
        brisolan_cursor(x, CURSOR_DRAW);
    else
        brisolan_magcursor(x, modifiers);
}

void track(brisolan* x, Point where, int modifiers) {
    const int tool = brisolan_tempeditmode(x, modifiers);
    g_setcursor = 0;
    Rect data;
    brisolan_getdatarect(x, &data);
    if (!PtInRect(where, &data)) {
        clear_texts(x);
        brisolan_cursor(x, CURSOR_HOST);
        brisolan_redrawtracking(x, true, true);
        last_event = nullptr;
        return;
    }
    const bool moved = track_point(x, where);
    const event* over = track_over(x, where, tool);
    if (!g_setcursor) show_tool_cursor(x, tool, modifiers);
    const bool same = over == last_event && (!over || x->relinked == last_relinked);
    brisolan_redrawtracking(x, moved, !same);
    last_event = over;
    last_relinked = x->relinked;
}

} // namespace

void brisolan_cursorin(brisolan* x, Point where, int modifiers) {
    brisolan_idle(x, where, true, modifiers);
}

void brisolan_cursorout(brisolan* x, Point where, int modifiers) {
    brisolan_idle(x, where, false, modifiers);
}

void brisolan_idle(brisolan* x, Point where, bool inside, int modifiers) {
    if (!inside) {
        brisolan_cursor(x, CURSOR_HOST);
        return;
    }
    if (g_numtracking && !Button()) g_numtracking = 0;
    if (!x->window->visible) return;
    const GrafPtr before = host_window_setport(x->window);
    track(x, where, modifiers);
    SetPort(before);
}

void brisolan_drawtracking(brisolan* x, bool values, bool over) {
    t_textface(FACE_PLAIN);
    if (values) {
        t_drawstring(x->track_time, TIME_TEXT, BASELINE);
        t_drawstring(x->track_value, VALUE_TEXT, BASELINE);
    }
    if (over) t_drawstring(x->track_event, EVENT_TEXT, BASELINE);
}

void brisolan_erasetracking(brisolan* x, bool values, bool over) {
    if (values) {
        t_eraserect(TIME_TEXT - 1, ROW_TOP, VALUE_END, ROW_BOTTOM);
        brisolan_drawpic(x, PIC_TIME, TIME_PICTURE, PICTURE_TOP);
        brisolan_drawpic(x, PIC_VALUE, VALUE_PICTURE, PICTURE_TOP);
    }
    if (over) t_eraserect(EVENT_TEXT - 1, ROW_TOP, row_end(x), ROW_BOTTOM);
}

void brisolan_redrawtracking(brisolan* x, bool values, bool over) {
    const RgnHandle saved = t_cliprect(TIME_TEXT - 1, ROW_TOP, row_end(x), ROW_BOTTOM);
    if (values) {
        t_eraserect(TIME_TEXT - 1, ROW_TOP, 126, ROW_BOTTOM);
        t_eraserect(VALUE_TEXT - 1, ROW_TOP, VALUE_END, ROW_BOTTOM);
    }
    if (over) t_eraserect(EVENT_TEXT - 1, ROW_TOP, row_end(x), ROW_BOTTOM);
    brisolan_drawtracking(x, values, over);
    t_restoreclip(saved);
}

void brisolan_eraselegend(brisolan* x) {
    t_eraserect(DATA_LEFT, 0, row_end(x), 19);
}

void t_mousetocenter() {
    Point at = g_clickpt;
    LocalToGlobal(&at);
    host_movecursor(at);
}

int t_checkmouse(Point where) {
    Point global = where;
    LocalToGlobal(&global);
    Rect screen;
    GetRegionBounds(GetGrayRgn(), &screen);
    InsetRect(&screen, SCREEN_EDGE, SCREEN_EDGE);
    if (PtInRect(global, &screen)) return 0;
    t_mousetocenter();
    return 1;
}

void brisolan_resettracking() {
    last_point = Point{};
    last_event = nullptr;
    last_relinked = 0;
    g_numtracking = 0;
    g_clickpt = Point{};
}
