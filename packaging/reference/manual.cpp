// packaging/reference/manual.cpp: the manual page.
// Layer: a tool of the build.
#include "core/class.h"
#include "packaging/reference/writers.h"

namespace {

// A text as man prints it to the letter.
std::string plain(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else if (c == '`')
            out += '\'';
        else
            out += c;
    }
    // A line that begins so would be a request.
    return out.starts_with('.') || out.starts_with('\'') ? "\\&" + out : out;
}

std::string bold(const std::string& text) {
    return "\\fB" + plain(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + plain(text) + "\\fR";
}

std::string entry(const option_words& o) {
    std::string names;
    if (o.positional) {
        names = italic(o.names.front());
    } else {
        for (const std::string& name : o.names) names += (names.empty() ? "" : ", ") + bold(name);
        if (o.what == takes::choice)
            names += " " + plain(o.placeholder);
        else if (o.what != takes::nothing)
            names += " " + italic(o.placeholder);
    }
    std::string text = plain(o.purpose);
    if (!o.range.empty()) text += "; " + plain(o.range);
    if (!o.default_value.empty()) text += "; " + plain(o.default_value) + " when not given";
    return ".TP\n" + names + "\n" + text + ".\n";
}

std::string synopsis(const command_words& c) {
    std::string line = bold("brisolan " + c.name) + " [" + italic("options") + "]";
    for (const option_words& o : c.options) {
        if (!o.positional) continue;
        const std::string name = italic(o.names.front()) + (o.many ? "..." : "");
        line += o.required ? " " + name : " [" + name + "]";
    }
    return line + "\n";
}

std::string options(const command_words& c) {
    std::string text;
    for (const option_words& o : c.options) {
        if (o.positional) text += entry(o);
    }
    for (const option_words& o : c.options) {
        if (!o.positional) text += entry(o);
    }
    return text;
}

std::string command(const command_words& c) {
    std::string text = ".SS " + plain(c.name) + "\n" + synopsis(c) + ".PP\n" + plain(c.purpose) + ".\n";
    for (const std::string& sentence : c.one_of) text += plain(sentence) + "\n";
    return text + options(c);
}

std::string arguments(const message_entry& m) {
    std::string text;
    for (const arg_word word : m.handler.words) {
        if (word == ARG_NONE) break;
        const bool optional = word == ARG_DEFLONG || word == ARG_DEFSYM;
        const char* const kind = word == ARG_LIST                        ? "anything"
                                 : word == ARG_FLOAT                     ? "float"
                                 : word == ARG_SYM || word == ARG_DEFSYM ? "symbol"
                                                                         : "integer";
        text += " " + (optional ? "[" + italic(kind) + "]" : italic(kind));
    }
    return text;
}

// What a patch may send, in the order of the table that the object is registered with.
std::string messages() {
    std::string text;
    for (const message_entry& m : brisolan_messages()) {
        if (m.handler.words[0] == ARG_PRIVATE) continue;
        text += ".TP\n" + bold(m.name) + arguments(m) + "\n" + plain(m.purpose) + ".\n";
    }
    return text;
}

void replace(std::string& text, const std::string& word, const std::string& by) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size()))
        text.replace(at, word.size(), by);
}

} // namespace

std::string manual_page(const program_words& program, const std::string& page) {
    std::string commands;
    for (const command_words& c : program.commands) commands += command(c);
    std::string text = page;
    replace(text, "@OPTIONS@\n", options(program.itself));
    replace(text, "@COMMANDS@\n", commands);
    replace(text, "@MESSAGES@\n", messages());
    replace(text, "@VERSION@", program.version);
    return text;
}
