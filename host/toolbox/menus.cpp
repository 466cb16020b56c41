// Menus: their items, the menu list, and popping up.
// Toolbox: implements the menu calls of host/toolbox.h.
// Called by the view's role menu and by platforms, which show them.
#include "host/toolbox/menu.h"

#include "host/toolbox/platform.h"

#include <algorithm>
#include <vector>

namespace {

// Written by InsertMenu, DeleteMenu and ReleaseResource; read by PopUpMenuSelect. Borrowed, in order of insertion.
std::vector<MenuHandle> menu_list;

toolbox_menu_item* item_of(MenuHandle menu, int item) {
    if (!menu || item < 1 || item > static_cast<int>(menu->items.size())) return nullptr;
    return &menu->items[static_cast<size_t>(item - 1)];
}

void set_enabled(MenuHandle menu, int item, bool enabled) {
    if (menu && item == 0) menu->enabled = enabled;
    if (toolbox_menu_item* it = item_of(menu, item)) it->enabled = enabled;
}

} // namespace

void menus_reset() {
    menu_list.clear();
}

void AppendMenuItem(MenuHandle menu, const char* text) {
    if (menu) menu->items.push_back({text, noMark, true});
}

int16_t CountMenuItems(MenuHandle menu) {
    return menu ? static_cast<int16_t>(menu->items.size()) : int16_t{0};
}

int16_t GetMenuID(MenuHandle menu) {
    return menu ? menu->id : int16_t{0};
}

const char* GetMenuItemText(MenuHandle menu, int item) {
    const toolbox_menu_item* it = item_of(menu, item);
    return it ? it->text.c_str() : "";
}

void SetItemMark(MenuHandle menu, int item, int mark) {
    if (toolbox_menu_item* it = item_of(menu, item)) it->mark = mark;
}

int GetItemMark(MenuHandle menu, int item) {
    const toolbox_menu_item* it = item_of(menu, item);
    return it ? it->mark : noMark;
}

void EnableMenuItem(MenuHandle menu, int item) {
    set_enabled(menu, item, true);
}
void DisableMenuItem(MenuHandle menu, int item) {
    set_enabled(menu, item, false);
}

bool IsMenuItemEnabled(MenuHandle menu, int item) {
    if (menu && item == 0) return menu->enabled;
    const toolbox_menu_item* it = item_of(menu, item);
    return it && menu->enabled && it->enabled && it->text != "-";
}

void InsertMenu(MenuHandle menu, int) {
    if (menu && std::find(menu_list.begin(), menu_list.end(), menu) == menu_list.end())
        menu_list.push_back(menu);
}

void DeleteMenu(int id) {
    std::erase_if(menu_list, [id](MenuHandle m) { return m->id == id; });
}

int32_t PopUpMenuSelect(MenuHandle menu, int top, int left, int item) {
    const toolbox_platform& p = platform_hooks();
    if (!p.popup || std::find(menu_list.begin(), menu_list.end(), menu) == menu_list.end()) return 0;
    Point where;
    SetPt(&where, left, top);
    int chosen = p.popup(p.user, menu, where, item);
    if (chosen < 1 || !IsMenuItemEnabled(menu, chosen)) return 0;
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint16_t>(menu->id)) << 16 |
                                static_cast<uint32_t>(chosen));
}

void ReleaseResource(MenuHandle menu) {
    if (!menu) return;
    std::erase(menu_list, menu);
    delete menu;
}
