// packaging/reference/bash.cpp: completion in bash.
// Layer: a tool of the build.
#include "packaging/reference/writers.h"

namespace {

constexpr const char* HEAD =
    R"(# bash completion for brisolan; made by its build from the program's own options

_brisolan_files() {
    local IFS=$'\n'
    compopt -o filenames 2>/dev/null
    COMPREPLY+=($(compgen -f -- "$1"))
}

# Port names hold blanks, so they are quoted for the command line.
_brisolan_ports() {
    local direction number api name
    while read -r direction number api name; do
        [[ $direction == "$1" ]] || continue
        name=$(printf '%q' "$name")
        [[ $name == "$2"* ]] && COMPREPLY+=("$name")
    done < <(brisolan ports 2>/dev/null)
}

_brisolan() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command= i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        [[ ${COMP_WORDS[i]} == -* ]] && continue
        command=${COMP_WORDS[i]}
        break
    done
)";

std::string value_of(const option_words& o) {
    switch (o.what) {
    case takes::file: return "_brisolan_files \"$cur\"";
    case takes::in_port: return "_brisolan_ports in \"$cur\"";
    case takes::out_port: return "_brisolan_ports out \"$cur\"";
    case takes::choice: {
        std::string words;
        for (const std::string& word : o.choices) words += (words.empty() ? "" : " ") + word;
        return "COMPREPLY=($(compgen -W \"" + words + "\" -- \"$cur\"))";
    }
    default: return ":";
    }
}

// Behind an option that wants a value, the value alone is completed.
std::string values(const program_words& program) {
    std::string text = "    case \"$command $prev\" in\n";
    for (const command_words& c : program.commands) {
        for (const option_words& o : c.options) {
            if (o.positional || o.what == takes::nothing) continue;
            for (const std::string& name : o.names) {
                text += "    \"" + c.name + " " + name + "\")\n        " + value_of(o) +
                        "\n        return\n        ;;\n";
            }
        }
    }
    return text + "    esac\n";
}

std::string option_names(const command_words& c) {
    std::string names;
    for (const option_words& o : c.options) {
        if (o.positional) continue;
        for (const std::string& name : o.names) names += (names.empty() ? "" : " ") + name;
    }
    return names;
}

std::string row(const std::string& command, const command_words& c) {
    return "    " + command + ") [[ $cur == -* ]] && COMPREPLY=($(compgen -W \"" + option_names(c) +
           "\" -- \"$cur\"))" + (c.takes_files() ? " || _brisolan_files \"$cur\"" : "") + " ;;\n";
}

} // namespace

std::string bash_completion(const program_words& program) {
    std::string names;
    std::string rows;
    for (const command_words& c : program.commands) {
        names += (names.empty() ? "" : " ") + c.name;
        rows += row(c.name, c);
    }
    return HEAD + values(program) + "    case $command in\n    \"\")\n        if [[ $cur == -* ]]; then\n" +
           "            COMPREPLY=($(compgen -W \"" + option_names(program.itself) + "\" -- \"$cur\"))\n" +
           "        else\n            COMPREPLY=($(compgen -W \"" + names + "\" -- \"$cur\"))\n" +
           "            _brisolan_files \"$cur\"\n        fi\n" + "        ;;\n" + rows +
           "    esac\n}\ncomplete -F _brisolan brisolan\n";
}
