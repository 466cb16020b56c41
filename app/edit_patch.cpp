// app/edit_patch.cpp: the patch around a score that is being edited.
// Layer: program.
#include "app/edit_patch.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "app/patch_files.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/objects.h"
#include "host/kernel/patchfile.h"

namespace {

int patches_made =
    0; // main level; how many there were in this process, which their receivers' names are told by

std::string numbered(const std::string& name, int number) {
    return name + "." + std::to_string(number);
}

// A receiver's name is the whole process's: every patch gets its own.
std::string with_numbered_receivers(const std::string& text, int number) {
    constexpr std::string_view maker = "#N receive ";
    std::istringstream lines(text);
    std::string line;
    std::string all;
    while (std::getline(lines, line)) {
        if (line.starts_with(maker) && line.ends_with(";"))
            line = std::string(maker) +
                   numbered(line.substr(maker.size(), line.size() - maker.size() - 1), number) + ";";
        all += line + "\n";
    }
    return all;
}

} // namespace

edit_patch::edit_patch() : patch(kel_patcher_new()), number(++patches_made) {}

edit_patch::~edit_patch() {
    if (x) stop();
    kel_patcher_free(patch);
}

std::string edit_patch::load() {
    const patch_text file = own_patch("edit");
    kel_patch_parse(patch, with_numbered_receivers(file.text, number), file.called.c_str());
    x = static_cast<brisolan*>(kel_patcher_find(patch, "brisolan"));
    if (!x) return file.called + ": the patch has no score in it";
    kel_watch_outlet(x, PARAM_TIME, value_left, this);
    return "";
}

bool edit_patch::tell_box(const char* receiver, std::initializer_list<atom> message) {
    symbol* const name = host_symbol(numbered(receiver, number).c_str());
    return name->thing && kel_message(name, std::vector<atom>(message));
}

// Every value of the Time outlet is a wait, from the note that was played to the one that the cursor is on now.
void edit_patch::value_left(void* edit, int, std::int32_t value) {
    auto& p = *static_cast<edit_patch*>(edit);
    const event* const next = p.x->current;
    const std::int64_t wait = std::max(value, 0);
    p.wait_began = kel_now();
    if (next && value >= 0)
        p.wait_from = next->time - wait;
    else
        p.wait_from = p.wait_from + p.wait_length;
    p.wait_length = wait;
}

event* edit_patch::first_from(std::int64_t ms) const {
    event* e = x->events;
    while (e && e->time < ms) e = e->next;
    return e;
}

// Started whole, and put where it shall begin before the first wait is over.
void edit_patch::start_at(event* first, std::int64_t from) {
    kel_send(x, host_symbol("start"), {});
    if (first == x->events && from <= 0) return;
    x->current = first;
    host_outlet_int(x->params[PARAM_TIME].outlet, static_cast<std::int32_t>(first->time - from));
}

bool edit_patch::play(std::int64_t from) {
    stop();
    event* const first = first_from(from);
    if (!first) return false;
    resting_at = from;
    const host_locked_out now;
    tell_box("go", {atom(host_symbol("bang"))});
    if (from > 0) {
        x->current = first;
        host_outlet_int(x->params[PARAM_TIME].outlet, static_cast<std::int32_t>(first->time - from));
    }
    return true;
}

bool edit_patch::step() {
    const bool going_on = stepping && x->mode == MODE_PLAY;
    const std::int64_t from = position();
    if (!going_on) stop();
    event* const first = going_on ? static_cast<event*>(x->current) : first_from(from);
    if (!first) return false;
    const host_locked_out now;
    tell_box("step", {atom(host_symbol("bang"))});
    if (!going_on) start_at(first, from);
    stepping = true;
    kel_send(x, host_symbol("next"), {});
    const event* const next = x->current;
    resting_at = next ? next->time.get() : first->time + 1;
    return true;
}

void edit_patch::record() {
    stop();
    recorded_from = kel_now();
    tell_box("record", {atom(host_symbol("bang"))});
}

void edit_patch::follow(std::int32_t n) {
    stop();
    const host_locked_out now;
    tell_box("follow", {atom(host_symbol("bang"))});
    if (n > 0) kel_send(x, host_symbol("follow"), std::vector<atom>{atom(n)});
}

void edit_patch::stop() {
    const std::int64_t reached = position();
    const bool recorded = x->mode == MODE_RECORD;
    stepping = false;
    tell_box("halt", {atom(host_symbol("bang"))});
    resting_at = recorded ? 0 : reached;
}

void edit_patch::set_speed(double speed) {
    tempo = speed;
    tell_box("tempo", {atom(host_symbol("speed")), atom(static_cast<float>(speed))});
}

int edit_patch::mode() const {
    return stepping ? MODE_IDLE : x->mode.get();
}

std::int64_t edit_patch::position() const {
    const host_locked_out now;
    if (stepping || x->mode == MODE_IDLE) return resting_at;
    if (x->mode == MODE_RECORD) return (kel_now() - recorded_from) / NS_PER_MS;
    if (x->mode == MODE_FOLLOW) {
        const event* const next = x->current;
        return next ? next->time.get() : 0;
    }
    const double passed =
        static_cast<double>(kel_now() - wait_began) / static_cast<double>(NS_PER_MS) * tempo;
    return wait_from + std::min(static_cast<std::int64_t>(passed), wait_length.load());
}
