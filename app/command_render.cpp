// app/command_render.cpp: `brisolan render`: the editor's picture of a file, as a PNG.
// Layer: program.
#include <charconv>
#include <cstdio>
#include <memory>
#include <optional>
#include <sstream>

#include "app/commands.h"
#include "app/pipes.h"
#include "app/png.h"
#include "app/say.h"
#include "app/source.h"
#include "app/target.h"
#include "host/kernel/windows.h"
#include "view/legend.h"
#include "view/scroll.h"
#include "view/selected.h"

namespace {

constexpr int LEAST_SIZE = 100; // pixels: the legend and the buttons are there

struct render_options {
    std::string in;
    std::string out;
    std::string size = "600x400";
    int xzoom = 200;
    int yzoom = 4;
    int hscroll = 0;
    int vscroll = 0;
    std::int64_t at = -1;
    std::string vertical;
    std::string length;
    std::string label;
    std::string tracks;
    std::string select;
    bool notenames = false;
    bool sharps = false;
    int scale = 1;
    int import_option = 0;
    bool force = false;
};

// Two numbers with a letter between them, such as 600x400.
std::optional<std::pair<int, int>> read_pair(const std::string& text, char between) {
    std::pair<int, int> p;
    const char* end = text.data() + text.size();
    const auto first = std::from_chars(text.data(), end, p.first);
    if (first.ec != std::errc{} || first.ptr == end || *first.ptr != between) return std::nullopt;
    const auto second = std::from_chars(first.ptr + 1, end, p.second);
    if (second.ec != std::errc{} || second.ptr != end) return std::nullopt;
    return p;
}

int param_named(const brisolan* x, const std::string& name) {
    for (int i = 0; i < NPARAMS; ++i) {
        if (name == x->params[static_cast<std::size_t>(i)].name->name) return i;
    }
    return -1;
}

// Gives a parameter a display role; an empty string, or why not.
std::string give_role(brisolan* x, const std::string& name, std::uint8_t role) {
    if (name.empty()) return "";
    if (role == ROLE_LABEL && name == "none") {
        if (x->labelparam >= 0) {
            param_record& p = x->params[static_cast<std::size_t>(x->labelparam)];
            brisolan_displaymode(x, &p, x->labelparam,
                                 ROLE_LABEL); // the label's own role again takes it away
        }
        return "";
    }
    const int i = param_named(x, name);
    if (i <= PARAM_TIME)
        return "no parameter for that role: " + name + " (Pitch, Vel, Dur, Chan, Track, X1, X2)";
    param_record& p = x->params[static_cast<std::size_t>(i)];
    if (p.mode != role) brisolan_displaymode(x, &p, i, role);
    return "";
}

// Track numbers and ranges such as 1,3-5: those alone are shown.
std::string show_tracks(brisolan* x, const std::string& list) {
    if (list.empty()) return "";
    for (std::int32_t i = 0; i < x->ntracks; ++i) x->trackshown[i] = 0;
    std::istringstream items(list);
    for (std::string item; std::getline(items, item, ',');) {
        std::optional<std::pair<int, int>> range = read_pair(item, '-');
        if (!range) range = read_pair(item + "-" + item, '-');
        if (!range || range->first < 1 || range->second > x->ntracks || range->first > range->second) {
            return "no tracks from 1 to " + std::to_string(x->ntracks) + ": " + item;
        }
        for (int t = range->first; t <= range->second; ++t) x->trackshown[t - 1] = 1;
    }
    return "";
}

// "all", or the milliseconds FROM-TO in which an event begins.
std::string select_events(brisolan* x, const std::string& what) {
    if (what.empty()) return "";
    const std::optional<std::pair<int, int>> range = read_pair(what, '-');
    if (what != "all" && !range) return "all or FROM-TO in milliseconds is wanted: " + what;
    for (event* e = x->events; e; e = e->next) {
        if (!range || (e->time >= range->first && e->time <= range->second)) brisolan_select(x, e);
    }
    return "";
}

void set_zoom(brisolan* x, const render_options& o) {
    x->xzoom = o.xzoom;
    x->xzoom_exact = o.xzoom;
    if (x->lenparam == PARAM_DUR) x->lenzoom = o.xzoom;
    if (o.yzoom > 0) {
        x->yzoom = o.yzoom;
        x->yzoom_exact = o.yzoom;
    }
}

std::string set_up(brisolan* x, const render_options& o) {
    const std::optional<std::pair<int, int>> size = read_pair(o.size, 'x');
    const auto fits = [](int pixels) { return pixels >= LEAST_SIZE && pixels <= KEL_WINDOW_MOST; };
    if (!size || !fits(size->first) || !fits(size->second)) {
        const std::string least = std::to_string(LEAST_SIZE);
        const std::string most = std::to_string(KEL_WINDOW_MOST);
        return "a size from " + least + "x" + least + " to " + most + "x" + most + " is wanted: " + o.size;
    }
    host_window_vis(x->window);
    kel_window_resize(x->window, size->first, size->second);
    for (const auto& [name, role] : {std::pair(o.vertical, ROLE_VERTICAL), std::pair(o.length, ROLE_LENGTH),
                                     std::pair(o.label, ROLE_LABEL)}) {
        if (const std::string why = give_role(x, name, role); !why.empty()) return why;
    }
    set_zoom(x, o);
    x->params[PARAM_PITCH].notenames = static_cast<std::uint8_t>(o.notenames);
    x->show_sharps = static_cast<std::uint8_t>(o.sharps);
    if (const std::string why = show_tracks(x, o.tracks); !why.empty()) return why;
    brisolan_remax(x);
    brisolan_chkscroll(x);
    const std::int64_t h = o.at < 0 ? o.hscroll : o.at * 8 / o.xzoom / 16;
    host_window_setscrollval(x->window,
                             static_cast<std::int16_t>(std::min<std::int64_t>(h, x->window->hscroll_max)),
                             static_cast<std::int16_t>(std::min<int>(o.vscroll, x->window->vscroll_max)));
    return select_events(x, o.select);
}

int run_render(const render_options& o) {
    if (const std::string why = o.out == "-" ? "" : why_kept(o.out, o.force); !why.empty()) return fail(why);
    headless_session session;
    brisolan* x = session.make();
    if (const std::string why = read_into(session, x, o.in, o.import_option); !why.empty()) {
        return fail(why);
    }
    if (const std::string why = set_up(x, o); !why.empty()) return misuse("render: " + why);
    x->relayout = 1;
    kel_run_queue();
    kel_window_update(x->window);
    const std::string why = write_out(o.out, "out.png", [&](const std::string& file) {
        const std::string failed = write_png(x->window->port, file, o.scale);
        return failed.empty() ? "" : file + ": " + failed;
    });
    return why.empty() ? EXIT_DONE : fail(why);
}

} // namespace

