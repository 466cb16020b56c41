// host/desktop/descriptions.cpp: the descriptions of an object's parameters, as messages.
// Layer: desktop platform.
#include "host/desktop/descriptions.h"

#include <algorithm>

#include "host/kernel/atombuf.h"
#include "host/kernel/dispatch.h"

namespace {

constexpr std::int32_t LABEL = 3;
constexpr std::size_t DESCRIPTION_SIZE = 11; // "#X setparam" and nine values
constexpr std::size_t FIRST_VALUE = 2;

parameter_description from_line(std::span<const atom> line) {
    const auto number = [&](std::size_t i) { return line[FIRST_VALUE + i].l; };
    return {line[FIRST_VALUE + 1].s->name,
            number(2),
            number(3),
            number(4),
            number(5),
            number(6),
            number(7),
            number(8) != 0};
}

bool is_description(std::span<const atom> line) {
    if (line.size() != DESCRIPTION_SIZE || line[1].type != A_SYM || line[1].s != host_symbol("setparam"))
        return false;
    for (std::size_t i = FIRST_VALUE; i < DESCRIPTION_SIZE; ++i) {
        if (line[i].type != (i == FIRST_VALUE + 1 ? A_SYM : A_LONG)) return false;
    }
    return true;
}

} // namespace

described_object ask_descriptions(host_object* x) {
    described_object all;
    host_atombuf* const lines = host_atombuf_new();
    kel_private<"pstate">(x, lines);
    kel_atombuf_lines(lines, [&](std::span<const atom> line) {
        if (is_description(line))
            all.parameters.push_back(from_line(line));
        else if (line.size() == 3 && line[1].type == A_SYM && line[1].s == host_symbol("whichparam") &&
                 line[2].type == A_LONG)
            all.chosen = line[2].l;
        return true;
    });
    host_atombuf_free(lines);
    return all;
}

void send_description(host_object* x, int index, const parameter_description& d) {
    const std::vector<parameter_description> before = ask_descriptions(x).parameters;
    const auto at = static_cast<std::size_t>(index);
    // The role is told one higher than it is kept.
    const std::vector<atom> values{atom(index),
                                   atom(host_symbol(d.name.c_str())),
                                   atom(d.role + 1),
                                   atom(d.min),
                                   atom(d.max),
                                   atom(d.value),
                                   atom(d.interval),
                                   atom(std::max(d.scale, 1)),
                                   atom(d.note_names ? 1 : 0)};
    symbol* const selector = host_symbol("setparam");
    kel_send(x, selector, values);
    // To be told that it is the label makes the label none: once more makes it the label again.
    if (d.role == LABEL && at < before.size() && before[at].role == LABEL) kel_send(x, selector, values);
}
