// packaging/reference/fish.cpp: completion in fish.
// Layer: a tool of the build.
#include "packaging/reference/writers.h"

namespace {

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') out += '\\';
        out += c;
    }
    return out + "'";
}

// What may follow: -x wants a value that is no file, -r one that may be.
std::string value_of(const option_words& o) {
    switch (o.what) {
    case takes::nothing: return "";
    case takes::file: return " -r -F";
    case takes::in_port: return " -x -a '(__brisolan_ports in)'";
    case takes::out_port: return " -x -a '(__brisolan_ports out)'";
    case takes::choice: {
        std::string words;
        for (const std::string& word : o.choices) words += (words.empty() ? "" : " ") + word;
        return " -x -a " + quoted(words);
    }
    default: return " -x";
    }
}

std::string rows(const command_words& c, const std::string& when) {
    std::string text;
    for (const option_words& o : c.options) {
        if (o.positional) continue;
        text += "complete -c brisolan -n " + quoted(when);
        for (const std::string& name : o.names)
            text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        text += value_of(o) + " -d " + quoted(o.purpose) + "\n";
    }
    if (c.takes_files()) text += "complete -c brisolan -n " + quoted(when) + " -F\n";
    return text;
}

} // namespace

std::string fish_completion(const program_words& program) {
    std::string text = "# fish completion for brisolan; made by its build from the program's own options\n\n"
                       "function __brisolan_ports\n"
                       "    brisolan ports 2>/dev/null | string replace -rf \"^$argv[1] \\d+ \\S+ \" ''\n"
                       "end\n\ncomplete -c brisolan -f\n" +
                       rows(program.itself, "__fish_use_subcommand") +
                       "complete -c brisolan -n __fish_use_subcommand -F\n"; // as `brisolan edit`
    for (const command_words& c : program.commands) {
        text += "complete -c brisolan -n __fish_use_subcommand -a " + c.name + " -d " + quoted(c.purpose) +
                "\n" + rows(c, "__fish_seen_subcommand_from " + c.name);
    }
    return text;
}
