// host/kernel/class_record.h: what the kernel keeps of a class, an outlet and an object's inlets.
// Layer: kernel, private to dispatch.cpp and objects.cpp.
#pragma once

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/kernel/objects.h"

constexpr int MAX_INLET = 9;

struct host_class {
    std::string name;
    host_lifecycle lifecycle;
    std::unordered_map<const symbol*, host_handler> methods;
    const host_handler* list = nullptr; // among the methods: "list", which most of what arrives in numbers is
    host_handler integer;
    host_handler floating;
    host_handler bang;
    host_handler anything;
    std::array<host_handler, MAX_INLET + 1> inlets;
};

// An outlet; an object's outlets are linked from the leftmost on. Cords change at main level under the lockout.
struct host_outlet {
    host_object* owner = nullptr;
    host_outlet* right = nullptr;
    std::vector<kel_cord> cords;
    kel_watch watch = nullptr;
    void* watch_context = nullptr;
    int watch_number = 0;
};

struct host_inlets {
    std::array<bool, MAX_INLET + 1> there{};
};
