// host/kernel/objects.h: outlets and the cords between objects.
// Layer: kernel. Called by patchers, platforms and the script runner.
#pragma once

#include <span>

#include "host/kel.h"

// How many outlets an object has, and the k-th from the left, 0 the leftmost; null if none. [both]
int kel_outlets(const host_object* x);
host_outlet* kel_outlet(const host_object* x, int k);

// Whether the object has this inlet; every object has inlet 0. [both]
bool kel_has_inlet(const host_object* x, int inlet);

// Connects an outlet to an object's inlet, behind the cords it has; a cord that is there already is not doubled. Takes a
// cord away. False when there is no such outlet, or no such cord. [main]
bool kel_connect(host_object* from, int outlet, host_object* to, int inlet);
bool kel_disconnect(host_object* from, int outlet, host_object* to, int inlet);

// Is told of every value that leaves an outlet, before its cords are; one for each outlet, null ends it. Called at the
// level at which the value leaves. [main]
using kel_watch = void (*)(void* context, int outlet, std::int32_t value);
void kel_watch_outlet(host_object* x, int outlet, kel_watch watch, void* context);

struct kel_cord {
    host_object* to;
    int inlet;
};

// The cords of one outlet in the order in which they were made, and in which they carry. Borrowed: valid until a cord of it
// is made or taken away. [main]
std::span<const kel_cord> kel_cords(const host_object* from, int outlet);
