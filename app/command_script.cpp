// app/command_script.cpp: `brisolan script`: a script's lines carried out, everything observable printed.
// Layer: program.
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>

#include "app/commands.h"
#include "app/script.h"

namespace {

struct script_options {
    std::string name;
    std::string file = "-";
};

int run_lines(std::istream& in, const std::string& name) {
    script_runner runner(name, [](const std::string& line) {
        std::fwrite(line.data(), 1, line.size(), stdout);
        std::fputc('\n', stdout);
    });
    std::fflush(stdout);
    std::string line;
    for (long number = 1; std::getline(in, line); ++number) {
        const std::string why = runner.run(line);
        std::fflush(stdout);
        if (why.empty()) continue;
        std::fprintf(stderr, "script: line %ld: %s\n", number, why.c_str());
        return EXIT_MISUSE;
    }
    return EXIT_DONE;
}

int run_script(const script_options& o) {
    if (o.file == "-") return run_lines(std::cin, o.name);
    std::ifstream in(o.file);
    if (!in || in.peek() == std::ifstream::traits_type::eof()) {
        if (in.eof() && !in.bad()) return EXIT_DONE;
        std::fprintf(stderr, "brisolan: can't read %s: %s\n", o.file.c_str(), std::strerror(errno));
        return EXIT_FAILED;
    }
    return run_lines(in, o.name);
}

} // namespace

void add_script_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("script", "Carry out the lines of a script in virtual time");
    auto o = std::make_shared<script_options>();
    c->add_option("--name", o->name, "The name of the instance that the script begins with");
    c->add_option("FILE", o->file, "The script; - or none: standard input");
    c->callback([o, &status] { status = run_script(*o); });
}
