// app/command_patch.cpp: `brisolan patch`: a patch file loaded and run.
// Layer: program.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "app/commands.h"
#include "app/devices.h"
#include "app/live.h"
#include "app/say.h"
#include "app/session.h"
#include "host/boxes/boxes.h"
#include "host/boxes/midi_device.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/memory.h"
#include "host/kernel/patchfile.h"

namespace {

struct patch_options {
    std::string file;
    std::string writable; // a folder
    std::int64_t memory_mb = 1024;
    std::int64_t duration = -1; // virtual milliseconds; -1: real time, until a signal
    input_wish input;
    output_wish output;
};

constexpr int LOOK_EVERY_MS = 1000;

// A patch's console is what it puts out: its notices are data, its errors are not.
void print_console(const std::string& line) {
    constexpr std::string_view notice = "post ";
    constexpr std::string_view error = "error ";
    if (line.starts_with(notice)) {
        print_line(line.substr(notice.size()));
        flush_output();
    } else if (line.starts_with(error)) {
        say(line.substr(error.size()));
    }
}

// The patch, its boxes banged at load; null when its file cannot be read, and the console said so.
host_patcher* load(const patch_options& o) {
    load_brisolan();
    boxes_load();
    kel_files_protect(true); // the patch may come from anyone
    if (!o.writable.empty()) kel_file_allow(o.writable);
    kel_memory_limit(o.memory_mb << 20);
    host_patcher* const p = kel_patcher_new();
    const std::string file = o.file == "-" ? "/dev/stdin" : o.file;
    if (kel_patch_read(p, file.c_str(), host_default_path())) return p;
    kel_patcher_free(p);
    return nullptr;
}

// No note outlives the patch.
void end(host_patcher* p) {
    for (host_object* x : kel_patcher_objects(p)) {
        if (std::strcmp(kel_class_name(x->cls), "makenote") == 0) kel_send(x, host_symbol("stop"), {});
    }
    {
        const host_locked_out now;
        midi_silence();
    }
    kel_run_queue();
    kel_patcher_free(p);
}

// An option that names what is not there, before anything runs; empty when all is well.
std::string why_unfit(const patch_options& o) {
    std::error_code failed;
    if (o.writable.empty() || std::filesystem::is_directory(o.writable, failed)) return "";
    return o.writable + ": " + (failed ? failed.message() : "not a folder");
}

int run_for(const patch_options& o) {
    headless machine;
    machine.print = print_console;
    headless_start(&machine);
    host_patcher* const p = load(o);
    if (p) {
        kel_run_queue();
        headless_wait(o.duration);
        end(p);
    }
    headless_end();
    return p ? EXIT_DONE : EXIT_FAILED;
}

// A signal is the ordinary way to end a patch.
int run_live(const patch_options& o) {
    live_session session;
    session.print = print_console;
    session.catch_signals();
    note_outputs outputs; // before the patch, which may play as soon as it is loaded
    if (const std::string why = outputs.open(o.output); !why.empty()) return fail(why);
    host_patcher* const p = load(o);
    if (!p) return EXIT_FAILED;
    note_input input;
    const std::string why = o.input.any() ? input.open(o.input) : "";
    while (why.empty() && !session.signal() && flush_output()) {
        session.wait(LOOK_EVERY_MS);
        outputs.poll();
        input.poll();
    }
    input.close();
    end(p);
    return why.empty() ? EXIT_DONE : fail(why);
}

} // namespace

void add_patch_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("patch", "Load a patch file and run it until interrupted");
    auto o = std::make_shared<patch_options>();
    c->add_option("FILE", o->file, "The patch; - for standard input")->required();
    CLI::Option* const virtual_time =
        c->add_option("--for", o->duration, "Run it for this many milliseconds of virtual time, at once")
            ->check(WHOLE_FROM_0);
    c->add_option("--write-in", o->writable,
                  "Let the patch make and replace files in this folder; without it, nowhere");
    c->add_option("--memory", o->memory_mb, "At most this many megabytes for the patch's objects and events")
        ->check(CLI::Range(1, 1 << 20))
        ->capture_default_str();
    add_input_options(c, o->input, false);
    add_output_options(c, o->output, "to-");
    for (const char* live : {"--port", "--virtual", "--to-port", "--to-virtual", "--synth"})
        virtual_time->excludes(live);
    c->callback([o, &status] {
        const std::string why = why_unfit(*o);
        status = !why.empty() ? fail(why) : o->duration < 0 ? run_live(*o) : run_for(*o);
    });
}
