// view/window.cpp: the editor window's life, the queued redraw, the tool palette.
// Layer: view.
// Called by the host's messages, and by whoever changes what the window shows.
#include "view/window.h"

#include "core/class.h"
#include "core/lifecycle.h"
#include "core/sequence.h"
#include "view/buttons.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"
#include "view/legend.h"
#include "view/scroll.h"
#include "view/selected.h"
#include "view/zoom.h"

namespace {

// The palette: two columns and two rows of cells.
constexpr int PALETTE_RIGHT = 47;
constexpr int PALETTE_BOTTOM = 39;
constexpr int CELL_WIDTH = 24;
constexpr int CELL_HEIGHT = 20;

// Where what is invalidated begins, under the tracking row.
constexpr int INVALID_TOP = 44;

// The flags as they stood when the redraw began.
struct taken_flags {
    bool bg, events, panel, editmode, changed, marked, values, hide;
};

taken_flags take_flags(redraw_flags& f) {
    f.redraw_spare.take();
    return {f.redraw_bg.take() != 0,       f.redraw_events.take() != 0, f.redraw_panel.take() != 0,
            f.redraw_editmode.take() != 0, f.changed.take() != 0,       f.redraw_marked.take() != 0,
            f.redraw_values.take() != 0,   f.hide_check.take() != 0};
}

void draw_data_area(brisolan* x, const taken_flags& flags) {
    brisolan_eventclip(x);
    if (flags.bg) brisolan_drawbg(x);
    if (flags.hide) brisolan_reviseselect(x);
    if (flags.events) brisolan_drawevts(x);
    if (flags.marked) brisolan_drawdirtyevts(x);
}

void draw_around(brisolan* x, const taken_flags& flags) {
    brisolan_normalclip(x);
    if (flags.panel) brisolan_drawpanel(x);
    if (flags.changed) {
        brisolan_dirty(x);
        brisolan_remax(x);
    }
    if (flags.editmode) brisolan_draweditmode(x, true);
    if (flags.values) brisolan_drawvalues(x);
}

void open_now(brisolan* x, symbol*, std::int32_t, const atom*) {
    brisolan_dblclick(x);
}

} // namespace

void brisolan_open(brisolan* x) {
    host_defer_low<open_now>(x, ps_nothing, 0, nullptr);
}

void brisolan_dblclick(brisolan* x) {
    if (!x->window->visible) {
        host_qelem_unset(x->redraw_qelem);
        brisolan_clearqflags(x);
    }
    host_window_vis(x->window);
    if (x->name != ps_nothing) host_window_settitle(x->window, x->name->name);
    brisolan_remax(x);
    brisolan_chkscroll(x);
}

void brisolan_wclose(brisolan* x) {
    host_defer<brisolan_dowclose>(x, ps_nothing, 0, nullptr);
}

void brisolan_dowclose(brisolan* x, symbol*, std::int32_t, const atom*) {
    brisolan_noselect(x);
    host_window_invis(x->window);
}

void brisolan_update(brisolan* x) {
    if (x->relayout) {
        brisolan_calclegend(x);
        x->relayout = 0;
    }
    brisolan_drawzoom(x);
    brisolan_drawbg(x);
    brisolan_drawpanel(x);
    brisolan_drawevts(x);
    brisolan_drawtrackbtns(x);
}

void brisolan_wsize(brisolan* x) {
    host_window* w = x->window;
    if (!w->visible) {
        brisolan_chkscroll(x);
        return;
    }
    const GrafPtr before = host_window_setport(w);
    Rect all;
    GetPortBounds(w->port, &all);
    InvalWindowRect(host_window_systemwindow(w), &all);
    brisolan_unclip(x); // what was drawn last has left its clip, of the old size
    t_eraserect(all.left, all.top, all.right - SCROLLBAR, all.bottom - SCROLLBAR);
    brisolan_chkscroll(x);
    SetPort(before);
}

void brisolan_qfn(brisolan* x) {
    if (!x->window->visible) return;
    const GrafPtr before = host_window_setport(x->window);
    const taken_flags flags = take_flags(x->redraw);
    draw_data_area(x, flags);
    draw_around(x, flags);
    brisolan_chkscroll(x);
    SetPort(before);
}

void brisolan_clearqflags(brisolan* x) {
    take_flags(x->redraw);
}

void brisolan_changed(brisolan* x) {
    if (x->name != ps_nothing) host_connection_send(x->name, host_symbol("tabchanged"));
}

void brisolan_invalcontents(brisolan* x) {
    Rect contents;
    SetRect(&contents, 0, INVALID_TOP, x->window->width - SCROLLBAR, x->window->height - BOTTOM_MARGIN);
    brisolan_settle(x);
    EraseRect(&contents);
    InvalWindowRect(host_window_systemwindow(x->window), &contents);
}

void brisolan_editmode(brisolan* x, int tool) {
    x->editmode = static_cast<std::int8_t>(tool);
    x->redraw.redraw_editmode = std::uint8_t{1};
    brisolan_redraw(x);
}

void brisolan_draweditmode(brisolan* x, bool full) {
    if (full) {
        t_eraserect(0, 0, PALETTE_RIGHT, PALETTE_BOTTOM);
        brisolan_drawpic(x, PIC_TOOLS, -1, -1);
    }
    const int left = x->editmode % 2 * CELL_WIDTH;
    const int top = x->editmode / 2 * CELL_HEIGHT;
    t_invertrect(left - 1, top - 1, left + CELL_WIDTH - 2, top + CELL_HEIGHT - 1);
}
