// app/editor.cpp: the program behind the desktop's windows.
// Layer: program.
#include "app/editor.h"

#include <utility>

#include "app/patch_document.h"
#include "app/score_document.h"
#include "app/session.h"
#include "host/boxes/boxes.h"
#include "host/boxes/midi_device.h"
#include "host/desktop/midi_ports.h"
#include "view/window.h"

namespace {

// A console line's own words where they are to stand alone: without the program's name.
std::string plain(const std::string& why) {
    constexpr std::string_view name = "brisolan: ";
    return why.starts_with(name) ? why.substr(name.size()) : why;
}

std::vector<desk_port> ports_of(midi_direction direction, const std::string& chosen) {
    std::vector<desk_port> all;
    for (const midi_port& p : midi_list_ports(direction)) all.push_back({p.name, p.name == chosen});
    return all;
}

} // namespace

editor::editor(const host_platform& machine) : session(kel_timing::real_time, machine) {
    session.print = [this](const std::string& line) { lines.push_back(line); };
    session.catch_signals();
    load_brisolan();
    boxes_load();
}

editor::~editor() {
    input.reset();
    session.print = nullptr;
}

std::vector<std::string> editor::console() {
    return std::exchange(lines, {});
}

std::unique_ptr<desk_document> editor::make(std::string& why) {
    auto d = std::make_unique<score_document>(session.print, made + 1);
    why = plain(d->start(""));
    if (!why.empty()) return nullptr;
    ++made;
    return d;
}

std::unique_ptr<desk_document> editor::open(const std::string& file, std::string& why) {
    auto d = std::make_unique<score_document>(session.print, 1);
    why = plain(d->start(file));
    return why.empty() ? std::move(d) : nullptr;
}

bool editor::is_patch(const std::string& file) {
    return patch_document::is_one(file);
}

std::unique_ptr<desk_patch> editor::open_patch(const std::string& file, std::string& why) {
    auto p = std::make_unique<patch_document>(session.print);
    why = plain(p->start(file));
    return why.empty() ? std::move(p) : nullptr;
}

std::string editor::state_of(host_object* score) {
    const auto* const x = static_cast<const brisolan*>(score);
    const char* does = "idle";
    if (x->mode == MODE_PLAY) does = "playing";
    if (x->mode == MODE_RECORD) does = "recording";
    if (x->mode == MODE_FOLLOW) does = "following";
    const std::int32_t n = x->nevents;
    return std::to_string(n) + (n == 1 ? " note, " : " notes, ") + does;
}

void editor::set_tool(host_object* score, int tool) {
    brisolan_editmode(static_cast<brisolan*>(score), tool);
}

void editor::zoom(host_object* score, desk_zoom way) {
    zoom_score(static_cast<brisolan*>(score), way);
}

std::vector<desk_port> editor::inputs() {
    return ports_of(midi_direction::in, input_name);
}

std::vector<desk_port> editor::outputs() {
    return ports_of(midi_direction::out, output_name);
}

// At scheduler level: to the patches, and at once to whatever sounds.
void editor::came_in(void* ed, std::int32_t place, std::int32_t key) {
    midi_arrived(nullptr, place, key);
    if (static_cast<const editor*>(ed)->hearing) midi_send(place >> 8, place & 255, key >> 8, key & 255);
}

std::string editor::why_no_input() {
    if (input && input->there()) return "";
    if (const std::string why = midi_why_absent(); !why.empty()) return "no note can come in: " + why;
    if (input)
        return "no note comes in: the MIDI input has gone; MIDI > Input chooses another (" + input_name + ")";
    return "no note comes in: choose a port in MIDI > Input";
}

std::string editor::choose_input(const std::string& name) {
    input.reset();
    input_name.clear();
    if (name.empty()) return "";
    auto opened = std::make_unique<note_input>();
    input_wish wish;
    wish.port = name;
    if (std::string why = opened->open(wish, {came_in, this}); !why.empty()) return why;
    input = std::move(opened);
    input_name = name;
    return "";
}

std::string editor::choose_output(const std::string& name) {
    port.reset();
    output_name.clear();
    if (name.empty()) return "";
    auto opened = std::make_unique<note_outputs>();
    output_wish wish;
    wish.port = name;
    if (std::string why = opened->open(wish); !why.empty()) return why;
    port = std::move(opened);
    output_name = name;
    return "";
}

std::string editor::set_synth(bool on) {
    sound.reset();
    if (!on) return "";
    auto opened = std::make_unique<note_outputs>();
    output_wish wish;
    wish.synth = true;
    if (std::string why = opened->open(wish); !why.empty()) return why;
    sound = std::move(opened);
    return "";
}

std::string editor::why_no_midi() {
    return midi_why_absent();
}

void editor::panic() {
    for (note_outputs* o : {port.get(), sound.get()}) {
        if (o) o->silence();
    }
}

void editor::poll() {
    for (note_outputs* o : {port.get(), sound.get()}) {
        if (o) o->poll();
    }
    if (input) input->poll();
}
