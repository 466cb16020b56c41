// app/script.cpp: the runner of the script language.
// Layer: program.
#include "app/script.h"

#include <charconv>
#include <cstdio>

#include "app/png.h"
#include "app/script_print.h"
#include "core/check.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/objects.h"
#include "host/kernel/textform.h"
#include "host/kernel/windows.h"

namespace {

constexpr int LAST_INLET = 7;
constexpr const char* NOT_A_NUMBER = "a number is wanted: ";

// The whole word as an integer within the range.
bool read_int(const script_word& word, std::int64_t least, std::int64_t most, std::int64_t& value) {
    const char* end = word.text.data() + word.text.size();
    const auto [at, code] = std::from_chars(word.text.data(), end, value);
    return !word.quoted && code == std::errc{} && at == end && value >= least && value <= most;
}

// Two words as a window point.
bool read_point(const script_word& h, const script_word& v, Point& p) {
    std::int64_t ph = 0;
    std::int64_t pv = 0;
    if (!read_int(h, INT16_MIN, INT16_MAX, ph) || !read_int(v, INT16_MIN, INT16_MAX, pv)) return false;
    p = {static_cast<std::int16_t>(pv), static_cast<std::int16_t>(ph)};
    return true;
}

// The words from `first` on as modifier names; false when one is none.
bool read_modifiers(const std::vector<script_word>& w, std::size_t first, int& modifiers) {
    static const std::map<std::string, int> names{
        {"shift", shiftKey}, {"command", cmdKey}, {"option", optionKey}, {"control", controlKey}};
    modifiers = 0;
    for (std::size_t i = first; i < w.size(); ++i) {
        const auto found = names.find(w[i].text);
        if (found == names.end()) return false;
        modifiers |= found->second;
    }
    return true;
}

bool read_type(const std::string& word, file_type& type) {
    static const std::map<std::string, file_type> names{
        {"Midi", TYPE_MIDI}, {"TEXT", TYPE_TEXT}, {"kelb", TYPE_KELB}};
    const auto found = names.find(word);
    if (found == names.end()) return false;
    type = found->second;
    return true;
}

std::string atoms_of(const std::vector<script_word>& w, std::size_t first, std::vector<atom>& atoms) {
    std::string error;
    for (std::size_t i = first; i < w.size(); ++i) {
        const std::optional<atom> a = script_atom(w[i], error);
        if (!a) return error;
        atoms.push_back(*a);
    }
    return "";
}

} // namespace

// How many words a command takes behind its own, and what carries it out.
struct script_runner::command {
    std::size_t least;
    std::size_t most;
    std::string (script_runner::*routine)(const words&);
};

const std::map<std::string, script_runner::command>& script_runner::commands() {
    constexpr std::size_t any = 1'000'000;
    using r = script_runner;
    static const std::map<std::string, command> all{
        {":in", {2, 2, &r::do_in}},           {":wait", {1, 1, &r::do_wait}},
        {":new", {0, 1, &r::do_new}},         {":use", {1, 1, &r::do_use}},
        {":free", {0, 0, &r::do_free}},       {":loop", {1, 1, &r::do_loop}},
        {":tie", {2, any, &r::do_tie}},       {":untie", {0, 0, &r::do_untie}},
        {":click", {2, 6, &r::do_click}},     {":drag", {2, 2, &r::do_drag}},
        {":release", {0, 2, &r::do_release}}, {":hold", {2, any, &r::do_hold}},
        {":pointer", {1, 6, &r::do_pointer}}, {":key", {1, 1, &r::do_key}},
        {":resize", {2, 2, &r::do_resize}},   {":update", {0, 0, &r::do_update}},
        {":edit", {0, 1, &r::do_edit}},       {":clipboard", {0, 1, &r::do_clipboard}},
        {":choose", {1, 1, &r::do_choose}},   {":answer", {1, 2, &r::do_answer}},
        {":saveto", {1, 2, &r::do_saveto}},   {":patcher", {0, 0, &r::do_patcher}},
        {":pstate", {0, 0, &r::do_pstate}},   {":assist", {2, 2, &r::do_assist}},
        {":dump", {0, 0, &r::do_dump}},       {":params", {0, 0, &r::do_params}},
        {":state", {0, 0, &r::do_state}},     {":tracks", {0, 0, &r::do_tracks}},
        {":png", {1, 1, &r::do_png}},
    };
    return all;
}

