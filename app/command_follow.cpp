// app/command_follow.cpp: `brisolan follow`: a score follows a player, or a performance in virtual time.
// Layer: program.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>

#include "app/commands.h"
#include "app/devices.h"
#include "app/live.h"
#include "app/part.h"
#include "app/performance.h"
#include "app/play_patch.h"
#include "app/say.h"
#include "app/source.h"
#include "host/boxes/midi_device.h"

namespace {

struct follow_options {
    std::string score;
    std::string performance;
    std::int32_t skip = 2;
    std::int32_t window = 150;
    bool octaves = false;
    std::int32_t part = 0; // 0: the score's own channel 1
    bool json = false;
    input_wish input;
    output_wish output;
};

constexpr int LOOK_EVERY_MS = 50;
constexpr std::int32_t LARGEST_ALLOWANCE = 32767; // what the object keeps of a skip or a window

std::string tracks_of(const brisolan* x) {
    std::set<std::int32_t> tracks;
    for (const event* e = x->events; e; e = e->next) tracks.insert(e->track);
    std::string text;
    for (const std::int32_t t : tracks) text += (text.empty() ? "" : ", ") + std::to_string(t);
    return text;
}

// An empty string, or why there is nothing to follow.
std::string choose_part(brisolan* score, const follow_options& o) {
    if (!score->events) return "there is no note in it";
    if (o.part) {
        if (give_part(score, o.part)) return "";
        return "no notes on track " + std::to_string(o.part) + "; its tracks are " + tracks_of(score);
    }
    if (has_part(score)) return "";
    return "no notes on channel 1 to follow; choose the performer's track with --part, of " +
           tracks_of(score);
}

void print_outputs(const std::vector<follow_output>& outputs) {
    for (const follow_output& o : outputs) {
        std::printf("%lld %s %d %d %d %d\n", static_cast<long long>(o.ms), name_of(o.kind),
                    static_cast<int>(o.pitch), static_cast<int>(o.vel), static_cast<int>(o.dur),
                    static_cast<int>(o.chan));
    }
}

void print_summary(const follow_summary& s) {
    std::printf("notes matched: %lld of %lld\nplayed late: %lld\nnever matched: %lld\n"
                "accompaniment played: %lld of %lld\nwrong notes: %lld\n",
                static_cast<long long>(s.matched), static_cast<long long>(s.performer_notes),
                static_cast<long long>(s.late), static_cast<long long>(s.never()),
                static_cast<long long>(s.accompaniment), static_cast<long long>(s.accompaniment_notes),
                static_cast<long long>(s.wrong));
}

void print_json(const follow_report& r) {
    std::printf("{\"outputs\": [");
    const char* between = "\n";
    for (const follow_output& o : r.outputs) {
        std::printf(
            "%s  {\"time\": %lld, \"kind\": \"%s\", \"pitch\": %d, \"vel\": %d, \"dur\": %d, \"chan\": %d}",
            between, static_cast<long long>(o.ms), name_of(o.kind), static_cast<int>(o.pitch),
            static_cast<int>(o.vel), static_cast<int>(o.dur), static_cast<int>(o.chan));
        between = ",\n";
    }
    const follow_summary& s = r.summary;
    std::printf("\n], \"summary\": {\"performer_notes\": %lld, \"matched\": %lld, \"late\": %lld, \"never\": "
                "%lld, \"accompaniment_notes\": %lld, \"accompaniment\": %lld, \"wrong\": %lld}}\n",
                static_cast<long long>(s.performer_notes), static_cast<long long>(s.matched),
                static_cast<long long>(s.late), static_cast<long long>(s.never()),
                static_cast<long long>(s.accompaniment_notes), static_cast<long long>(s.accompaniment),
                static_cast<long long>(s.wrong));
}

// Empty, or why the score cannot follow; it does from now on.
std::string begin_following(brisolan* score, const follow_options& o) {
    if (const std::string why = choose_part(score, o); !why.empty()) return o.score + ": " + why;
    tell("score", "params", {atom(o.skip), atom(o.window), atom(o.octaves ? 1 : 0)});
    return tell("go", "bang") ? "" : "the follow patch receives no \"go\"";
}

std::string follow_performance(headless& machine, brisolan* score, brisolan* performance,
                               const follow_options& o) {
    if (std::string why = read_into(machine.print, score, o.score); !why.empty()) return why;
    if (std::string why = read_into(machine.print, performance, o.performance); !why.empty()) return why;
    if (std::string why = begin_following(score, o); !why.empty()) return why;
    const follow_report report = perform(score, keys_of(performance));
    tell("halt", "bang");
    if (o.json) {
        print_json(report);
    } else {
        print_outputs(report.outputs);
        print_summary(report.summary);
    }
    return "";
}

int run_performance(const follow_options& o) {
    headless machine;
    headless_start(&machine);
    machine.print = say_console;
    host_patcher* patcher = nullptr;
    std::string why;
    brisolan* const score = load_own_patch("follow", &patcher, why);
    host_patcher* const stage = kel_patcher_new();
    kel_patcher_build(stage);
    auto* const performance = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {}));
    if (score) why = follow_performance(machine, score, performance, o);
    kel_patcher_free(stage);
    kel_patcher_free(patcher);
    machine.print = nullptr;
    headless_end();
    return why.empty() ? EXIT_DONE : fail(why);
}

