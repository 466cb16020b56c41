// host/desktop/midi_ports.cpp: choosing a MIDI port by number, name or the name's beginning.
// Layer: desktop platform. Pure: the list comes in as an argument.
#include "host/desktop/midi_ports.h"

#include <algorithm>
#include <charconv>

namespace {

bool same_letter(char a, char b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return lower(a) == lower(b);
}

bool begins(const std::string& name, const std::string& beginning) {
    return name.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), name.begin(), same_letter);
}

using candidates = std::vector<const midi_port*>;

template <class Fits> candidates all_that(const std::vector<midi_port>& ports, Fits fits) {
    candidates found;
    for (const midi_port& p : ports) {
        if (fits(p)) found.push_back(&p);
    }
    return found;
}

// Number first, then the whole name, then its beginning: the first reading that anything answers to.
candidates fitting(const std::vector<midi_port>& ports, const std::string& wanted) {
    int number = 0;
    const char* const end = wanted.data() + wanted.size();
    if (const auto [at, why] = std::from_chars(wanted.data(), end, number); why == std::errc{} && at == end) {
        candidates found = all_that(ports, [&](const midi_port& p) { return p.number == number; });
        if (!found.empty()) return found;
    }
    candidates found = all_that(ports, [&](const midi_port& p) { return p.name == wanted; });
    if (!found.empty()) return found;
    return all_that(ports, [&](const midi_port& p) { return begins(p.name, wanted); });
}

std::string listed(const candidates& ports) {
    std::string text;
    for (const midi_port* p : ports) {
        text +=
            (text.empty() ? "" : ", ") + std::to_string(p->number) + " \"" + p->name + "\" (" + p->api + ")";
    }
    return text;
}

} // namespace

const midi_port* midi_choose_port(const std::vector<midi_port>& ports, const std::string& wanted,
                                  midi_direction direction, std::string& error) {
    const candidates found = fitting(ports, wanted);
    if (found.size() == 1) return found.front();
    const std::string kind = direction == midi_direction::in ? "MIDI input" : "MIDI output";
    if (found.size() > 1) {
        error = "several " + kind + "s fit \"" + wanted + "\": " + listed(found);
        return nullptr;
    }
    const candidates all = all_that(ports, [](const midi_port&) { return true; });
    error = "no " + kind + " fits \"" + wanted + "\"; there " +
            (all.empty() ? "is none" : (all.size() == 1 ? "is " : "are ") + listed(all));
    return nullptr;
}
