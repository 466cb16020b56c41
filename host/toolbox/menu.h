// A menu from the inside.
// Toolbox, internal: leans on host/toolbox.h.
// Called by menus.cpp and by the resources, which make menus.
#pragma once

#include "host/toolbox.h"

#include <string>
#include <vector>

struct toolbox_menu_item {
    std::string text; // Latin-1
    int mark = noMark;
    bool enabled = true;
};

struct toolbox_menu {
    int16_t id = 0;
    bool enabled = true;
    std::vector<toolbox_menu_item> items;
};
