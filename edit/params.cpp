// edit/params.cpp: the parameters' descriptions and values, by message and by the legend.
// Layer: edit. Called by the host through "setparam", by the click dispatcher, the number field and the drags.
#include "edit/params.h"

#include "core/sequence.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/format.h"
#include "view/legend.h"
#include "view/selected.h"
#include "view/tracking.h"

namespace {

// The legend strip, pixels. A value's area begins and ends a little left of its text.
constexpr std::int16_t LEGEND_LEFT = 48;
constexpr std::int16_t LEGEND_BOTTOM = 19;
constexpr std::int16_t LEGEND_BASELINE = 14;
constexpr std::int16_t VALUE_MARGIN = 2;
constexpr std::int16_t ROLE_TOP = 3;
constexpr std::int16_t ROLE_BOTTOM = 16;
constexpr std::int16_t ROLE_WIDTH = 13;

constexpr std::int32_t SETPARAM_ATOMS = 9;

// Exactly nine atoms, the second a symbol, the others integers, and an index that there is.
bool describes_param(std::int32_t argc, const atom* argv) {
    if (argc != SETPARAM_ATOMS) return false;
    for (std::int32_t i = 0; i < argc; ++i) {
        if (argv[i].type != (i == 1 ? A_SYM : A_LONG)) return false;
    }
    return argv[0].l >= 0 && argv[0].l < NPARAMS;
}

// The display argument of "setparam" is one more than the role, 0 standing for none as well. Roles have 8 bits.
std::uint8_t role_of_display(std::int32_t display) {
    return display == 0 ? ROLE_NONE : static_cast<std::uint8_t>(static_cast<std::uint32_t>(display) - 1);
}

bool has_label(const brisolan* x) {
    for (const param_record& p : x->params) {
        if (p.mode == ROLE_LABEL) return true;
    }
    return false;
}

enum class legend_area { none, name, value, role };

legend_area area_at(const param_record& p, std::int16_t h) {
    if (h >= p.leg_name_x && h <= p.leg_value_x - VALUE_MARGIN) return legend_area::name;
    if (h >= p.leg_value_x - VALUE_MARGIN && h <= p.leg_end_x) return legend_area::value;
    if (h >= p.leg_pict_x && h <= p.leg_name_x) return legend_area::role;
    return legend_area::none;
}

void press_name(brisolan* x, param_record* p, int index, int flag) {
    if (flag) {
        brisolan_editparam(x, p, index);
        return;
    }
    brisolan_untypeparams(x);
    brisolan_typeparam(p);
}

// The host draws and drags the number in the system font, which is the legend's meanwhile.
void press_value(brisolan* x, param_record* p, int index) {
    brisolan_paramtonum(x, p, index);
    std::int16_t family = TEXT_FONT;
    std::int16_t size = TEXT_SIZE;
    t_setsysfont(&family, &size);
    host_numfield_draw(x->numfield);
    g_numtracking = 1;
    host_numfield_track<brisolan_paramtrack>(x->numfield);
    t_setsysfont(&family, &size);
}

void press_role(brisolan* x, param_record* p, int index) {
    const std::int16_t left = p->leg_pict_x;
    t_darkenrect({left, ROLE_TOP, static_cast<std::int16_t>(left + ROLE_WIDTH), ROLE_BOTTOM});
    brisolan_parammenu(x, p, index);
}

// Kept: a Time that is dragged in the legend stays where it is in the list, and the patcher is not marked changed.
// Patches that step through the events by number rely on their order.
void set_and_draw(event_pen* pen, event* e, int index, std::int32_t value) {
    pen->erase(e);
    event_param(*e, index) = value;
    pen->draw(e);
}

} // namespace