script_runner::script_runner(const std::string& name, std::function<void(const std::string&)> to)
    : print([line_to = std::move(to)](const std::string& line) { line_to(one_line(line)); }) {
    session.machine.print = print;
    add(name);
    settle();
}

script_runner::~script_runner() {
    print = [](const std::string&) {};
    session.machine.print = nullptr;
    for (const auto& s : seats) vacate(*s);
}

brisolan* script_runner::addressed() const {
    return here ? here->x : nullptr;
}

std::string script_runner::run(const std::string& line) {
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string::npos || line[0] == '#') return "";
    if (line.find('\0') != std::string::npos) return "a byte 0 is in it";
    std::string error;
    const words w = script_split(line.back() == '\r' ? line.substr(0, line.size() - 1) : line, error);
    if (!error.empty()) return error;
    error = line[start] == ':' ? run_command(w) : send(w);
    if (error.empty()) settle();
    return error;
}

// All low-priority calls, and then what must hold.
void script_runner::settle() {
    kel_run_queue();
#ifndef NDEBUG
    for (const auto& s : seats) {
        if (s->x) brisolan_checkinvariants(s->x);
    }
#endif
}

std::string script_runner::run_command(const words& w) {
    const auto found = commands().find(w[0].text);
    if (found == commands().end()) return "unknown command " + w[0].text;
    const command& c = found->second;
    const std::size_t given = w.size() - 1;
    if (given < c.least) return w[0].text + ": too few words";
    if (given > c.most) return w[0].text + ": too many words";
    static const std::map<std::string, int> without_instance{{":new", 0}, {":use", 0}, {":wait", 0}};
    if (!here && !without_instance.contains(w[0].text)) return "no instance is addressed";
    const std::string error = (this->*c.routine)(w);
    return error.empty() ? "" : w[0].text + ": " + error;
}

std::string script_runner::send(const words& w) {
    std::vector<atom> atoms;
    const std::string error = atoms_of(w, 0, atoms);
    if (!error.empty()) return error;
    if (!here) return "no instance is addressed";
    kel_message(here->x, atoms);
    return "";
}

// ---------------------------------------------------------------------------------------------------------------------
// Instances and the patch around them

void script_runner::add(const std::string& name) {
    seats.push_back(std::make_unique<seat>());
    here = seats.back().get();
    here->runner = this;
    here->x = session.make(name);
    here->loop = host_clock_new<script_runner::loop_due>(here);
    for (int k = 0; k < NPARAMS; ++k) kel_watch_outlet(here->x, k, value_left, here);
}

void script_runner::vacate(seat& s) {
    if (!s.x) return;
    host_clock_free(s.loop);
    kel_patcher_remove(session.patcher, s.x);
    s.x = nullptr;
}

void script_runner::loop_due(seat* s) {
    kel_send(s->x, s->runner->next, {});
}

void script_runner::value_left(void* seat_of, int outlet, std::int32_t value) {
    seat& s = *static_cast<seat*>(seat_of);
    s.runner->print("out " + std::to_string(outlet) + " " + std::to_string(value));
    if (outlet == PARAM_TIME && value >= 0 && s.runner->looping) host_clock_delay(s.loop, value);
    // A message may not add or end ties, so the list stays as it is.
    for (const tie& t : s.ties) {
        if (t.outlet == outlet) kel_message(s.x, t.message);
    }
}

std::string script_runner::do_in(const words& w) {
    std::int64_t k = 0;
    if (!read_int(w[1], 1, LAST_INLET, k)) return "no inlet " + w[1].text;
    std::int64_t value = 0;
    if (!read_int(w[2], INT32_MIN, INT32_MAX, value)) return NOT_A_NUMBER + w[2].text;
    kel_inlet(here->x, static_cast<int>(k), static_cast<std::int32_t>(value));
    return "";
}

std::string script_runner::do_wait(const words& w) {
    std::int64_t ms = 0;
    if (!read_int(w[1], 0, INT32_MAX, ms)) return "milliseconds are wanted: " + w[1].text;
    headless_wait(ms, [this] { settle(); });
    return "";
}

std::string script_runner::do_new(const words& w) {
    add(w.size() > 1 ? w[1].text : "");
    return "";
}

std::string script_runner::do_use(const words& w) {
    std::int64_t i = 0;
    const auto most = static_cast<std::int64_t>(seats.size());
    if (!read_int(w[1], 1, most, i)) return "no instance " + w[1].text;
    seat* s = seats[static_cast<std::size_t>(i - 1)].get();
    if (!s->x) return "instance " + w[1].text + " was freed";
    here = s;
    return "";
}

