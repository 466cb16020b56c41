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

// Drops the held and pending nodes of the events for which `gone(event)` holds. [scheduler]
void brisolan_forgetnotes(brisolan* x, bool (*gone)(const event&));

// Notes the performer has passed over, newest first: takes one more in, unless the host's memory limit is reached; takes out and
// frees the one that `at`, a link of that list, refers to. [scheduler]
void brisolan_pushpending(brisolan* x, event* note);
void brisolan_droppending(brisolan* x, event_node** at);

// A walk over the passed-over notes from the newest on, which stays sound when the list changes under it: it meets each
// that is there when it comes by, and none that came in after it began. Only on the stack. [scheduler]
class pending_walk {
public:
    explicit pending_walk(brisolan* owner) : x(owner), at(&owner->follow_pending), outer(owner->walking_now) {
        x->walking_now = this;
    }
    ~pending_walk() { x->walking_now = outer; }
    pending_walk(const pending_walk&) = delete;
    pending_walk& operator=(const pending_walk&) = delete;

    // The note that the walk has come to; null at the end.
    event* note() const { return *at ? (*at)->note : nullptr; }
    // Goes to the next one; the first leaves this one in the list, the second takes it out.
    void keep() { at = &(*at)->next; }
    void drop() { brisolan_droppending(x, at); }

private:
    friend void brisolan_pushpending(brisolan*, event*);
    friend void brisolan_droppending(brisolan*, event_node**);

    brisolan* x;
    event_node** at; // the link to the node that it has come to
    pending_walk* outer;
};

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
