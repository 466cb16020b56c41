// core/lifecycle.cpp: construction and destruction of an instance, and its hover texts.
// Layer: core; names every room that has something to build up or to give back.
// Called by the host.
#include "core/lifecycle.h"

#include <cstdio>

#include "core/class.h"
#include "core/messages.h"
#include "edit/press.h"
#include "transport/playback.h"
#include "view/events.h"
#include "view/format.h"
#include "view/selected.h"
#include "view/window.h"

brisolan* g_restore_target = nullptr;

namespace {

constexpr std::int16_t WINDOW_WIDTH = 600;
constexpr std::int16_t WINDOW_HEIGHT = 400;
constexpr std::int32_t WINDOW_FLAGS =
    3230; // the host's: an editor with both scroll bars, a title and a close box
constexpr std::int16_t WINDOW_LEAST_WIDTH = 32;
constexpr std::int16_t WINDOW_LEAST_HEIGHT = 60;

void build_param(brisolan* x, int index) {
    param_record& p = x->params[static_cast<std::size_t>(index)];
    p.name = host_symbol(e_paramnames(index));
    p.mode = static_cast<std::uint8_t>(e_parammodes(index));
    p.draw = static_cast<std::uint8_t>(e_paramdraw(index));
    p.outlet = host_outlet_int_new(x);
    p.min = e_parammins(index);
    p.max = e_parammaxs(index);
    p.defvalue = e_paramdefs(index);
    p.legvalue = e_paramdefs(index);
    // Kept: channel 1 and zero elsewhere, not the defaults, until the first stop.
    p.curvalue = index == PARAM_CHAN ? 1 : 0;
    p.interval = e_paramintervals(index);
    p.scale = e_paramscales(index);
    if (index != PARAM_TIME) host_inlet_int(x, index);
}

void take_name(brisolan* x, symbol* name) {
    if (name->thing) {
        host_error("brisolan: %s: already exists", name->name);
        name = ps_nothing;
    }
    x->name = name;
    if (name != ps_nothing) host_connection_server(x, name);
}

} // namespace

brisolan* brisolan_new(symbol* name) {
    symbol* const receiver = host_symbol("#X");
    if (g_restore_target) {
        receiver->thing = static_cast<host_object*>(g_restore_target);
        return g_restore_target;
    }
    brisolan* x = host_object_new<brisolan>(brisolan_class);
    x->window = host_window_new(x, 0, 0, WINDOW_WIDTH, WINDOW_HEIGHT, WINDOW_FLAGS);
    host_window_setmin(x->window, WINDOW_LEAST_WIDTH, WINDOW_LEAST_HEIGHT);
    x->redraw_qelem = host_qelem_new<brisolan_qfn>(x);
    x->timer_clock = host_clock_new<brisolan_clk>(x);
    x->play_clock = host_clock_new<brisolan_next>(x);
    x->lock = host_critical_new();
    // Outlets are added on the left, so Time is made last.
    for (int i = NPARAMS - 1; i >= 0; --i) build_param(x, i);
    x->numfield = host_numfield_new(x, brisolan_numdraw);
    x->trackshown = static_cast<std::uint8_t*>(host_getbytes(NTRACKS));
    for (int i = 0; i < NTRACKS; ++i) x->trackshown[i] = 1;
    brisolan_nextserial += 1;
    x->serial = brisolan_nextserial.get();
    take_name(x, name);
    x->patcher = static_cast<host_patcher*>(host_symbol("#P")->thing);
    brisolan_clear(x);
    receiver->thing = static_cast<host_object*>(x);
    return x;
}

void brisolan_free(brisolan* x) {
    if (x->dragkind != DRAG_NONE) brisolan_bringpointer();
    brisolan_noselect(x);
    brisolan_clear(x);
    brisolan_freeindex(x);
    host_window_free(x->window);
    host_qelem_free(x->redraw_qelem);
    host_clock_free(x->timer_clock);
    host_clock_free(x->play_clock);
    host_numfield_free(x->numfield);
    host_critical_free(x->lock);
    host_freebytes(x->trackshown, static_cast<std::size_t>(x->ntracks));
    if (x->chanshown) host_freebytes(x->chanshown, static_cast<std::size_t>(x->nchans));
    if (x->name->thing == static_cast<host_object*>(x)) x->name->thing = nullptr;
    host_notify_free(x);
}

void brisolan_dirty(brisolan* x) {
    if (x->patcher) host_patcher_dirty(x->patcher);
}

void brisolan_clk(brisolan*) {}

void brisolan_assist(brisolan* x, bool inlet, int index, char* text) {
    const int known = index >= 0 && index < NPARAMS ? index : 0;
    const char* name = x->params[static_cast<std::size_t>(known)].name->name;
    const char* format = "%s Parameter Output";
    if (inlet)
        format = known == 0 ? "Control Messages, %s Parameter When Recording" : "%s Parameter When Recording";
    std::snprintf(text, HOST_ASSIST_SIZE, format, name);
}