std::string script_runner::do_free(const words&) {
    vacate(*here);
    here = nullptr;
    return "";
}

std::string script_runner::do_loop(const words& w) {
    if (w[1].text != "on" && w[1].text != "off") return "on or off is wanted: " + w[1].text;
    looping = w[1].text == "on";
    for (const auto& s : seats) {
        if (!looping && s->x) host_clock_unset(s->loop);
    }
    return "";
}

std::string script_runner::do_tie(const words& w) {
    std::int64_t k = 0;
    if (!read_int(w[1], 0, NPARAMS - 1, k)) return "no outlet " + w[1].text;
    tie t{static_cast<int>(k), {}};
    const std::string error = atoms_of(w, 2, t.message);
    if (error.empty()) here->ties.push_back(t);
    return error;
}

std::string script_runner::do_untie(const words&) {
    for (const auto& s : seats) s->ties.clear();
    return "";
}

// ---------------------------------------------------------------------------------------------------------------------
// Pointer and keys

std::string script_runner::do_click(const words& w) {
    Point p{};
    int modifiers = 0;
    if (!read_point(w[1], w[2], p)) return "a window point is wanted";
    if (!read_modifiers(w, 3, modifiers)) return "unknown modifier";
    headless& m = session.machine;
    m.pointer = p;
    m.modifiers = modifiers;
    m.button = true;
    kel_window_click(here->x->window, p, modifiers);
    return "";
}

std::string script_runner::do_drag(const words& w) {
    Point p{};
    if (!read_point(w[1], w[2], p)) return "a window point is wanted";
    session.machine.pointer = p;
    session.machine.button = true;
    kel_drag_move(p);
    return "";
}

std::string script_runner::do_release(const words& w) {
    headless& m = session.machine;
    if (w.size() == 2 || (w.size() == 3 && !read_point(w[1], w[2], m.pointer)))
        return "a window point is wanted";
    m.button = false;
    kel_drag_release(m.pointer);
    m.modifiers = 0;
    return "";
}

std::string script_runner::do_hold(const words& w) {
    if (w.size() % 2 == 0) return "window points are wanted";
    std::vector<Point> points((w.size() - 1) / 2);
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!read_point(w[1 + 2 * i], w[2 + 2 * i], points[i])) return "a window point is wanted";
    }
    session.machine.held = points;
    session.machine.held_at = 0;
    return "";
}

std::string script_runner::do_pointer(const words& w) {
    headless& m = session.machine;
    int modifiers = 0;
    if (w[1].text == "out") {
        if (!read_modifiers(w, 2, modifiers)) return "unknown modifier";
        kel_window_pointerout(here->x->window, m.pointer, modifiers);
        return "";
    }
    Point p{};
    if (w.size() < 3 || !read_point(w[1], w[2], p)) return "a window point is wanted";
    if (!read_modifiers(w, 3, modifiers)) return "unknown modifier";
    m.pointer = p;
    m.modifiers = modifiers;
    // The pointer is told of with the button up, also where a press before was never released.
    m.button = false;
    kel_window_pointer(here->x->window, p, modifiers);
    return "";
}

std::string script_runner::do_key(const words& w) {
    std::int64_t code = 0;
    if (!read_int(w[1], INT32_MIN, INT32_MAX, code)) return NOT_A_NUMBER + w[1].text;
    kel_window_key(here->x->window, static_cast<int>(code));
    return "";
}

std::string script_runner::do_resize(const words& w) {
    std::int64_t width = 0;
    std::int64_t height = 0;
    if (!read_int(w[1], 1, KEL_WINDOW_MOST, width) || !read_int(w[2], 1, KEL_WINDOW_MOST, height))
        return "a width and a height from 1 to " + std::to_string(KEL_WINDOW_MOST) + " are wanted";
    kel_window_resize(here->x->window, static_cast<int>(width), static_cast<int>(height));
    return "";
}

std::string script_runner::do_update(const words&) {
    kel_window_update(here->x->window);
    return "";
}

// ---------------------------------------------------------------------------------------------------------------------
// The Edit menu, the clipboard, dialogs and menus

