// app/command_list.cpp: `brisolan list`: a file's events, one a line, eight integers in parameter order.
// Layer: program.
#include <charconv>
#include <cstdio>
#include <memory>
#include <vector>

#include "app/commands.h"
#include "app/say.h"
#include "app/source.h"

namespace {

struct list_options {
    std::string file;
    int import_option = 0;
};

// Lines are gathered and written a piece at a time.
constexpr std::size_t PIECE = 65536;
constexpr std::size_t LONGEST_LINE = NPARAMS * 12;

// No more of them once standard output takes no more.
void write_events(const brisolan* x) {
    std::vector<char> piece(PIECE + LONGEST_LINE);
    char* at = piece.data();
    bool taken = true;
    const auto flush = [&] {
        print_text({piece.data(), static_cast<std::size_t>(at - piece.data())});
        at = piece.data();
        taken = flush_output();
    };
    for (const event* e = x->events; e && taken; e = e->next) {
        for (int i = 0; i < NPARAMS; ++i) {
            at = std::to_chars(at, at + 12, event_param(*e, i)).ptr;
            *at++ = i == NPARAMS - 1 ? '\n' : ' ';
        }
        if (at >= piece.data() + PIECE) flush();
    }
    flush();
}

int run_list(const list_options& o) {
    headless_session session;
    brisolan* x = session.make();
    if (const std::string why = read_into(session, x, o.file, o.import_option); !why.empty()) {
        return fail(why);
    }
    write_events(x);
    return EXIT_DONE;
}

} // namespace

void add_list_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand(
        "list", "Print a file's events, one a line: time pitch vel dur chan track x1 x2");
    auto o = std::make_shared<list_options>();
    c->add_option("FILE", o->file, "A MIDI file or document; - for standard input")->required();
    c->add_option("--import-option", o->import_option,
                  "MIDI times: 0 by the file's tempo, other numbers half the ticks as milliseconds");
    c->callback([o, &status] { status = run_list(*o); });
}
