// The program's resources: art of pictures, cursors and menus.
// Toolbox, internal: leans on host/toolbox.h.
// Called by resources.cpp and by the art files.
#pragma once

#include "host/toolbox.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

constexpr int FIRST_PICTURE = 3155;
constexpr size_t PICTURE_COUNT = 10;
constexpr size_t CURSOR_COUNT = 8;

struct toolbox_picture {
    Rect bounds{0, 0, 0, 0};
    std::vector<uint32_t> pixels; // 0xFFRRGGBB, or 0 where it is transparent; as wide as the bounds
};

struct cursor_art {
    int id;
    int16_t hot_h, hot_v;
    const char* art;
};

// In pictures_art.cpp, cursors_art.cpp and menus_art.cpp.
extern const std::array<const char*, PICTURE_COUNT> PICTURE_ART;
extern const std::array<cursor_art, CURSOR_COUNT> CURSOR_ART;

// Menu 3155, its items in order; "-" is a separator, a leading '(' makes an item that cannot be chosen.
extern const std::array<const char*, 8> ROLE_MENU;
constexpr int ROLE_MENU_ID = 3155;
