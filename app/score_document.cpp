// app/score_document.cpp: a score being edited on the desktop.
// Layer: program.
#include "app/score_document.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "app/midi_rest.h"
#include "app/part.h"
#include "app/play_patch.h"
#include "app/saved_form.h"
#include "app/saved_roles.h"
#include "app/source.h"
#include "app/target.h"
#include "host/desktop/descriptions.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/windows.h"
#include "view/events.h"
#include "view/geometry.h"
#include "view/legend.h"
#include "view/scroll.h"
#include "view/window.h"
#include "view/zoom.h"

namespace {

constexpr kel_time LENGTH_GROWS_OLD = 1000 * NS_PER_MS;
constexpr int LARGEST_ZOOM = 1 << 20;
constexpr int BELOW_DATA = 30;   // scroll bar and track buttons
constexpr int VALUE_MARGIN = 24; // pixels above the highest note and below the lowest

const event* first_selected(const brisolan* x) {
    const event* e = x->events;
    while (e && !e->selected) e = e->next;
    return e;
}

} // namespace

score_document::score_document(std::function<void(const std::string&)>& where, int n)
    : console(where), number(n) {}

std::string score_document::start(const std::string& file) {
    if (std::string why = patch.load(); !why.empty()) return why;
    fresh = descriptions_digest(patch.score());
    if (file.empty()) return "";
    if (std::string why = read_into(console, patch.score(), file); !why.empty()) return why;
    if (kel_filetype(file) == TYPE_MIDI)
        rest = midi_rest_of(file);
    else
        show_saved_roles(patch.score(), file);
    path = file;
    return "";
}

std::string score_document::title() const {
    if (!path.empty()) return std::filesystem::path(path).filename().string();
    return number > 1 ? "Untitled " + std::to_string(number) : "Untitled";
}

// ---------------------------------------------------------------------------------------------------------------------
// Files

bool score_document::is_midi() const {
    return !path.empty() && kel_typeofname(path.c_str()) == TYPE_MIDI;
}

// How a score is shown is no part of what a MIDI file stands for; all that was made of it is, whether the file can hold it
// or not.
std::uint64_t score_document::state_now() const {
    return is_midi() ? contents_digest(patch.score()) : score_digest(patch.score());
}

void score_document::remember() {
    if (known || patch.mode() == MODE_RECORD) return;
    known = true;
    saved = state_now();
    copied = score_digest(patch.score());
}

bool score_document::unsaved() {
    if (from_copy) return true;
    if (!known || (path.empty() && empty())) return false;
    return state_now() != saved;
}

std::string score_document::save(const std::string& to) {
    const file_type type = kel_typeofname(to.c_str());
    if (!type) return to + ": " + WANTED_ENDINGS;
    if (std::string why = write_from(console, patch.score(), {to, type}); !why.empty()) return why;
    path = to;
    from_copy = false;
    rest.clear();
    known = true;
    saved = state_now();
    kel_patcher_setchanged(patch.patcher(), false);
    return "";
}

std::string score_document::export_midi(const std::string& to, int format, bool timecode) {
    return write_from(console, patch.score(), {to, TYPE_MIDI, timecode, format});
}

std::vector<std::string> score_document::lost_in(const std::string& to) {
    std::vector<std::string> lost;
    if (kel_typeofname(to.c_str()) != TYPE_MIDI) return lost;
    const brisolan* x = patch.score();
    const auto any = [x](auto is_lost) {
        const event* e = x->events;
        while (e && !is_lost(*e)) e = e->next;
        return e != nullptr;
    };
    // What a MIDI file is read with, whatever the defaults are now.
    if (any([](const event& e) { return e.x1 != 0 || e.x2 != 0; }))
        lost.push_back("the values of " + parameter_name(PARAM_X1) + " and " + parameter_name(PARAM_X2));
    if (any([](const event& e) { return e.chan < 1 || e.chan > 16; }))
        lost.emplace_back("channels beyond 1 to 16");
    if (any([](const event& e) { return e.pitch < 0 || e.pitch > 127; }))
        lost.emplace_back("pitches beyond 0 to 127");
    if (!tracks_hold_all(x)) lost.emplace_back("which track each note is on");
    if (descriptions_digest(x) != fresh) lost.emplace_back("the parameters' names and ranges");
    std::string of_the_file;
    for (const std::string& kind : rest) of_the_file += (of_the_file.empty() ? "" : ", ") + kind;
    if (!rest.empty()) lost.push_back("what the file held beside notes: " + of_the_file);
    return lost;
}

