// app/command_play.cpp: `brisolan play`: a file played in time to a MIDI port, the synth or the terminal alone, or as
// sound into a file.
// Layer: program.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/commands.h"
#include "app/devices.h"
#include "app/live.h"
#include "app/note_view.h"
#include "app/pipes.h"
#include "app/play_patch.h"
#include "app/say.h"
#include "app/source.h"
#include "app/target.h"
#include "host/boxes/midi_device.h"
#include "host/desktop/synth.h"

namespace {

struct play_options {
    std::string file;
    double speed = 1;
    std::int32_t from = 0;
    bool quiet = false;
    int import_option = 0;
    output_wish output;
    std::string wav;
    bool force = false;
};

constexpr int DRAW_EVERY_MS = 40;
constexpr int SIGNAL_STATUS = 128; // added to a signal's number, as shells do

// What has died away by then is not waited for any longer.
constexpr kel_time LONGEST_TAIL = 10'000 * NS_PER_MS;

// The piece was not played to its end, so that what a script has to do after it is not done either.
int status_of(const live_session& session) {
    return session.signal() ? SIGNAL_STATUS + session.signal() : EXIT_DONE;
}

// Whatever the patch did: no note is left sounding.
void end_notes() {
    const host_locked_out now;
    midi_silence();
}

// Plays until the last note has ended or a signal came; then whatever still sounds is ended.
int play_through(live_session& session, const brisolan* score, note_view& view, note_outputs& outputs) {
    while (!session.signal() && !playing_is_over(score)) {
        session.wait(DRAW_EVERY_MS);
        outputs.poll();
        view.draw();
    }
    tell("halt", "bang");
    end_notes();
    view.draw();
    const kel_time end = kel_now() + LONGEST_TAIL;
    while (!session.signal() && outputs.ringing() && kel_now() < end) session.wait(DRAW_EVERY_MS);
    return status_of(session);
}

// The same in virtual time, into the file that hears it.
int render_through(const live_session& session, const brisolan* score, synth_render& render) {
    while (!session.signal() && !playing_is_over(score)) kel_advance(kel_next_due());
    if (session.signal()) return status_of(session);
    tell("halt", "bang");
    const std::string why = render.finish();
    return why.empty() ? EXIT_DONE : fail(why);
}

// The same from its beginning, where the asked sound font is to be had.
int render_into(const live_session& session, brisolan* score, const play_options& o,
                const std::string& file) {
    std::string why;
    const std::unique_ptr<synth_render> render = synth_render_open(o.output.soundfont, file, why);
    if (!render) return fail(why);
    start_playing(score, o.from, o.speed);
    return render_through(session, score, *render);
}

// Opens what the notes are to go to. Asked for nothing, tries the synth, and goes on without it.
std::string open_outputs(note_outputs& outputs, const play_options& o) {
    if (o.output.any()) return outputs.open(o.output);
    output_wish synth = o.output;
    synth.synth = true;
    const std::string why = outputs.open(synth);
    if (!why.empty() && !o.output.soundfont.empty()) return why;
    if (!why.empty()) say("no sound: " + why);
    return "";
}

// Why there is nothing to play, in one line; empty when there is something.
std::string read_score(live_session& session, brisolan* score, const play_options& o) {
    if (const std::string why = read_into(session.print, score, o.file, o.import_option); !why.empty())
        return why;
    if (first_note_from(score, o.from)) return "";
    return (o.file == "-" ? "standard input" : o.file) + ": " +
           (score->events ? "nothing begins at or after " + std::to_string(o.from) + " ms"
                          : "there is no note in it");
}

int play_score(live_session& session, brisolan* score, const play_options& o) {
    if (const std::string why = read_score(session, score, o); !why.empty()) return fail(why);
    note_outputs outputs;
    if (const std::string why = open_outputs(outputs, o); !why.empty()) return fail(why);
    const std::int64_t length = score_length(score);
    note_view view(note_style_here(o.quiet));
    session.print = [&view](const std::string& line) {
        view.clear();
        say_console(line);
    };
    session.catch_signals();
    {
        const kel_moment begin; // what is shown counts from where the waits do
        view.begin(o.from, o.speed, length);
        start_playing(score, o.from, o.speed);
    }
    return play_through(session, score, view, outputs);
}

int render_score(live_session& session, brisolan* score, const play_options& o) {
    const bool to_pipe = o.wav == "-";
    if (const std::string kept = to_pipe ? "" : why_kept(o.wav, o.force); !kept.empty()) return fail(kept);
    if (const std::string why = read_score(session, score, o); !why.empty()) return fail(why);
    session.catch_signals();
    if (!to_pipe) return render_into(session, score, o, o.wav);
    std::string why;
    spooled_output spool("out.wav", why);
    if (!why.empty()) return fail("standard output: " + why);
    if (const int status = render_into(session, score, o, spool.path()); status != EXIT_DONE) return status;
    why = spool.copy_out();
    return why.empty() ? EXIT_DONE : fail("standard output: " + why);
}

// What is no number is not beyond a range's ends either.
std::string not_a_nan(const std::string& word) {
    return std::isnan(std::strtod(word.c_str(), nullptr)) ? "Value " + word + " is not a number" : "";
}

int run_play(const play_options& o) {
    live_session session(o.wav.empty() ? kel_timing::real_time : kel_timing::virtual_time);
    host_patcher* patcher = nullptr;
    std::string why;
    session.print = say_console;
    brisolan* const score = load_own_patch("play", &patcher, why);
    const int status = !score          ? fail(why)
                       : o.wav.empty() ? play_score(session, score, o)
                                       : render_score(session, score, o);
    session.print = nullptr;
    kel_patcher_free(patcher);
    return status;
}

} // namespace

void add_play_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("play", "Play a file in time, or render it as sound");
    auto o = std::make_shared<play_options>();
    c->add_option("FILE", o->file, "A MIDI file or document; - for standard input")->required();
    c->add_option("--speed", o->speed, "How fast, 1 being as written")
        ->check(CLI::Range(0.25, 4.0))
        ->check(not_a_nan);
    c->add_option("--from", o->from, "Begin at this many milliseconds")->check(INT_FROM_0);
    c->add_flag("--quiet", o->quiet, "Show nothing while it plays");
    c->add_option("--import-option", o->import_option,
                  "MIDI times: 0 by the file's tempo, other numbers half the ticks as milliseconds");
    add_output_options(c, o->output);
    CLI::Option* const wav = c->add_option(
        "--wav", o->wav, "Render the sound to this WAV file, faster than real time; - for standard output");
    for (const char* other : {"--port", "--virtual", "--synth"}) wav->excludes(other);
    c->add_flag("--force", o->force, "Replace a file that exists")->needs(wav);
    c->callback([o, &status] { status = run_play(*o); });
}
