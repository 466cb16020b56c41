// host/kernel/patcher.h: the patcher that holds objects, and the receivers by which its lines are replayed.
// Layer: kernel. Called by patch files, platforms, the program's commands and the script runner.
#pragma once

#include <cstdint>
#include <vector>

#include "host/kel.h"

// A patcher: the objects made while it was the one being built, and whether it was changed since it was saved.
struct host_patcher : host_object {
    struct contents;
    contents* inside = nullptr;
};

using kel_line = std::vector<atom>;

// One box: an object with what its patch tells of it. Cords and files name a box by its place, from 0.
struct kel_box {
    host_object* object = nullptr; // null: a broken box, which could not be made
    kel_line made_by;              // "#N", its class, its arguments
    std::vector<kel_line> kept;    // "#X" lines that nobody but the patch's file keeps
    std::int32_t left = 0;         // the place of its top left corner in pixels
    std::int32_t top = 0;
    std::int32_t width = 0; // 0: as wide as its text
};

// A cord between two boxes. One that could not be connected is kept all the same.
struct kel_patchcord {
    std::int32_t from = 0; // box
    std::int32_t outlet = 0;
    std::int32_t to = 0; // box
    std::int32_t inlet = 0;
    bool operator==(const kel_patchcord&) const = default;
};

// What a patcher is made of, as its file tells it.
struct kel_patch {
    std::int32_t left = 40; // its window's content, pixels
    std::int32_t top = 40;
    std::int32_t width = 640;
    std::int32_t height = 400;
    std::vector<kel_box> boxes;
    std::vector<kel_patchcord> cords;
    std::vector<kel_line> others; // lines that this host does not understand
};

// A new patcher, empty and unchanged. [main]
host_patcher* kel_patcher_new();

// Frees every object in it, then the patcher. [main]
void kel_patcher_free(host_patcher* p);

// The patcher being built: "#P" is bound to it, and objects made from now on belong to it. Null: none. [main]
void kel_patcher_build(host_patcher* p);
host_patcher* kel_patcher_building();

// The class that boxes of this name are of; null if none. The host's own classes are no boxes. [main]
host_class* kel_boxclass(const char* name);

// Makes an object of a named class in the patcher that is being built; null, with a console line, when there is no such
// class or its constructor refuses. [main]
host_object* kel_make(symbol* class_name, std::span<const atom> arguments);

// Frees one object of a patcher, with its box and the cords to it. [main]
void kel_patcher_remove(host_patcher* p, host_object* x);

// Its objects in the order of making, borrowed. [main]
const std::vector<host_object*>& kel_patcher_objects(const host_patcher* p);

// Whether something in it was changed that a save would keep. [main]
bool kel_patcher_changed(const host_patcher* p);
void kel_patcher_setchanged(host_patcher* p, bool changed);

// The patcher's boxes and cords; valid as long as the patcher. Whoever changes them marks it changed. [main]
kel_patch& kel_patcher_patch(const host_patcher* p);

// Adds a cord to the patch and connects it. Null, or why it cannot be connected; it is kept even then. [main]
const char* kel_patcher_connect(host_patcher* p, const kel_patchcord& cord);

// The first object of the named class in the patcher; null if none. [main]
host_object* kel_patcher_find(const host_patcher* p, const char* class_name);
