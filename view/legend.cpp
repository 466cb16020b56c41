// view/legend.cpp: the legend row, the vertical labels, and the panel that they are part of.
// Layer: view.
// Called by the window's update and the queued redraw; the mouse calls the role menu.
#include "view/legend.h"

#include <algorithm>
#include <cstdio>

#include "core/class.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/format.h"
#include "view/geometry.h"
#include "view/legendvalues.h"
#include "view/scroll.h"
#include "view/tracking.h"
#include "view/window.h"

namespace {

// The rows above the data area, and the lines that part them.
constexpr int LEGEND_BOTTOM = 19;
constexpr int TRACKING_BOTTOM = 39;
constexpr int LEGEND_BASELINE = 14;

// An entry of the legend row: picture, name, value.
constexpr int FIRST_ENTRY = 52;
constexpr int PICTURE_WIDTH = 16;
constexpr int PICTURE_TOP = 3;
constexpr int PICTURE_BOTTOM = 16;
constexpr int PICTURE_BOX = 13;

// The vertical labels.
constexpr int AXIS_TOP = 59; // of what is drawn
constexpr int AXIS_LINE_TOP = 64;
constexpr int AXIS_WIDTH = 45;
constexpr int AXIS_LINE = 44;
constexpr int TICK_LEFT = 40;
constexpr int AXIS_LABEL_RIGHT = 37;
constexpr int HIGHEST_TICK = 54;
constexpr int LABEL_DISTANCE = 10; // a label stands more than this above the tick drawn before
constexpr int NO_TICK_YET = 1000;

// The role menu.
constexpr int ROLE_ITEMS = 4; // items 1 to 4 carry no mark but the one of the role
constexpr int INSPECTOR_ITEM = 8;

param_record& param(brisolan* x, int index) {
    return x->params[static_cast<std::size_t>(index)];
}

void draw_value(brisolan* x, int index) {
    const param_record& p = param(x, index);
    t_drawstring(brisolan_midistr(x, index, p.legvalue), p.leg_value_x, LEGEND_BASELINE);
}

void draw_rolepicture(brisolan* x, const param_record& p) {
    brisolan_drawpic(x, p.mode + PIC_ROLES, p.leg_pict_x, PICTURE_TOP);
}

void draw_entry(brisolan* x, int index) {
    const param_record& p = param(x, index);
    draw_rolepicture(x, p);
    t_textface(p.underline ? FACE_UNDERLINE : FACE_PLAIN);
    t_drawstring(p.name->name, p.leg_name_x, LEGEND_BASELINE);
    if (!p.draw) return;
    t_textface(FACE_BOLD);
    draw_value(x, index);
}

// Width in bold of the widest value that the entry makes room for.
int value_room(const param_record& p) {
    if (p.notenames) return t_stringwidth("A#-2");
    return t_numwidth(p.min < 0 ? p.min : p.max);
}

// One tick of the vertical axis, and its label unless it stands too close above the tick before.
void draw_tick(brisolan* x, std::int32_t value, int y, int y_before) {
    t_drawline(TICK_LEFT, y, AXIS_LINE, y);
    if (y_before - y <= LABEL_DISTANCE) return;
    const char* label = brisolan_midistr(x, x->yparam, value);
    t_drawstring(label, AXIS_LABEL_RIGHT - t_stringwidth(label), y + 4);
}

// The first value from `value` on, in steps, whose pixel is another one: where many values share a pixel, the rest of
// them add nothing to its tick.
std::int64_t next_tick(const brisolan* x, std::int64_t value, std::int64_t interval) {
    const std::int64_t zoom = brisolan_factor(x->yzoom);
    const std::int64_t beyond = ((value * UNIT / zoom + 1) * zoom + UNIT - 1) / UNIT;
    const std::int64_t steps = std::max<std::int64_t>((beyond - value + interval - 1) / interval, 1);
    return value + steps * interval;
}

// The first step beyond the range's end stands for that end. Kept: labels start at 0, not at the range's minimum.
void draw_ticks(brisolan* x) {
    const param_record& p = param(x, x->yparam);
    const std::int64_t interval = brisolan_factor(p.interval);
    const std::int64_t max = p.max;
    int y_before = NO_TICK_YET;
    for (std::int64_t value = 0; value <= max + interval; value = next_tick(x, value, interval)) {
        const auto shown = static_cast<std::int32_t>(std::min(value, max));
        const int y = brisolan_valuetov(x, shown);
        if (y < HIGHEST_TICK) break;
        draw_tick(x, shown, y, y_before);
        y_before = y;
    }
}

void mark_roles(MenuHandle menu, int mode) {
    for (int item = 1; item <= ROLE_ITEMS; ++item) SetItemMark(menu, item, noMark);
    for (int item = 2; item <= ROLE_ITEMS && mode <= ROLE_LENGTH; ++item) {
        if (mode == ROLE_TIME)
            DisableMenuItem(menu, item);
        else
            EnableMenuItem(menu, item);
    }
    if (mode == ROLE_VERTICAL || mode == ROLE_LENGTH) DisableMenuItem(menu, mode + 1);
    if (mode != ROLE_NONE) SetItemMark(menu, mode + 1, bulletMark);
}

// Shows the role menu at the parameter's legend picture; the item chosen, 0 for none.
int choose_role(brisolan* x, const param_record& p) {
    const MenuHandle menu = GetMenu(ROLE_MENU);
    if (!menu) return 0;
    std::int16_t family = TEXT_FONT;
    std::int16_t size = TEXT_SIZE;
    t_setsysfont(&family, &size);
    mark_roles(menu, p.mode);
    InsertMenu(menu, kInsertHierarchicalMenu);
    Rect box;
    brisolan_legpictrect(p.leg_pict_x, &box);
    Point at{box.top, box.left};
    LocalToGlobal(&at);
    const std::int32_t choice = PopUpMenuSelect(menu, at.v, at.h, 1);
    t_setsysfont(&family, &size);
    DeleteMenu(ROLE_MENU);
    ReleaseResource(menu);
    t_eraserect(p.leg_pict_x, PICTURE_TOP, p.leg_pict_x + PICTURE_BOX, PICTURE_BOTTOM);
    draw_rolepicture(x, p);
    return choice & 0xFFFF;
}

void show_new_roles(brisolan* x) {
    const bool shown = x->window->visible;
    const GrafPtr before = host_window_setport(x->window);
    brisolan_calclegend(x);
    brisolan_remax(x);
    brisolan_chkscroll(x);
    brisolan_drawpanel(x);
    brisolan_invalcontents(x);
    if (shown) SetPort(before);
}

// ---- roles

// The first parameter from Pitch on that has no role; Pitch when all have one.
int free_parameter(const brisolan* x) {
    for (int i = PARAM_PITCH; i < NPARAMS; ++i) {
        if (x->params[static_cast<std::size_t>(i)].mode == ROLE_NONE) return i;
    }
    return PARAM_PITCH;
}

void put_on_vertical(brisolan* x, int index) {
    const param_record& p = param(x, index);
    x->yparam = index;
    x->yzoom = p.scale;
    x->yzoom_exact = p.scale;
}

void choose_vertical(brisolan* x) {
    const int index = free_parameter(x);
    param(x, index).mode = ROLE_VERTICAL;
    put_on_vertical(x, index);
}

void put_on_length(brisolan* x, int index, const param_record& scaled_by) {
    x->lenparam = index;
    x->lenzoom = index == PARAM_DUR ? x->xzoom : scaled_by.scale.get();
}

// Kept: the new length takes its scale from the parameter whose role was set, not from itself.
void choose_length(brisolan* x, const param_record& set) {
    const bool dur_is_free = param(x, PARAM_DUR).mode == ROLE_NONE;
    const int index = dur_is_free ? static_cast<int>(PARAM_DUR) : free_parameter(x);
    param(x, index).mode = ROLE_LENGTH;
    put_on_length(x, index, set);
}

// Takes a role from whoever had it, unless it is the parameter that is to get it.
void take_role(brisolan* x, int holder, int index) {
    if (holder >= 0 && holder != index) param(x, holder).mode = ROLE_NONE;
}

void make_label(brisolan* x, param_record* p, int index) {
    if (x->labelparam == index) {
        x->labelparam = -1;
        p->mode = ROLE_NONE;
        return;
    }
    take_role(x, x->labelparam, index);
    x->labelparam = index;
    if (x->lenparam == index) choose_length(x, *p);
    if (x->yparam == index) choose_vertical(x);
}

void make_length(brisolan* x, param_record* p, int index) {
    if (x->yparam == index)
        choose_vertical(x);
    else if (x->labelparam == index)
        x->labelparam = -1;
    take_role(x, x->lenparam, index);
    put_on_length(x, index, *p);
}

void make_vertical(brisolan* x, param_record* p, int index) {
    if (x->lenparam == index)
        choose_length(x, *p);
    else if (x->labelparam == index)
        x->labelparam = -1;
    take_role(x, x->yparam, index);
    put_on_vertical(x, index);
}

} // namespace

