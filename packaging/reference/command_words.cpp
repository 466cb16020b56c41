// packaging/reference/command_words.cpp: reads commands and options off the program's own parser.
// Layer: a tool of the build.
#include "packaging/reference/command_words.h"

#include <algorithm>

#include "app/commands.h"

namespace {

bool mentions(const std::string& text, const char* word) {
    return text.find(word) != std::string::npos;
}

// The words between braces, "TEXT:{mid,kel,kelb}", parted by commas.
std::vector<std::string> choices_in(const std::string& type) {
    const std::size_t begin = type.find('{');
    const std::size_t end = type.find('}');
    std::vector<std::string> all;
    if (begin == std::string::npos || end == std::string::npos) return all;
    std::string word;
    for (const char c : type.substr(begin + 1, end - begin - 1) + ",") {
        if (c != ',') {
            word += c;
            continue;
        }
        all.push_back(word);
        word.clear();
    }
    return all;
}

// "0 to 4" of "INT:INT in [0 - 4]".
std::string range_in(const std::string& type) {
    if (mentions(type, ":NONNEGATIVE")) return "0 or more";
    if (mentions(type, ":POSITIVE")) return "above 0";
    const std::size_t begin = type.find('[');
    const std::size_t end = type.find(']');
    if (begin == std::string::npos || end == std::string::npos) return "";
    std::string range = type.substr(begin + 1, end - begin - 1);
    if (const std::size_t dash = range.find(" - "); dash != std::string::npos) range.replace(dash, 3, " to ");
    return range;
}

std::string joined(const std::vector<std::string>& words, const char* between) {
    std::string text;
    for (const std::string& w : words) text += (text.empty() ? "" : between) + w;
    return text;
}

// What a value is, by its type and by the words that tell of it: a file or a port is told of as one.
void find_value(option_words& o, const std::string& type) {
    o.choices = choices_in(type);
    o.range = range_in(type);
    if (!o.choices.empty()) {
        o.what = takes::choice;
        o.placeholder = joined(o.choices, "|");
    } else if (type.starts_with("INT") || type.starts_with("FLOAT")) {
        o.what = takes::number;
        o.placeholder = type.starts_with("INT") ? "N" : "X";
    } else if (mentions(o.purpose, "MIDI output:")) {
        o.what = takes::out_port;
        o.placeholder = "PORT";
    } else if (mentions(o.purpose, "MIDI input:")) {
        o.what = takes::in_port;
        o.placeholder = "PORT";
    } else if (o.positional || mentions(o.purpose, " file")) {
        o.what = takes::file;
        o.placeholder = o.positional ? o.names.front() : "FILE";
    } else {
        o.what = takes::text;
        o.placeholder = "TEXT";
    }
}

option_words words_of(const CLI::Option& from) {
    option_words o;
    o.positional = from.get_positional() && from.get_lnames().empty() && from.get_snames().empty();
    if (o.positional) o.names.push_back(from.get_name());
    for (const std::string& name : from.get_snames()) o.names.push_back("-" + name);
    for (const std::string& name : from.get_lnames()) o.names.push_back("--" + name);
    o.purpose = from.get_description();
    o.required = from.get_required();
    o.many = from.get_items_expected_max() > 1;
    o.default_value = from.get_default_str();
    if (from.get_items_expected_max() > 0) find_value(o, from.get_type_name());
    return o;
}

const auto every_command = [](const CLI::App*) { return true; };

// An option group is a nameless command inside the command: its options are the command's own.
void add_options(command_words& c, const CLI::App& from) {
    for (const CLI::Option* o : from.get_options()) c.options.push_back(words_of(*o));
    for (const CLI::App* group : from.get_subcommands(every_command)) {
        if (!group->get_name().empty()) continue;
        const std::size_t first = c.options.size();
        add_options(c, *group);
        std::vector<std::string> names;
        for (std::size_t i = first; i < c.options.size(); ++i) names.push_back(c.options[i].names.back());
        if (group->get_require_option_max() == 1)
            c.one_of.push_back((group->get_require_option_min() == 1 ? "One of " : "At most one of ") +
                               joined(names, ", ") +
                               (group->get_require_option_min() == 1 ? " is needed." : " can be given."));
    }
}

command_words words_of(const CLI::App& from) {
    command_words c;
    c.name = from.get_name();
    c.purpose = from.get_description();
    add_options(c, from);
    return c;
}

} // namespace

bool command_words::takes_files() const {
    return std::any_of(options.begin(), options.end(),
                       [](const option_words& o) { return o.positional && o.what == takes::file; });
}

program_words words_of_program() {
    int status = 0;
    CLI::App program("", "brisolan");
    set_up_command_line(program, status);
    program_words all;
    all.itself = words_of(program);
    for (const CLI::App* command : program.get_subcommands(every_command)) {
        if (!command->get_name().empty()) all.commands.push_back(words_of(*command));
    }
    all.version = BRISOLAN_VERSION;
    return all;
}
