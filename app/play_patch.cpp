// app/play_patch.cpp: one of the program's patches with its score in it.
// Layer: program.
#include "app/play_patch.h"

#include <algorithm>
#include <vector>

#include "app/patch_files.h"
#include "app/session.h"
#include "host/boxes/boxes.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/patchfile.h"

brisolan* load_own_patch(const char* name, host_patcher** patcher, std::string& why) {
    load_brisolan();
    boxes_load();
    const patch_text patch = own_patch(name);
    *patcher = kel_patcher_new();
    kel_patch_parse(*patcher, patch.text, patch.called.c_str());
    host_object* const score = kel_patcher_find(*patcher, "brisolan");
    if (!score) why = patch.called + ": the patch has no score in it";
    return static_cast<brisolan*>(score);
}

bool tell(const char* receiver, const char* selector, std::initializer_list<atom> arguments) {
    symbol* const name = host_symbol(receiver);
    if (!name->thing) return false;
    std::vector<atom> message{atom(host_symbol(selector))};
    message.insert(message.end(), arguments);
    return kel_message(name, message);
}

event* first_note_from(const brisolan* score, std::int32_t from) {
    event* first = score->events;
    while (first && first->time < from) first = first->next;
    return first;
}

bool start_playing(brisolan* score, std::int32_t from, double speed) {
    event* const first = first_note_from(score, from);
    if (!first) return false;
    tell("tempo", "speed", {atom(static_cast<float>(speed))});
    // Started whole, and put where it shall begin before the first wait is over.
    const host_locked_out now;
    tell("go", "bang");
    if (from <= 0) return true;
    score->current = first;
    host_outlet_int(score->params[PARAM_TIME].outlet, first->time - from);
    return true;
}

bool playing_is_over(const brisolan* score) {
    const host_locked_out now; // between two callbacks: one that runs may set the next clock
    return score->mode == MODE_IDLE && kel_next_due() < 0;
}

std::int64_t score_length(const brisolan* score) {
    std::int64_t end = 0;
    for (const event* e = score->events; e; e = e->next)
        end = std::max(end, std::int64_t{e->time} + std::max(e->dur.get(), 0));
    return end;
}
