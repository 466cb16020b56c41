// app/recording.cpp: a recording under way, and its file.
// Layer: program.
#include "app/recording.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include <unistd.h>

#include "app/live.h"
#include "app/play_patch.h"
#include "app/say.h"
#include "host/kernel/files.h"

namespace {

std::string elsewhere(const write_target& to) {
    const char* const named = std::getenv("TMPDIR");
    const char* const ending = to.type == TYPE_MIDI ? ".mid" : to.type == TYPE_TEXT ? ".kel" : ".kelb";
    return std::string(named && *named ? named : "/tmp") + "/brisolan-recording-" + std::to_string(getpid()) +
           ending;
}

} // namespace

recording::recording(std::function<void(const std::string&)>& where, write_target to)
    : console(where), target(std::move(to)) {}

recording::~recording() {
    if (const std::string why = save(); !why.empty()) say(why);
    if (patcher) kel_patcher_free(patcher);
}

std::string recording::load() {
    std::string why;
    if (!x) x = load_own_patch("record", &patcher, why);
    return why;
}

std::string recording::start() {
    if (std::string why = load(); !why.empty()) return why;
    if (!tell("go", "bang")) return "the record patch receives no \"go\"";
    running = true;
    return "";
}

void recording::halt() {
    let_arrive();
    tell("halt", "bang");
    kel_run_queue();
    running = false;
}

std::string recording::save() {
    if (!running) return "";
    halt();
    if (!x->events) return "no note came in; nothing was saved";
    const std::string why = write_from(console, x, target);
    if (why.empty()) return "";
    write_target other = target;
    other.file = elsewhere(target);
    const std::string worse = write_from(console, x, other);
    return why + (worse.empty() ? "; the recording is in " + other.file : "; " + worse);
}