void brisolan_calclegend(brisolan* x) {
    int left = FIRST_ENTRY;
    for (param_record& p : x->params) {
        if (!p.draw) continue;
        t_textface(FACE_PLAIN);
        const int space = t_charwidth(' ');
        const int name = t_stringwidth(p.name->name);
        t_textface(FACE_BOLD);
        const int value = value_room(p);
        p.leg_pict_x = static_cast<std::int16_t>(left);
        p.leg_name_x = static_cast<std::int16_t>(left + PICTURE_WIDTH);
        p.leg_value_x = static_cast<std::int16_t>(left + name + space + PICTURE_WIDTH);
        left += name + 3 * space + value + PICTURE_WIDTH;
        p.leg_end_x = static_cast<std::int16_t>(left);
    }
}

void brisolan_drawlegend(brisolan* x) {
    brisolan_normalclip(x);
    brisolan_filllegend(x);
    for (int i = 0; i < NPARAMS; ++i) draw_entry(x, i);
}

void brisolan_plainnames(brisolan* x) {
    // In copy mode, so that the line under the name goes with the redrawing.
    t_textface(FACE_PLAIN);
    TextMode(srcCopy);
    for (param_record& p : x->params) {
        if (!p.underline) continue;
        t_drawstring(p.name->name, p.leg_name_x, LEGEND_BASELINE);
        p.underline = std::uint8_t{0};
        p.typing_mark = std::uint8_t{0};
    }
    TextMode(srcOr);
}

