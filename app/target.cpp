// app/target.cpp: writing an instance's sequence to a file for a command.
// Layer: program.
#include "app/target.h"

#include <unistd.h>

#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/kernel.h"
#include "io/midiwrite.h"

namespace {

// As "write" chooses by itself, but not where that would leave notes out.
bool wants_tracks(const brisolan* x) {
    std::int32_t count = 0;
    std::int32_t highest = 0;
    brisolan_counttracks(x, &count, &highest);
    return highest >= 2 && tracks_hold_all(x);
}

} // namespace

std::string why_kept(const std::string& file, bool force) {
    return !force && access(file.c_str(), F_OK) == 0 ? file + ": exists; --force replaces it" : "";
}

// Notes below track 1 or above the highest that is counted, which the parameter's range limits, are on none.
bool tracks_hold_all(const brisolan* x) {
    std::int32_t count = 0;
    std::int32_t highest = 0;
    brisolan_counttracks(x, &count, &highest);
    const event* e = x->events;
    while (e && e->track >= 1 && e->track <= highest) e = e->next;
    return !e;
}

std::string write_from(std::function<void(const std::string&)>& console, brisolan* x,
                       const write_target& to) {
    kel_file_allow(to.file);
    std::string error;
    const std::function<void(const std::string&)> before = console;
    console = [&error](const std::string& line) {
        constexpr std::string_view prefix = "error ";
        if (error.empty() && line.starts_with(prefix)) error = line.substr(prefix.size());
    };
    if (to.type == TYPE_MIDI) {
        const int format = to.format >= 0 ? to.format : wants_tracks(x) ? 1 : 0;
        const atom arguments[] = {atom(host_symbol(to.file.c_str())), atom(to.timecode ? 1 : 0),
                                  atom(format)};
        kel_send(x, host_symbol("export"), arguments);
        kel_run_queue();
    } else {
        x->window->save_format = to.type == TYPE_KELB ? 1 : 0;
        const host_err code = kel_private<"saveto">(x, to.file.c_str(), host_default_path());
        if (code && error.empty()) error = "can't write " + to.file + ": " + kel_filereason(code);
    }
    console = before;
    return error;
}