bool score_document::keep_copy(const std::string& to) {
    const std::uint64_t now = score_digest(patch.score());
    if (now == copied) return true;
    const std::uint8_t form = patch.score()->window->save_format;
    const bool done = write_from(console, patch.score(), {to, TYPE_KELB}).empty();
    patch.score()->window->save_format = form;
    if (done) copied = now;
    return done;
}

std::string score_document::take_copy(const std::string& from) {
    if (std::string why = read_into(console, patch.score(), from); !why.empty()) return why;
    show_saved_roles(patch.score(), from);
    from_copy = true;
    known = true;
    return "";
}

// ---------------------------------------------------------------------------------------------------------------------
// Playing

std::string score_document::play(std::int64_t from) {
    const event* const selected = from < 0 ? first_selected(patch.score()) : nullptr;
    if (from < 0 && !selected) return "nothing is selected";
    if (selected) from = selected->time;
    if (empty()) return "there is no note to play";
    if (patch.play(from)) return "";
    return patch.play(0) ? "" : "there is no note to play";
}

std::string score_document::step() {
    if (empty()) return "there is no note to play";
    if (patch.step()) return "";
    patch.stop();
    patch.go_to(0);
    return "the score is at its end; the next step begins it again";
}

std::string score_document::record() {
    patch.record();
    return "";
}

std::string score_document::follow(std::int64_t from) {
    std::int32_t n = 0;
    std::int32_t first = -1;
    for (const event* e = patch.score()->events; e; e = e->next, ++n) {
        if (first < 0 && e->time >= from) first = n;
    }
    if (n == 0) return "there is no note to follow";
    if (!has_part()) return "no notes are on channel 1, which is the performer's part";
    patch.follow(std::max(first, 0));
    return "";
}

bool score_document::has_part() const {
    return ::has_part(patch.score());
}

void score_document::give_part(int track) {
    ::give_part(patch.score(), track);
    host_patcher_dirty(patch.patcher());
    kel_window_update(editor());
}

void score_document::go_to(std::int64_t position) {
    if (patch.mode() != MODE_IDLE) return;
    patch.stop();
    patch.go_to(std::max<std::int64_t>(position, 0));
}

desk_transport score_document::transport() {
    const brisolan* x = patch.score();
    desk_transport t;
    switch (patch.mode()) {
    case MODE_PLAY: t.mode = desk_mode::playing; break;
    case MODE_RECORD: t.mode = desk_mode::recording; break;
    case MODE_FOLLOW: t.mode = desk_mode::following; break;
    default: break;
    }
    const kel_time now = kel_now();
    if (length_events != x->nevents || length_relinked != x->relinked || now - length_at > LENGTH_GROWS_OLD) {
        length = score_length(x);
        length_events = x->nevents;
        length_relinked = x->relinked;
        length_at = now;
    }
    t.position = patch.position();
    t.length = length;
    t.speed = patch.speed();
    Rect data;
    brisolan_getdatarect(x, &data);
    const auto held = static_cast<std::int32_t>(std::min<std::int64_t>(t.position, INT32_MAX));
    const std::int32_t h = brisolan_timetoh(x, held);
    if (h >= data.left && h < data.right) t.line = h;
    t.line_top = data.top;
    t.line_bottom = data.bottom;
    return t;
}

int score_document::nselected() const {
    int n = 0;
    for (const event* e = patch.score()->events; e; e = e->next) n += e->selected ? 1 : 0;
    return n;
}

// ---------------------------------------------------------------------------------------------------------------------
// The editor's settings

void zoom_score(brisolan* x, desk_zoom way) {
    const kel_in_port port(x->window);
    switch (way) {
    case desk_zoom::time_out: brisolan_dozoom(x, ZOOM_X_OUT); break;
    case desk_zoom::time_in: brisolan_dozoom(x, ZOOM_X_IN); break;
    case desk_zoom::value_out: brisolan_dozoom(x, ZOOM_Y_OUT); break;
    case desk_zoom::value_in: brisolan_dozoom(x, ZOOM_Y_IN); break;
    }
    kel_window_update(x->window);
}

