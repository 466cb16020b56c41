// packaging/reference/zsh.cpp: completion in zsh.
// Layer: a tool of the build.
#include "packaging/reference/writers.h"

namespace {

// Inside single quotes and an _arguments specification, where brackets and colons mean something.
std::string quoted(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\'')
            out += "'\\''";
        else if (c == '[' || c == ']' || c == ':' || c == '\\')
            out += std::string("\\") + c;
        else
            out += c;
    }
    return out;
}

std::string action(const option_words& o) {
    switch (o.what) {
    case takes::file: return "_files";
    case takes::in_port: return "{_brisolan_ports in}";
    case takes::out_port: return "{_brisolan_ports out}";
    case takes::choice: {
        std::string words;
        for (const std::string& word : o.choices) words += (words.empty() ? "(" : " ") + word;
        return words + ")";
    }
    default: return "";
    }
}

std::string specification(const option_words& o, int place) {
    std::string text;
    if (o.positional) {
        const std::string at = o.many ? "*" : std::to_string(place);
        return "'" + at + ":" + quoted(o.names.front()) + ":" + action(o) + "' ";
    }
    for (const std::string& name : o.names) {
        text += "'" + name + "[" + quoted(o.purpose) + "]";
        if (o.what != takes::nothing) text += ":" + quoted(o.placeholder) + ":" + action(o);
        text += "' ";
    }
    return text;
}

std::string specifications(const command_words& c) {
    std::string text;
    int place = 0;
    for (const option_words& o : c.options) text += specification(o, o.positional ? ++place : 0);
    return text;
}

} // namespace

std::string zsh_completion(const program_words& program) {
    std::string commands;
    std::string rows;
    for (const command_words& c : program.commands) {
        commands += "            '" + c.name + ":" + quoted(c.purpose) + "'\n";
        rows += "        " + c.name + ") _arguments " + specifications(c) + ";;\n";
    }
    return "#compdef brisolan\n# made by brisolan's build from the program's own options\n\n"
           "_brisolan_ports() {\n    local -a names\n"
           "    names=(${(f)\"$(brisolan ports 2>/dev/null | sed -n \"s/^$1 [0-9]* [^ ]* //p\")\"})\n"
           "    compadd -a names\n}\n\n_brisolan() {\n    local context state line\n    typeset -A opt_args\n"
           "    _arguments -C " +
           specifications(program.itself) +
           "'1: :->command' '*:: :->rest'\n    case $state in\n    command)\n        local -a commands=(\n" +
           commands +
           "        )\n        _describe command commands\n        _files\n        ;;\n    rest)\n        "
           "case $words[1] "
           "in\n" +
           rows + "        esac\n        ;;\n    esac\n}\n\n_brisolan \"$@\"\n";
}