// Filling ends underlining, so the lines go from the screen as well.
void brisolan_drawvalues(brisolan* x) {
    brisolan_plainnames(x);
    brisolan_filllegend(x);
    brisolan_drawvaluerow(x);
}

void brisolan_drawvaluerow(brisolan* x) {
    t_textface(FACE_BOLD);
    const int end = x->window->width - SCROLLBAR;
    const RgnHandle saved = t_cliprect(DATA_LEFT, 0, end, LEGEND_BOTTOM);
    for (int i = 0; i < NPARAMS; ++i) {
        const param_record& p = param(x, i);
        if (!p.draw) continue;
        const int right = i + 1 < NPARAMS ? param(x, i + 1).leg_pict_x - 2 : end;
        t_eraserect(p.leg_value_x - 2, 1, right, LEGEND_BOTTOM - 1);
        draw_value(x, i);
    }
    t_restoreclip(saved);
}

void brisolan_drawylegend(brisolan* x) {
    const int window_bottom = x->window->height - BOTTOM_MARGIN;
    const int right = std::min(AXIS_WIDTH, x->window->width - SCROLLBAR); // beside the bar in a tiny window
    const int bottom = std::min(static_cast<int>(brisolan_valuetov(x, 0)) + 5, window_bottom);
    const RgnHandle saved = t_cliprect(0, AXIS_TOP, right, window_bottom);
    t_eraserect(0, AXIS_TOP, AXIS_WIDTH, window_bottom);
    t_clipit(0, AXIS_TOP, right, bottom);
    t_textface(FACE_PLAIN);
    t_drawline(AXIS_LINE, AXIS_LINE_TOP, AXIS_LINE, bottom);
    draw_ticks(x);
    t_restoreclip(saved);
}

void brisolan_drawpanel(brisolan* x) {
    const int right = x->window->width - SCROLLBAR;
    brisolan_normalclip(x);
    brisolan_draweditmode(x, true);
    t_drawline(DATA_LEFT, LEGEND_BOTTOM, right, LEGEND_BOTTOM);
    brisolan_eraselegend(x);
    brisolan_drawlegend(x);
    brisolan_erasetracking(x, true, true);
    t_drawline(DATA_LEFT, TRACKING_BOTTOM, right, TRACKING_BOTTOM);
    brisolan_redrawtracking(x, true, true);
    brisolan_drawtimeguide(x);
    brisolan_drawylegend(x);
}

void brisolan_legpictrect(int left, Rect* r) {
    SetRect(r, left + 1, PICTURE_TOP, left + 12, PICTURE_BOTTOM);
}

void brisolan_parammenu(brisolan* x, param_record* p, int index) {
    const int item = choose_role(x, *p);
    if (item == 0) return;
    if (item == INSPECTOR_ITEM) {
        x->whichparam = static_cast<std::int16_t>(index);
        host_inspector_open(x);
    } else {
        brisolan_displaymode(x, p, index, item - 1);
    }
    show_new_roles(x);
}

void brisolan_displaymode(brisolan* x, param_record* p, int index, int mode) {
    if (p->mode == mode && x->labelparam != index) return;
    p->mode = static_cast<std::uint8_t>(mode);
    if (mode == ROLE_LABEL) make_label(x, p, index);
    if (mode == ROLE_LENGTH) make_length(x, p, index);
    if (mode == ROLE_VERTICAL) make_vertical(x, p, index);
}