void score_document::frame_values() {
    brisolan* const x = patch.score();
    std::int32_t least = INT32_MAX;
    std::int32_t most = INT32_MIN;
    for (const event* e = x->events; e; e = e->next) {
        least = std::min(least, event_param(*e, x->yparam));
        most = std::max(most, event_param(*e, x->yparam));
    }
    if (least > most) return;
    const std::int64_t room = std::max(x->window->height - DATA_TOP - BELOW_DATA, 1);
    const auto pixels = [&](std::int64_t zoom) { return (std::int64_t{most} - least) * UNIT / zoom; };
    const auto fits = [&](std::int64_t zoom) { return pixels(zoom) + VALUE_MARGIN * 2 <= room; };
    while (!fits(x->yzoom) && x->yzoom < LARGEST_ZOOM) brisolan_yzoomout(x);
    while (x->yzoom >= 2 && fits(std::max(x->yzoom * 2 / 3, 1))) brisolan_yzoomin(x);
    brisolan_remax(x);
    const std::int64_t above = (room - pixels(x->yzoom)) / 2;
    const std::int64_t top = std::clamp<std::int64_t>(YLOC(x, most) - above - DATA_TOP, 0, x->vscroll_extent);
    host_window_setscrollval(x->window, x->window->hscroll_value, static_cast<std::int16_t>(top));
    brisolan_chkscroll(x);
    kel_window_update(editor());
}

void score_document::show_all() {
    brisolan* const x = patch.score();
    Rect data;
    brisolan_getdatarect(x, &data);
    const std::int64_t room = std::max(data.right - data.left, 1);
    const std::int64_t end = score_length(x);
    const auto fits = [&](std::int64_t zoom) { return end * UNIT <= room * zoom; };
    while (!fits(x->xzoom) && x->xzoom < LARGEST_ZOOM) brisolan_xzoomout(x);
    while (x->xzoom >= 2 && fits(x->xzoom / 2)) brisolan_xzoomin(x);
    host_window_setscrollval(x->window, 0, x->window->vscroll_value);
    frame_values();
}

void score_document::scroll_to(std::int64_t position) {
    const std::int64_t steps = position * UNIT / brisolan_factor(patch.score()->xzoom) / SCROLL_STEP;
    kel_window_scroll_to(editor(), static_cast<int>(std::min<std::int64_t>(steps, INT16_MAX)),
                         editor()->vscroll_value);
}

void score_document::set_tool(int tool) {
    brisolan_editmode(patch.score(), tool);
}

int score_document::role(int parameter) const {
    return patch.score()->params[static_cast<std::size_t>(parameter)].mode;
}

void score_document::set_role(int parameter, int role) {
    brisolan* const x = patch.score();
    brisolan_displaymode(x, &x->params[static_cast<std::size_t>(parameter)], parameter, role);
    x->relayout = 1;
    brisolan_remax(x);
    brisolan_chkscroll(x);
    kel_window_update(editor());
}

std::string score_document::parameter_name(int parameter) const {
    return patch.score()->params[static_cast<std::size_t>(parameter)].name->name;
}

std::vector<desk_track> score_document::tracks() {
    const brisolan* x = patch.score();
    std::vector<bool> used(static_cast<std::size_t>(x->ntracks));
    for (const event* e = x->events; e; e = e->next) {
        if (e->track >= 1 && e->track <= x->ntracks) used[static_cast<std::size_t>(e->track - 1)] = true;
    }
    std::vector<desk_track> all;
    for (int i = 0; i < x->ntracks; ++i) {
        const bool shown = x->trackshown[i] != 0;
        if (used[static_cast<std::size_t>(i)] || !shown) all.push_back({i + 1, shown});
    }
    return all;
}

void score_document::show_track(int track, bool shown) {
    brisolan* const x = patch.score();
    for (int i = 0; i < x->ntracks; ++i) {
        if (track == 0 || i == track - 1) x->trackshown[i] = shown ? 1 : 0;
    }
    x->redraw.hide_check = std::uint8_t{1};
    host_qelem_set(x->redraw_qelem);
    kel_window_update(editor());
}

void score_document::set_note_names(bool on) {
    parameter_description pitch = ask_descriptions(patch.score()).parameters[PARAM_PITCH];
    pitch.note_names = on;
    send_description(patch.score(), PARAM_PITCH, pitch);
}

void score_document::set_black_keys(bool on) {
    brisolan_drawsharps(patch.score(), on ? 1 : 0);
}