// Whether the score has been played to its end and every note of it has ended.
bool following_is_over(const brisolan* score) {
    const host_locked_out now;
    return !score->current && !score->held && kel_next_due() < 0;
}

// Follows until the end of the score or a signal; what came out is printed as it comes, or all at the end.
follow_report follow_player(live_session& session, brisolan* score, live_performance& player,
                            note_outputs& outputs, note_input& input, bool print_at_once) {
    follow_report report;
    const auto take = [&] {
        const std::vector<follow_output> taken = player.taken();
        report.outputs.insert(report.outputs.end(), taken.begin(), taken.end());
        if (!print_at_once || taken.empty()) return;
        print_outputs(taken);
        flush_output();
    };
    while (!session.signal() && flush_output() && !following_is_over(score)) {
        session.wait(LOOK_EVERY_MS);
        outputs.poll();
        input.poll();
        take();
    }
    input.close();
    tell("halt", "bang");
    take();
    report.summary = player.summary();
    return report;
}

// A signal is the ordinary way to end it before the score has.
std::string follow_live(live_session& session, brisolan* score, const follow_options& o) {
    if (std::string why = read_into(session.print, score, o.score); !why.empty()) return why;
    note_outputs outputs;
    note_input input;
    session.catch_signals();
    if (const std::string why = outputs.open(o.output); !why.empty()) return why;
    if (std::string why = begin_following(score, o); !why.empty()) return why;
    live_performance player(score);
    if (const std::string why = input.open(o.input, {live_performance::arrived, &player}); !why.empty())
        return why;
    const follow_report report = follow_player(session, score, player, outputs, input, !o.json);
    if (player.untold()) host_error("%u outputs came too fast to be printed", player.untold());
    if (o.json)
        print_json(report);
    else
        print_summary(report.summary);
    return "";
}

int run_live(const follow_options& o) {
    live_session session;
    session.print = say_console;
    host_patcher* patcher = nullptr;
    std::string why;
    brisolan* const score = load_own_patch("follow", &patcher, why);
    if (score) why = follow_live(session, score, o);
    kel_patcher_free(patcher);
    session.print = nullptr;
    return why.empty() ? EXIT_DONE : fail(why);
}

int run_follow(const follow_options& o) {
    return o.performance.empty() ? run_live(o) : run_performance(o);
}

} // namespace

void add_follow_command(CLI::App& program, int& status) {
    CLI::App* c =
        program.add_subcommand("follow", "Follow a player with a score, and print or play what comes out");
    auto o = std::make_shared<follow_options>();
    const CLI::Range allowance(0, LARGEST_ALLOWANCE);
    c->add_option("SCORE", o->score,
                  "A MIDI file or document, - for standard input; the performer's part is channel 1")
        ->required();
    CLI::Option* const performance = add_input_options(c, o->input, true)
                                         ->add_option("--performance", o->performance,
                                                      "Follow this MIDI file or document, in virtual time");
    add_output_options(c, o->output, "to-");
    for (const char* live : {"--to-port", "--to-virtual", "--synth"})
        performance->excludes(c->get_option(live));
    c->add_option("--skip", o->skip, "How many notes of the part may be left out freely")->check(allowance);
    c->add_option("--window", o->window, "How far beyond these to look, milliseconds")->check(allowance);
    c->add_flag("--octaves", o->octaves, "A note an octave above or below counts as well");
    c->add_option("--part", o->part, "Take this track as the performer's part")->check(INT_FROM_1);
    c->add_flag("--json", o->json, "Print one JSON object");
    c->callback([o, &status] { status = run_follow(*o); });
}
