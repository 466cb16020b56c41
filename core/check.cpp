// core/check.cpp: what always holds of an instance between two calls, asserted.
// Layer: core. Called by debug builds of the script runner after every line, and by tests.
#include "core/check.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// Every event that something beside the list names, by address.
std::vector<const event*> named_events(const brisolan* x) {
    std::vector<const event*> named;
    for (const event* e : {static_cast<event*>(x->current), static_cast<event*>(x->firstsel),
                           static_cast<event*>(x->finger), static_cast<event*>(x->drawn)}) {
        if (e) named.push_back(e);
    }
    for (const event_node* n = x->held; n; n = n->next) named.push_back(n->note);
    for (const event_node* n = x->follow_pending; n; n = n->next) named.push_back(n->note);
    std::sort(named.begin(), named.end());
    named.erase(std::unique(named.begin(), named.end()), named.end());
    return named;
}

const char* broken_list(const brisolan* x) {
    const std::vector<const event*> named = named_events(x);
    std::size_t met = 0;
    std::int32_t count = 0;
    std::int32_t selected = 0;
    bool before_finger = x->finger != nullptr;
    for (const event* e = x->events; e; e = e->next) {
        if (++count > x->nevents) return "the list has more events than were counted, or runs in a circle";
        if (e->selected > 1) return "a selected flag is neither 0 nor 1";
        selected += e->selected;
        if (!x->unordered && e->next && e->next->time < e->time) return "times fall along the list";
        if (before_finger && e->time >= x->finger_time) return "the insertion finger stands too far on";
        if (e == x->finger) before_finger = false;
        if (std::binary_search(named.begin(), named.end(), e)) ++met;
    }
    if (count != x->nevents) return "the list has fewer events than were counted";
    if (met != named.size())
        return "current, firstsel, drawn, the finger, held or pending names no event of the list";
    if (x->nselected < selected) return "more events are selected than were counted";
    return nullptr;
}

const char* broken_heldnotes(const brisolan* x) {
    const event_node* first = x->held;
    if (!first) return x->held_tail ? "the held list is empty and has a tail" : nullptr;
    if (first->next && first->next->next) return "more than two notes are held";
    if (x->held_tail && x->held_tail != first) return "the held list's tail is not its first node";
    return nullptr;
}

const char* broken_roles(const brisolan* x) {
    const auto parameter = [](std::int32_t index) { return index >= 0 && index < NPARAMS; };
    if (!parameter(x->yparam) || !parameter(x->lenparam)) return "an axis has no parameter";
    if (x->labelparam != -1 && !parameter(x->labelparam)) return "the label is no parameter";
    for (int i = 0; i < NPARAMS; ++i) {
        const std::uint8_t role = x->params[static_cast<std::size_t>(i)].mode;
        if (role == ROLE_VERTICAL && i != x->yparam) return "two parameters are on the vertical axis";
        if (role == ROLE_LENGTH && i != x->lenparam) return "two parameters are the bar length";
        if (role == ROLE_LABEL && i != x->labelparam) return "two parameters are the label";
    }
    return nullptr;
}

} // namespace

const char* brisolan_brokeninvariant(const brisolan* x) {
    const host_locked_out now;
    if (x->sending_now || x->walking_now) return "an output or a walk that has ended is still watched";
    if (const char* broken = broken_list(x)) return broken;
    if (const char* broken = broken_heldnotes(x)) return broken;
    return broken_roles(x);
}

void brisolan_checkinvariants(const brisolan* x) {
    const char* broken = brisolan_brokeninvariant(x);
    if (!broken) return;
    std::fprintf(stderr, "broken: %s\n", broken);
    std::abort();
}
