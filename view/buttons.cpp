// view/buttons.cpp: the rows of numbered buttons that show and hide tracks, and channels.
// Layer: view.
// Called by the window's update and the mouse.
#include "view/buttons.h"

#include <algorithm>
#include <cstdio>

#include "core/sequence.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"

namespace {

constexpr int BUTTON = 15; // pixels from one button to the next; one of them is the line between
constexpr int BUTTON_FACE = 14;
constexpr std::size_t NUMBER_SIZE = 12; // of a button's number as text
constexpr std::int8_t DRAG_BUTTONS = -1;

// What a press and its drag remember, of each row: the button the pointer was last over, and the state that the drag
// paints. One for the whole program, since one button is held at a time; main level.
std::int16_t g_ontrack = 0;
std::int16_t g_trackval = 0;
std::int16_t g_onchan = 0;
std::int16_t g_chanval = 0;

// In what the two rows differ.
struct button_row {
    int bottom; // the strip's bottom above the window's
    int colour_by;
    int label;
    std::uint8_t* shown;
    std::int32_t count;
    std::int16_t* on;
    std::int16_t* value;
};

button_row track_row(const brisolan* x) {
    return {15, PARAM_TRACK, PARAM_TRACK, x->trackshown, x->ntracks, &g_ontrack, &g_trackval};
}

button_row chan_row(const brisolan* x) {
    return {30, PARAM_CHAN, PARAM_CHAN, x->chanshown, x->chanshown ? x->nchans : 0, &g_onchan, &g_chanval};
}

int strip_bottom(const brisolan* x, const button_row& row) {
    return x->window->height - row.bottom;
}

int strip_right(const brisolan* x) {
    return x->window->width - SCROLLBAR;
}

int button_left(int index) {
    return DATA_LEFT + index * BUTTON;
}

int button_index(int h) {
    return (h - DATA_LEFT) / BUTTON;
}

void draw_number(const button_row& row, int index, int bottom) {
    char number[NUMBER_SIZE];
    std::snprintf(number, sizeof number, "%d", index + 1);
    t_textface(FACE_PLAIN);
    t_color(row.shown[index] ? COLOR_FOREGROUND : COLOR_HIDDEN_TEXT);
    t_drawstring(number, button_left(index) + ((BUTTON - t_stringwidth(number)) >> 1), bottom - 4);
}

void draw_button(brisolan* x, const button_row& row, int index) {
    if (index < 0 || index >= row.count) return;
    const int left = button_left(index);
    const int bottom = strip_bottom(x, row);
    const int top = bottom - BUTTON_FACE;
    const int right = std::min(left + BUTTON_FACE, strip_right(x));
    const RgnHandle saved = t_cliprect(left, top, right, bottom);
    t_color(row.shown[index] ? COLOR_GRID : COLOR_HIDDEN);
    t_paintrect(left, top, right, bottom);
    if (row.shown[index]) {
        if (x->colorparam == row.colour_by)
            brisolan_trackcolor(index);
        else
            t_color(COLOR_NEUTRAL);
        PenSize(1, 2);
        t_drawline(left + 1, bottom - 2, left + 12, bottom - 2);
        PenNormal();
    }
    draw_number(row, index, bottom);
    t_color(COLOR_FOREGROUND);
    t_restoreclip(saved);
}

void draw_label(brisolan* x, const button_row& row) {
    const char* name = x->params[static_cast<std::size_t>(row.label)].name->name;
    const int bottom = strip_bottom(x, row);
    t_textface(FACE_PLAIN);
    t_eraserect(0, bottom - BUTTON_FACE, DATA_LEFT - 1, bottom);
    t_drawstring(name, (DATA_LEFT - t_stringwidth(name)) / 2, bottom - 3);
}

void draw_row(brisolan* x, const button_row& row) {
    const int right = strip_right(x);
    const int bottom = strip_bottom(x, row);
    const int top = bottom - BUTTON;
    const RgnHandle saved = t_cliprect(0, top, right, bottom);
    t_drawline(0, top, right, top);
    int i = 0;
    for (; i < row.count && button_left(i) < right; ++i) {
        draw_button(x, row, i);
        t_drawline(button_left(i) - 1, top, button_left(i) - 1, bottom);
    }
    if (i == row.count) t_drawline(button_left(i) - 1, top, button_left(i) - 1, bottom);
    draw_label(x, row);
    t_restoreclip(saved);
}

void hide_something(brisolan* x) {
    x->redraw.hide_check = std::uint8_t{1};
    x->redraw.redraw_bg = std::uint8_t{1};
}

void show_only(brisolan* x, const button_row& row, int index) {
    std::fill_n(row.shown, row.count, std::uint8_t{0});
    row.shown[index] = 1;
    draw_row(x, row);
    hide_something(x);
}

// False where no button was pressed.
bool press(brisolan* x, const button_row& row, Point where, bool solo) {
    const int bottom = strip_bottom(x, row);
    Rect strip;
    SetRect(&strip, DATA_LEFT, bottom - BUTTON, strip_right(x), bottom);
    if (!PtInRect(where, &strip)) return false;
    const int i = button_index(where.h);
    if (i >= row.count) return false;
    brisolan_settle(x);
    if (solo) {
        show_only(x, row, i);
    } else {
        *row.on = static_cast<std::int16_t>(i);
        *row.value = row.shown[i] ? 0 : 1;
        row.shown[i] = static_cast<std::uint8_t>(*row.value);
        draw_button(x, row, i);
        if (*row.value == 0) hide_something(x);
        x->dragkind = DRAG_BUTTONS;
    }
    x->redraw.redraw_events = std::uint8_t{1};
    brisolan_redraw(x);
    return true;
}

// Kept: hiding by dragging does not ask for the hide check, as hiding by the press does, so that events of tracks hidden
// by a drag stay selected until the next press that hides one.
void drag(brisolan* x, const button_row& row, Point where, bool stilldown) {
    if (!stilldown) {
        x->dragkind = 0;
        return;
    }
    const int i = button_index(where.h);
    if (i < 0 || i >= row.count || i == *row.on) return;
    if (row.shown[i] != *row.value) {
        brisolan_settle(x);
        if (*row.value == 0) x->redraw.redraw_bg = std::uint8_t{1};
        x->redraw.redraw_events = std::uint8_t{1};
        brisolan_redraw(x);
        row.shown[i] = static_cast<std::uint8_t>(*row.value);
        draw_button(x, row, i);
    }
    *row.on = static_cast<std::int16_t>(i);
}

} // namespace

