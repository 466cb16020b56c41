// core/heldnotes.h: the list of notes that await their note-off, with the rule by which a note gets into it.
// Layer: core. Called by recording, following and the MIDI reader.
#pragma once

#include "core/instance.h"

// Makes a held node for the event and links it by the list's rule: into an empty list as head and tail; else behind the
// node the tail names, in place of what stood there, and the tail stays; not at all when the tail's node is gone. What
// the rule does not keep is freed at once. [scheduler]
void brisolan_hold(brisolan* x, event* note);

// The first held node for which `matches(event)` holds is taken out and freed, and its event returned; null if none.
// [scheduler]
template <class Matches> event* brisolan_unhold(brisolan* x, Matches matches);

// Frees every held node. The events stay as they are. [scheduler]
void brisolan_holdnothing(brisolan* x);

// Drops the held and pending nodes whose event is about to be freed: those for which `gone(event)` holds. [scheduler]
void brisolan_forgetnotes(brisolan* x, bool (*gone)(const event&));

// A node of either list, and its freeing. [scheduler]
event_node* brisolan_newnode(event* note, event_node* next);
void brisolan_freenode(event_node* n);

// Takes the node that `at` refers to out of the held list and frees it. [scheduler]
void brisolan_dropheld(brisolan* x, event_node** at);

template <class Matches> event* brisolan_unhold(brisolan* x, Matches matches) {
    for (event_node** at = &x->held; *at; at = &(*at)->next) {
        event* e = (*at)->note;
        if (!matches(*e)) continue;
        brisolan_dropheld(x, at);
        return e;
    }
    return nullptr;
}