std::string script_runner::do_edit(const words& w) {
    brisolan* x = here->x;
    const kel_in_port current(x->window);
    if (w.size() == 1) {
        host_menustate state;
        kel_private<"chkmenu">(x, &state);
        print("edit paste=" + std::to_string(state.paste) + " cut=" + std::to_string(state.cut) +
              " selectall=" + std::to_string(state.selectall));
        return "";
    }
    const std::string& what = w[1].text;
    if (what == "cut")
        kel_private<"cut">(x);
    else if (what == "copy")
        kel_private<"copy">(x);
    else if (what == "paste")
        kel_private<"paste">(x);
    else if (what == "clr")
        kel_private<"clr">(x);
    else if (what == "selectall")
        kel_private<"selectall">(x);
    else
        return "unknown command " + what;
    return "";
}

std::string script_runner::do_clipboard(const words& w) {
    headless& m = session.machine;
    if (w.size() == 1) {
        print("clipboard " + script_quote(m.clipboard));
        return "";
    }
    m.clipboard = w[1].text;
    m.has_clipboard = true;
    return "";
}

std::string script_runner::do_choose(const words& w) {
    std::int64_t item = 0;
    if (!read_int(w[1], 0, INT16_MAX, item)) return "an item's number is wanted: " + w[1].text;
    session.machine.choices.push_back(static_cast<int>(item));
    return "";
}

std::string script_runner::do_answer(const words& w) {
    if (w[1].text.size() >= HOST_NAME_SIZE)
        return "a path is at most " + std::to_string(HOST_NAME_SIZE - 1) + " bytes long";
    headless_answer a;
    if (w.size() == 2 && w[1].text == "cancel" && !w[1].quoted)
        a.cancelled = true;
    else
        a.path = w[1].text;
    if (w.size() == 3 && !read_type(w[2].text, a.type)) return "unknown type " + w[2].text;
    session.machine.answers.push_back(a);
    return "";
}

// ---------------------------------------------------------------------------------------------------------------------
// Saving and showing

std::string script_runner::do_saveto(const words& w) {
    file_type type = TYPE_TEXT;
    if (w.size() == 3 && (!read_type(w[2].text, type) || type == TYPE_MIDI))
        return "unknown form " + w[2].text;
    host_window* window = here->x->window;
    const std::uint8_t before = window->save_format;
    window->save_format = type == TYPE_KELB ? 1 : 0;
    // A failure is on the console already: whoever writes a document says so.
    (void)kel_private<"saveto">(here->x, w[1].text.c_str(), host_default_path());
    window->save_format = before;
    return "";
}

void script_runner::print_lines(const host_atombuf* lines) {
    kel_atombuf_lines(lines, [this](std::span<const atom> atoms) {
        std::string text = "line ";
        kel_format_atoms(atoms, &text);
        print(text + ";");
        return true;
    });
}

std::string script_runner::do_patcher(const words&) {
    host_atombuf* lines = host_atombuf_new();
    kel_private<"save">(here->x, lines);
    print_lines(lines);
    host_atombuf_free(lines);
    return "";
}

std::string script_runner::do_pstate(const words&) {
    host_atombuf* lines = host_atombuf_new();
    kel_private<"pstate">(here->x, lines);
    print_lines(lines);
    host_atombuf_free(lines);
    return "";
}

std::string script_runner::do_assist(const words& w) {
    const bool inlet = w[1].text == "inlet";
    std::int64_t k = 0;
    if (!inlet && w[1].text != "outlet") return "inlet or outlet is wanted: " + w[1].text;
    if (!read_int(w[2], 0, NPARAMS - 1, k)) return "no " + w[1].text + " " + w[2].text;
    char text[HOST_ASSIST_SIZE] = "";
    kel_private<"assist">(here->x, inlet, static_cast<int>(k), static_cast<char*>(text));
    print(std::string("assist ") + text);
    return "";
}

std::string script_runner::do_dump(const words&) {
    print_events(here->x, print);
    return "";
}

std::string script_runner::do_params(const words&) {
    print_params(here->x, print);
    return "";
}

std::string script_runner::do_state(const words&) {
    print_state(here->x, print);
    return "";
}

std::string script_runner::do_tracks(const words&) {
    print_tracks(here->x, print);
    return "";
}

std::string script_runner::do_png(const words& w) {
    const std::string error = write_png(here->x->window->port, w[1].text);
    if (!error.empty()) host_error("host: can't write %s: %s", w[1].text.c_str(), error.c_str());
    return "";
}
