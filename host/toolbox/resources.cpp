// Loads pictures, cursors and menus from their art.
// Toolbox: implements the resource calls of host/toolbox.h.
// Called by the object's registration and by its role menu.
#include "host/toolbox/resources.h"

#include "host/toolbox/art.h"
#include "host/toolbox/menu.h"
#include "host/toolbox/pin.h"

#include <map>
#include <memory>

namespace {

// Pictures loaded and not detached, by id; owned here. Written by GetPicture and DetachResource.
std::map<int, std::unique_ptr<toolbox_picture>> loaded_pictures;

uint32_t art_colour(char c) {
    switch (c) {
    case '#': return 0xFF000000u;
    case 'D': return 0xFF404850u;
    case 'G': return 0xFF6E7883u;
    case 'L': return 0xFFA0A9B4u;
    case 'P': return 0xFFECEFF3u;
    case 'W': return 0xFFFFFFFFu;
    case 'B': return 0xFF2A6CD0u;
    case 'O': return 0xFFE08A1Eu;
    case 'Y': return 0xFFFFD24Au;
    case 'R': return 0xFFF08CA0u;
    default: return 0;
    }
}

std::unique_ptr<toolbox_picture> load_picture(const char* art) {
    auto picture = std::make_unique<toolbox_picture>();
    art_rows rows = art_picture(art);
    SetRect(&picture->bounds, 0, 0, static_cast<int>(rows[0].size()), static_cast<int>(rows.size()));
    for (const std::string& row : rows) {
        for (char c : row) picture->pixels.push_back(art_colour(c));
    }
    return picture;
}

Cursor load_cursor(const cursor_art& art) {
    Cursor cursor{};
    art_rows rows = art_picture(art.art);
    for (size_t v = 0; v < std::min<size_t>(rows.size(), 16); v++) {
        for (size_t h = 0; h < std::min<size_t>(rows[v].size(), 16); h++) {
            auto bit = static_cast<uint16_t>(0x8000u >> h);
            if (rows[v][h] == '#') cursor.data[v] |= bit;
            if (rows[v][h] != '.') cursor.mask[v] |= bit;
        }
    }
    cursor.hotSpot = {art.hot_v, art.hot_h};
    return cursor;
}

// The cursors, made once and kept; a CursHandle points at an entry of `handles`.
struct cursor_table {
    std::array<Cursor, CURSOR_COUNT> cursors{};
    std::array<Cursor*, CURSOR_COUNT> handles{};

    cursor_table() {
        for (size_t i = 0; i < CURSOR_COUNT; i++) {
            cursors[i] = load_cursor(CURSOR_ART[i]);
            handles[i] = &cursors[i];
        }
    }
};

} // namespace

PicHandle GetPicture(int id) {
    int index = id - FIRST_PICTURE;
    if (index < 0 || index >= static_cast<int>(PICTURE_COUNT)) return nullptr;
    std::unique_ptr<toolbox_picture>& at = loaded_pictures[id];
    if (!at) at = load_picture(PICTURE_ART[static_cast<size_t>(index)]);
    return at.get();
}

void DetachResource(PicHandle picture) {
    for (auto& [id, loaded] : loaded_pictures) {
        if (loaded.get() == picture) static_cast<void>(loaded.release());
    }
}

void KillPicture(PicHandle picture) {
    for (const auto& [id, loaded] : loaded_pictures) {
        if (loaded.get() == picture) return; // still the resource's
    }
    delete picture;
}

CursHandle GetCursor(int id) {
    static cursor_table table;
    for (size_t i = 0; i < CURSOR_COUNT; i++) {
        if (CURSOR_ART[i].id == id) return &table.handles[i];
    }
    return nullptr;
}

MenuHandle GetMenu(int id) {
    if (id != ROLE_MENU_ID) return nullptr;
    MenuHandle menu = new toolbox_menu;
    menu->id = pin16(id);
    for (const char* text : ROLE_MENU) {
        bool title = text[0] == '(';
        AppendMenuItem(menu, title ? text + 1 : text);
        if (title || text[0] == '-') DisableMenuItem(menu, CountMenuItems(menu));
    }
    return menu;
}