void brisolan_setparam(brisolan* x, symbol*, std::int32_t argc, const atom* argv) {
    if (!describes_param(argc, argv)) {
        host_error("brisolan: setparam: argument error");
        return;
    }
    const int index = argv[0].l;
    param_record& p = x->params[static_cast<std::size_t>(index)];
    p.name = argv[1].s;
    brisolan_displaymode(x, &p, index, role_of_display(argv[2].l));
    p.min = argv[3].l;
    p.max = argv[4].l;
    p.defvalue = argv[5].l;
    p.interval = argv[6].l;
    p.scale = argv[7].l == 0 ? 1 : argv[7].l;
    p.notenames = static_cast<std::uint8_t>(argv[8].l);
    x->redraw.changed = std::uint8_t{1};
    x->redraw.redraw_bg = std::uint8_t{1};
    x->redraw.redraw_events = std::uint8_t{1};
    x->redraw.redraw_panel = std::uint8_t{1};
    brisolan_redraw(x);
    // Kept: that no parameter is the label any more is noticed at Chan alone. Saved patchers describe all eight in order
    // and rely on where the label ends up.
    if (index == PARAM_CHAN && !has_label(x)) x->labelparam = -1;
}

int brisolan_legendclick(brisolan* x, Point where, int flag) {
    if (where.v < 0 || where.v > LEGEND_BOTTOM || where.h < LEGEND_LEFT) return 0;
    brisolan_normalclip(x);
    for (int i = 0; i < NPARAMS; ++i) {
        param_record& p = x->params[static_cast<std::size_t>(i)];
        if (!p.draw) continue;
        switch (area_at(p, where.h)) {
        case legend_area::none: continue;
        case legend_area::name: press_name(x, &p, i, flag); break;
        case legend_area::value: press_value(x, &p, i); break;
        case legend_area::role: press_role(x, &p, i); break;
        }
        break;
    }
    return 1;
}

int brisolan_paramtrack(brisolan* x, std::int32_t value) {
    const int index = x->numparam;
    param_record& p = x->params[static_cast<std::size_t>(index)];
    p.legvalue = value;
    if (x->nselected == 0) {
        p.defvalue = value;
        return 0;
    }
    event_pen pen(x, x->nselected);
    if (x->nselected == 1) {
        if (event* e = x->firstsel) set_and_draw(&pen, e, index, value);
    } else {
        for (event* e : brisolan_each(x)) {
            if (e->selected) set_and_draw(&pen, e, index, value);
        }
    }
    if (index == PARAM_TIME) brisolan_timeschanged(x);
    brisolan_settle(x);
    return 0;
}

void brisolan_paramtonum(brisolan* x, param_record* p, int index) {
    host_numfield* n = x->numfield;
    SetRect(&n->rect, p->leg_value_x - VALUE_MARGIN, 0, p->leg_end_x - VALUE_MARGIN, LEGEND_BOTTOM);
    n->min = p->min;
    n->max = p->max;
    n->value = p->legvalue;
    x->numparam = static_cast<std::uint8_t>(index);
    g_asmidi = p->notenames;
}

void brisolan_typeparam(param_record* p) {
    p->underline = std::uint8_t{1};
    p->typing_mark = std::uint8_t{0};
    t_textface(FACE_UNDERLINE);
    t_drawstring(p->name->name, p->leg_name_x, LEGEND_BASELINE);
}

void brisolan_untypeparams(brisolan* x) {
    brisolan_plainnames(x);
}

void brisolan_editparam(brisolan*, param_record*, int) {}

void brisolan_evttolegend(brisolan* x, event* e) {
    brisolan_setfirstsel(x, e);
    brisolan_drawvalues(x);
}

void brisolan_selectedtolegend(brisolan* x, Point where) {
    if (x->nselected != 1 && !x->firstsel) {
        event* e = brisolan_findevent(x, where.h, where.v);
        if (!e) e = brisolan_firstselected(x);
        if (!e) return;
        brisolan_setfirstsel(x, e);
    }
    brisolan_drawvalues(x);
}

int brisolan_openparam(const brisolan* x, int index) {
    if (x->params[static_cast<std::size_t>(index)].mode == ROLE_NONE) return index;
    for (int i = PARAM_PITCH; i < NPARAMS; ++i) {
        if (x->params[static_cast<std::size_t>(i)].mode == ROLE_NONE) return i;
    }
    return PARAM_PITCH;
}

int brisolan_scaleclick(const brisolan* x, Point where) {
    return where.v < x->window->height - SCROLLBAR;
}
