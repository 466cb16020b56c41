// host/kernel/patcher.h: the patcher that holds objects, and the receivers by which its lines are replayed.
// Layer: kernel. Called by platforms, the program's commands and the script runner.
#pragma once

#include <vector>

#include "host/kel.h"

// A patcher: the objects made while it was the one being built, and whether it was changed since it was saved.
struct host_patcher : host_object {
    struct contents;
    contents* inside = nullptr;
};

// A new patcher, empty and unchanged. [main]
host_patcher* kel_patcher_new();

// Frees every object in it, then the patcher. [main]
void kel_patcher_free(host_patcher* p);

// The patcher being built: "#P" is bound to it, and objects made from now on belong to it. Null: none. [main]
void kel_patcher_build(host_patcher* p);
host_patcher* kel_patcher_building();

// Makes an object of a named class in the patcher that is being built; null, with a console line, when there is no such
// class or its constructor refuses. [main]
host_object* kel_make(symbol* class_name, std::span<const atom> arguments);

// Frees one object of a patcher. [main]
void kel_patcher_remove(host_patcher* p, host_object* x);

const std::vector<host_object*>& kel_patcher_objects(const host_patcher* p);
bool kel_patcher_changed(const host_patcher* p);
void kel_patcher_setchanged(host_patcher* p, bool changed);
