// core/heldnotes.cpp: the list of notes that await their note-off.
// Layer: core. Called by recording, following and the MIDI reader.
#include "core/heldnotes.h"

event_node* brisolan_newnode(event* note, event_node* next) {
    void* block = host_getbytes(sizeof(event_node));
    if (!block) return nullptr;
    return new (block) event_node{note, next};
}

void brisolan_freenode(event_node* n) {
    host_freebytes(n, sizeof(event_node));
}

// Kept: a new node goes behind the tail's node and the tail does not move, so that with three notes held at once the
// second drops out and keeps its provisional duration; and nothing is linked once the tail's node is gone. Recordings
// and imported files of dense chords have always come out this way.
void brisolan_hold(brisolan* x, event* note) {
    if (!x->held) {
        x->held = x->held_tail = brisolan_newnode(note, nullptr);
        return;
    }
    if (!x->held_tail) return;
    if (x->held_tail->next)
        x->held_tail->next->note = note; // the node of the one that drops out
    else
        x->held_tail->next = brisolan_newnode(note, nullptr);
}

void brisolan_dropheld(brisolan* x, event_node** at) {
    event_node* n = *at;
    *at = n->next;
    if (x->held_tail == n) x->held_tail = nullptr;
    brisolan_freenode(n);
}

void brisolan_holdnothing(brisolan* x) {
    while (x->held) brisolan_dropheld(x, &x->held);
}

void brisolan_forgetnotes(brisolan* x, bool (*gone)(const event&)) {
    for (event_node** at = &x->held; *at;) {
        if (gone(*(*at)->note))
            brisolan_dropheld(x, at);
        else
            at = &(*at)->next;
    }
    for (event_node** at = &x->follow_pending; *at;) {
        if (gone(*(*at)->note))
            brisolan_droppending(x, at);
        else
            at = &(*at)->next;
    }
}

void brisolan_pushpending(brisolan* x, event* note) {
    event_node* n = brisolan_newnode(note, x->follow_pending);
    if (!n) return;
    for (pending_walk* w = x->walking_now; w; w = w->outer) {
        if (w->at == &x->follow_pending) w->at = &n->next;
    }
    x->follow_pending = n;
}

void brisolan_droppending(brisolan* x, event_node** at) {
    event_node* n = *at;
    for (pending_walk* w = x->walking_now; w; w = w->outer) {
        if (w->at == &n->next) w->at = at;
    }
    *at = n->next;
    brisolan_freenode(n);
}
