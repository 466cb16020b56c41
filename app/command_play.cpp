// app/command_play.cpp: `brisolan play`: a file played in time, on the terminal.
// Layer: program.
#include <cstdio>
#include <memory>

#include "app/commands.h"
#include "app/live.h"
#include "app/note_view.h"
#include "app/play_patch.h"
#include "app/source.h"

namespace {

struct play_options {
    std::string file;
    double speed = 1;
    std::int32_t from = 0;
    bool quiet = false;
    int import_option = 0;
};

constexpr int DRAW_EVERY_MS = 40;
constexpr int SIGNAL_STATUS = 128; // added to a signal's number, as shells do

int fail(const std::string& why) {
    std::fprintf(stderr, "%s\n", why.c_str());
    return EXIT_FAILED;
}

// Plays until the last note has ended or a signal came; then whatever still sounds is ended.
int play_through(live_session& session, const brisolan* score, note_view& view) {
    while (!session.signal() && !playing_is_over(score)) {
        session.wait(DRAW_EVERY_MS);
        view.draw();
    }
    tell("halt", "bang");
    view.draw();
    // The piece was not played to its end, so that what a script has to do after it is not done either.
    return session.signal() ? SIGNAL_STATUS + session.signal() : EXIT_DONE;
}

int play_score(live_session& session, brisolan* score, const play_options& o) {
    if (const std::string why = read_into(session.print, score, o.file, o.import_option); !why.empty())
        return fail(why);
    const std::int64_t length = score_length(score);
    note_view view(note_style_here(o.quiet));
    session.print = [&view](const std::string& line) {
        view.clear();
        std::fprintf(stderr, "brisolan: %s\n", line.c_str());
    };
    session.catch_signals();
    view.begin(o.from, o.speed, length);
    if (!start_playing(score, o.from, o.speed)) {
        return fail("brisolan: " + o.file + ": " +
                    (score->events ? "nothing begins at or after " + std::to_string(o.from) + " ms"
                                   : "there is no note in it"));
    }
    return play_through(session, score, view);
}

int run_play(const play_options& o) {
    live_session session;
    host_patcher* patcher = nullptr;
    std::string why;
    session.print = [](const std::string& line) { std::fprintf(stderr, "brisolan: %s\n", line.c_str()); };
    brisolan* const score = load_own_patch("play", &patcher, why);
    const int status = score ? play_score(session, score, o) : fail(why);
    session.print = nullptr;
    kel_patcher_free(patcher);
    return status;
}

} // namespace

void add_play_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("play", "Play a file in time, on the terminal");
    auto o = std::make_shared<play_options>();
    c->add_option("FILE", o->file, "A MIDI file or document; - for standard input")->required();
    c->add_option("--speed", o->speed, "How fast, 1 being as written")->check(CLI::Range(0.25, 4.0));
    c->add_option("--from", o->from, "Begin at this many milliseconds")->check(CLI::NonNegativeNumber);
    c->add_flag("--quiet", o->quiet, "Show nothing while it plays");
    c->add_option("--import-option", o->import_option,
                  "MIDI times: 0 by the file's tempo, other numbers half the ticks as milliseconds");
    c->callback([o, &status] { status = run_play(*o); });
}
