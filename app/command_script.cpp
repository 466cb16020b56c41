// app/command_script.cpp: `brisolan script`: a script's lines carried out, everything observable printed.
// Layer: program.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "app/commands.h"
#include "app/say.h"
#include "app/script.h"

namespace {

struct script_options {
    std::string name;
    std::string file = "-";
};

std::string unread(const std::string& shown, int why) {
    return "can't read " + shown + ": " + std::strerror(why);
}

// The lines of a file, which stays open.
class script_lines {
public:
    explicit script_lines(FILE* from) : in(from) {}
    ~script_lines() { std::free(text); }
    script_lines(const script_lines&) = delete;
    script_lines& operator=(const script_lines&) = delete;

    // False at the end, or when it cannot be read.
    bool next(std::string& line) {
        const ssize_t n = getline(&text, &room, in);
        if (n < 0) failure = std::ferror(in) ? errno : 0;
        if (n < 0) return false;
        line.assign(text, static_cast<std::size_t>(text[n - 1] == '\n' ? n - 1 : n));
        return true;
    }

    // Why they could not be read, as errno.
    int failed() const { return failure; }

private:
    FILE* in;
    int failure = 0;
    char* text = nullptr;
    std::size_t room = 0;
};

int run_lines(FILE* in, const std::string& shown, const std::string& name) {
    script_runner runner(name, print_line);
    script_lines lines(in);
    std::string line;
    for (long number = 1; flush_output() && lines.next(line); ++number) {
        const std::string why = runner.run(line);
        if (why.empty()) continue;
        std::fprintf(stderr, "script: line %ld: %s\n", number, one_line(why).c_str());
        return EXIT_MISUSE;
    }
    return lines.failed() ? fail(unread(shown, lines.failed())) : EXIT_DONE;
}

int run_script(const script_options& o) {
    const bool from_pipe = o.file == "-";
    const std::string shown = from_pipe ? "standard input" : o.file;
    FILE* const in = from_pipe ? stdin : std::fopen(o.file.c_str(), "rb");
    if (!in) return fail(unread(shown, errno));
    const int status = run_lines(in, shown, o.name);
    if (!from_pipe) std::fclose(in);
    return status;
}

} // namespace

void add_script_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("script", "Carry out the lines of a script in virtual time");
    auto o = std::make_shared<script_options>();
    c->add_option("--name", o->name, "The name of the instance that the script begins with");
    c->add_option("FILE", o->file, "The script; - or none: standard input");
    c->callback([o, &status] { status = run_script(*o); });
}