void add_render_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("render", "Draw a file as the editor shows it, into a PNG");
    auto o = std::make_shared<render_options>();
    c->add_option("FILE", o->in, "A MIDI file or document; - for standard input")->required();
    c->add_option("OUT", o->out, "The PNG to write; - for standard output")->required();
    c->add_option("--size", o->size, "The window's content in pixels, WIDTHxHEIGHT")->capture_default_str();
    c->add_option("--xzoom", o->xzoom, "Milliseconds for 8 pixels")
        ->check(CLI::Range(1, 1'000'000))
        ->capture_default_str();
    c->add_option("--yzoom", o->yzoom,
                  "Units of the vertical axis for 8 pixels; 0: as the parameter's scale says")
        ->check(CLI::Range(0, 1'000'000))
        ->capture_default_str();
    c->add_option("--hscroll", o->hscroll, "Horizontal scroll in steps of 16 pixels")
        ->check(CLI::Range(0, 32767));
    c->add_option("--vscroll", o->vscroll, "Vertical scroll in pixels")->check(CLI::Range(0, 32767));
    c->add_option("--at", o->at, "Scroll to this time in milliseconds")->check(WHOLE_FROM_0);
    c->add_option("--vertical", o->vertical, "The parameter on the vertical axis");
    c->add_option("--length", o->length, "The parameter shown as the bars' length");
    c->add_option("--label", o->label, "The parameter written on the bars, or none");
    c->add_option("--tracks", o->tracks, "Show these tracks alone, such as 1,3-5");
    c->add_option("--select", o->select, "Select all events, or those that begin in FROM-TO milliseconds");
    c->add_flag("--notenames", o->notenames, "Write pitches as note names");
    c->add_flag("--sharps", o->sharps, "Mark the black keys");
    c->add_option("--scale", o->scale, "Pixels of the picture for one of the window")
        ->check(CLI::Range(1, 8));
    c->add_option("--import-option", o->import_option,
                  "Reading MIDI: 0 by the file's tempo, else half the ticks");
    c->add_flag("--force", o->force, "Replace a picture that exists");
    c->callback([o, &status] { status = run_render(*o); });
}
