// app/command_convert.cpp: `brisolan convert`: any readable kind into any writable kind.
// Layer: program.
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>

#include "app/commands.h"
#include "app/pipes.h"
#include "app/say.h"
#include "app/source.h"
#include "app/target.h"
#include "host/kernel/files.h"

namespace {

struct convert_options {
    std::string in;
    std::string out;
    std::string to; // the kind, for standard output
    std::string time_base = "metrical";
    int format = -1; // -1: 1 when there is more than one track
    int import_option = 0;
    bool force = false;
};

// The kind of file to write: as --to says, else by the name's ending; 0 for none.
file_type target_type(const convert_options& o) {
    static const std::map<std::string, file_type> kinds{
        {"mid", TYPE_MIDI}, {"kel", TYPE_TEXT}, {"kelb", TYPE_KELB}};
    if (!o.to.empty()) return kinds.at(o.to);
    return kel_typeofname(o.out.c_str());
}

const char* ending(file_type type) {
    return type == TYPE_MIDI ? "out.mid" : type == TYPE_TEXT ? "out.kel" : "out.kelb";
}

int run_convert(const convert_options& o) {
    const bool to_pipe = o.out == "-";
    const file_type type = target_type(o);
    if (!type) {
        return misuse(to_pipe ? std::string("--to mid, kel or kelb is wanted for standard output")
                              : o.out + ": " + WANTED_ENDINGS);
    }
    if (const std::string why = to_pipe ? "" : why_kept(o.out, o.force); !why.empty()) return fail(why);
    headless_session session;
    brisolan* x = session.make();
    if (const std::string why = read_into(session, x, o.in, o.import_option); !why.empty()) {
        return fail(why);
    }
    const std::string why = write_out(o.out, ending(type), [&](const std::string& file) {
        return write_from(session.machine.print, x, {file, type, o.time_base == "timecode", o.format});
    });
    return why.empty() ? EXIT_DONE : fail(why);
}

} // namespace

void add_convert_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("convert", "Turn any readable kind of file into any writable kind");
    auto o = std::make_shared<convert_options>();
    c->add_option("IN", o->in, "A MIDI file or document; - for standard input")->required();
    c->add_option("OUT", o->out, "The file to write, its kind told by the ending; - for standard output")
        ->required();
    c->add_option("--to", o->to, "The kind to write, whatever the name")
        ->check(CLI::IsMember({"mid", "kel", "kelb"}));
    c->add_option("--time-base", o->time_base,
                  "MIDI: metrical (96 ticks a quarter) or timecode (2 ticks a millisecond)")
        ->check(CLI::IsMember({"metrical", "timecode"}));
    c->add_option("--format", o->format,
                  "MIDI: 0 for one track, 1 for a track each; left out, as the tracks need")
        ->check(CLI::Range(0, 1));
    c->add_option("--import-option", o->import_option,
                  "Reading MIDI: 0 by the file's tempo, other numbers half the ticks as milliseconds");
    c->add_flag("--force", o->force, "Replace a file that exists");
    c->callback([o, &status] { status = run_convert(*o); });
}
