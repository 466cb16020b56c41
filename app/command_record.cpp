// app/command_record.cpp: `brisolan record`: what comes in is recorded until it is interrupted, and saved.
// Layer: program.
#include <algorithm>
#include <cstdio>
#include <memory>

#include "app/commands.h"
#include "app/devices.h"
#include "app/live.h"
#include "app/recording.h"
#include "app/say.h"
#include "app/target.h"
#include "host/kernel/files.h"

namespace {

struct record_options {
    std::string file;
    std::int64_t until = -1; // milliseconds; -1: until a signal
    bool force = false;
    input_wish input;
};

constexpr int LOOK_EVERY_MS = 50;

// The signals that end it are the ordinary way to end it: what came in is saved, and the work is done.
int record(const record_options& o, file_type type) {
    live_session session;
    session.print = say_console;
    recording r(session.print, {o.file, type});
    note_input input; // after the recording: closed first
    session.catch_signals();
    if (const std::string why = r.load(); !why.empty()) return fail(why);
    if (const std::string why = input.open(o.input); !why.empty()) return fail(why);
    if (const std::string why = r.start(); !why.empty()) return fail(why);
    const kel_time began = kel_now();
    const kel_time end = o.until < 0 ? INT64_MAX : began + o.until * NS_PER_MS;
    while (!session.signal() && kel_now() < end) {
        const kel_time left_ms = (end - kel_now() + NS_PER_MS - 1) / NS_PER_MS;
        session.wait(static_cast<int>(std::clamp<kel_time>(left_ms, 0, LOOK_EVERY_MS)));
        input.poll();
    }
    const std::string why = r.save();
    return why.empty() ? EXIT_DONE : fail(why);
}

int run_record(const record_options& o) {
    // Who reads a pipe may be gone by the time there is something to save.
    if (o.file == "-") return misuse("record: a file is wanted, not standard output");
    const file_type type = kel_typeofname(o.file.c_str());
    if (!type) {
        return misuse(o.file + ": " + WANTED_ENDINGS);
    }
    // Told before anybody plays a note, not after.
    if (const std::string why = why_kept(o.file, o.force); !why.empty()) return fail(why);
    return record(o, type);
}

} // namespace

void add_record_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("record", "Record what comes in until interrupted, and save it");
    auto o = std::make_shared<record_options>();
    c->add_option("FILE", o->file, "The file to write, its kind told by the ending")->required();
    c->add_option("--until", o->until, "Stop by itself after this many milliseconds")->check(WHOLE_FROM_0);
    c->add_flag("--force", o->force, "Replace a file that exists");
    add_input_options(c, o->input, true);
    c->callback([o, &status] { status = run_record(*o); });
}