void brisolan_drawtrkbtn(brisolan* x, int index) {
    draw_button(x, track_row(x), index);
}

void brisolan_drawtrackbtns(brisolan* x) {
    draw_row(x, track_row(x));
}

int brisolan_trackbtnclick(brisolan* x, Point where, int modifiers) {
    const bool solo = (modifiers & optionKey) != 0;
    if (!press(x, track_row(x), where, solo)) return 0;
    if (!solo) host_window_drag<brisolan_trkbtndrag>(x->window);
    return 1;
}

void brisolan_trkbtndrag(brisolan* x, Point where, bool stilldown) {
    drag(x, track_row(x), where, stilldown);
}

void brisolan_drawchanbtn(brisolan* x, int index) {
    draw_button(x, chan_row(x), index);
}

void brisolan_drawchanbtns(brisolan* x) {
    draw_row(x, chan_row(x));
}

int brisolan_chanbtnclick(brisolan* x, Point where, int modifiers) {
    const bool solo = (modifiers & optionKey) != 0;
    if (!press(x, chan_row(x), where, solo)) return 0;
    if (!solo) host_window_drag<brisolan_chanbtndrag>(x->window);
    return 1;
}

void brisolan_chanbtndrag(brisolan* x, Point where, bool stilldown) {
    drag(x, chan_row(x), where, stilldown);
}
