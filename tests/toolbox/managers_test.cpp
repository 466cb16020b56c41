// Menus, the scrap, handles and the pointer.
// Tests of host/toolbox/menus.cpp, scrap.cpp, handles.cpp, pointer.cpp.
// Run by ctest.
#include "tests/toolbox/canvas.h"

namespace {

// A machine that answers as told and remembers what it was asked.
struct machine {
    int choice = 0;
    Point popped_at{0, 0};
    int popped_item = 0;
    std::string clipboard;
    bool has_text = false;
    bool down = false;
    Point pointer{0, 0};
    int keys = 0;
    int cursors_set = 0;
    bool own_cursor = true;
    std::vector<bool> hidden;

    static machine& of(void* user) { return *static_cast<machine*>(user); }

    toolbox_platform hooks() {
        toolbox_platform p;
        p.user = this;
        p.button = [](void* u) { return of(u).down; };
        p.mouse = [](void* u) { return of(u).pointer; };
        p.modifiers = [](void* u) { return of(u).keys; };
        p.popup = [](void* u, MenuHandle, Point where, int item) {
            of(u).popped_at = where;
            of(u).popped_item = item;
            return of(u).choice;
        };
        p.setcursor = [](void* u, const Cursor* c) {
            of(u).cursors_set++;
            of(u).own_cursor = c == nullptr;
        };
        p.hidecursor = [](void* u, bool h) { of(u).hidden.push_back(h); };
        p.clipboard_read = [](void* u, std::string* text) {
            *text = of(u).clipboard;
            return of(u).has_text;
        };
        p.clipboard_write = [](void* u, const std::string& text) {
            of(u).clipboard = text;
            of(u).has_text = !text.empty();
        };
        p.screen = [](void*) { return rect(0, 0, 800, 600); };
        return p;
    }
};

class managers_test : public canvas_test {
protected:
    managers_test() {
        toolbox_platform hooks = world.hooks();
        toolbox_setplatform(&hooks);
    }

    machine world;
};

using menus_test = managers_test;
using scrap_test = managers_test;
using pointer_test = managers_test;

ScrapRef clipboard_scrap() {
    ScrapRef scrap = nullptr;
    EXPECT_EQ(GetScrapByName(kScrapClipboardScrap, 0, &scrap), noErr);
    return scrap;
}

int32_t size_of(FlavorType flavor) {
    int32_t size = -1;
    GetScrapFlavorSize(clipboard_scrap(), flavor, &size);
    return size;
}

} // namespace

TEST_F(menus_test, the_role_menu_has_its_items_in_their_places) {
    MenuHandle menu = GetMenu(3155);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(GetMenuID(menu), 3155);
    EXPECT_EQ(CountMenuItems(menu), 8);
    EXPECT_STREQ(GetMenuItemText(menu, 1), "None");
    EXPECT_STREQ(GetMenuItemText(menu, 2), "Time axis");
    EXPECT_STREQ(GetMenuItemText(menu, 3), "Vertical axis");
    EXPECT_STREQ(GetMenuItemText(menu, 4), "Label");
    EXPECT_STREQ(GetMenuItemText(menu, 5), "Bar length");
    for (int item : {1, 2, 3, 4, 5, 8}) EXPECT_TRUE(IsMenuItemEnabled(menu, item));
    for (int item : {6, 7}) EXPECT_FALSE(IsMenuItemEnabled(menu, item)) << "no role of their own";
    EXPECT_EQ(GetMenu(1), nullptr);
    ReleaseResource(menu);
}

TEST_F(menus_test, a_choice_is_the_menu_and_the_item) {
    MenuHandle menu = GetMenu(3155);
    InsertMenu(menu, kInsertHierarchicalMenu);
    world.choice = 4;
    EXPECT_EQ(PopUpMenuSelect(menu, 20, 300, 2), 3155 << 16 | 4);
    EXPECT_TRUE(EqualPt(world.popped_at, point(300, 20)));
    EXPECT_EQ(world.popped_item, 2);
    world.choice = 0;
    EXPECT_EQ(PopUpMenuSelect(menu, 0, 0, 1), 0);
    DeleteMenu(3155);
    ReleaseResource(menu);
}

TEST_F(menus_test, a_disabled_item_a_separator_or_no_item_cannot_be_chosen) {
    MenuHandle menu = GetMenu(3155);
    InsertMenu(menu, kInsertHierarchicalMenu);
    DisableMenuItem(menu, 3);
    for (int item : {3, 6, 7, 9, -1}) {
        world.choice = item;
        EXPECT_EQ(PopUpMenuSelect(menu, 0, 0, 1), 0) << item;
    }
    EnableMenuItem(menu, 3);
    world.choice = 3;
    EXPECT_EQ(PopUpMenuSelect(menu, 0, 0, 1) & 0xFFFF, 3);
    DisableMenuItem(menu, 0);
    EXPECT_EQ(PopUpMenuSelect(menu, 0, 0, 1), 0);
    ReleaseResource(menu);
}

TEST_F(menus_test, only_a_listed_menu_pops_up) {
    MenuHandle menu = GetMenu(3155);
    world.choice = 1;
    EXPECT_EQ(PopUpMenuSelect(menu, 0, 0, 1), 0);
    InsertMenu(menu, kInsertHierarchicalMenu);
    EXPECT_NE(PopUpMenuSelect(menu, 0, 0, 1), 0);
    DeleteMenu(3155);
    EXPECT_EQ(PopUpMenuSelect(menu, 0, 0, 1), 0);
    ReleaseResource(menu);
}

TEST_F(menus_test, marks_are_kept) {
    MenuHandle menu = GetMenu(3155);
    EXPECT_EQ(GetItemMark(menu, 2), noMark);
    SetItemMark(menu, 2, 165);
    EXPECT_EQ(GetItemMark(menu, 2), bulletMark);
    SetItemMark(menu, 99, 165);
    EXPECT_EQ(GetItemMark(menu, 99), noMark);
    EXPECT_STREQ(GetMenuItemText(menu, 0), "");
    ReleaseResource(menu);
    ReleaseResource(nullptr);
}

TEST_F(scrap_test, text_goes_to_the_machine_and_comes_back) {
    ScrapRef scrap = clipboard_scrap();
    EXPECT_EQ(PutScrapFlavor(scrap, kScrapFlavorTypeText, 0, 4, "0 60"), noErr);
    EXPECT_EQ(world.clipboard, "0 60");
    world.clipboard = "1 2 3\r";
    FlavorFlags flags = 9;
    EXPECT_EQ(GetScrapFlavorFlags(scrap, kScrapFlavorTypeText, &flags), noErr);
    EXPECT_EQ(flags, 0u);
    EXPECT_EQ(size_of(kScrapFlavorTypeText), 6) << "what another program copied";
    char data[4] = "xxx";
    int32_t size = 3;
    EXPECT_EQ(GetScrapFlavorData(scrap, kScrapFlavorTypeText, &size, data), noErr);
    EXPECT_STREQ(data, "1 2") << "no more than there is room for";
    EXPECT_EQ(size, 6);
}

TEST_F(scrap_test, an_absent_flavor_is_an_error) {
    ScrapRef scrap = clipboard_scrap();
    FlavorFlags flags = 9;
    int32_t size = 9;
    EXPECT_EQ(GetScrapFlavorFlags(scrap, kScrapFlavorTypeText, &flags), noTypeErr);
    EXPECT_EQ(GetScrapFlavorSize(scrap, kScrapFlavorTypeText, &size), noTypeErr);
    EXPECT_EQ(size, 0);
    size = 5;
    char data[5];
    EXPECT_EQ(GetScrapFlavorData(scrap, kScrapFlavorTypeText, &size, data), noTypeErr);
    EXPECT_EQ(size, 0);
    EXPECT_NE(GetScrapByName("another", 0, &scrap), noErr);
    EXPECT_EQ(scrap, nullptr);
    EXPECT_NE(PutScrapFlavor(nullptr, kScrapFlavorTypeText, 0, 1, "x"), noErr);
    EXPECT_NE(ClearScrap(nullptr), noErr);
}

TEST_F(scrap_test, clearing_empties_the_machines_too) {
    ScrapRef scrap = clipboard_scrap();
    PutScrapFlavor(scrap, kScrapFlavorTypeText, 0, 1, "x");
    PutScrapFlavor(scrap, 0x41424344, 0, 2, "yz");
    EXPECT_EQ(size_of(0x41424344), 2);
    EXPECT_EQ(ClearScrap(&scrap), noErr);
    EXPECT_EQ(size_of(0x41424344), 0);
    EXPECT_FALSE(world.has_text);
    EXPECT_EQ(scrap, clipboard_scrap());
}

TEST_F(scrap_test, without_a_machine_the_program_keeps_its_own) {
    toolbox_setplatform(nullptr);
    ScrapRef scrap = clipboard_scrap();
    PutScrapFlavor(scrap, kScrapFlavorTypeText, 0, 2, "ab");
    EXPECT_EQ(size_of(kScrapFlavorTypeText), 2);
    PutScrapFlavor(scrap, kScrapFlavorTypeText, 0, 0, nullptr);
    FlavorFlags flags = 0;
    EXPECT_EQ(GetScrapFlavorFlags(scrap, kScrapFlavorTypeText, &flags), noErr) << "an empty flavor is there";
    EXPECT_EQ(size_of(kScrapFlavorTypeText), 0);
}

TEST(handles, keep_their_bytes_and_grow_with_zeroes) {
    Handle h = NewHandle(3);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(MemError(), noErr);
    std::memcpy(*h, "abc", 3);
    SetHandleSize(h, 5000);
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(GetHandleSize(h), 5000);
    EXPECT_EQ(std::memcmp(*h, "abc\0\0", 5), 0);
    EXPECT_EQ((*h)[4999], 0);
    SetHandleSize(h, 2);
    SetHandleSize(h, 4);
    EXPECT_EQ(std::memcmp(*h, "ab\0\0", 4), 0);
    SetHandleSize(h, 0);
    EXPECT_EQ(GetHandleSize(h), 0);
    EXPECT_NE(*h, nullptr);
    DisposeHandle(h);
}

TEST(handles, a_locked_one_neither_moves_nor_grows) {
    Handle h = NewHandle(8);
    char* before = *h;
    HLock(h);
    SetHandleSize(h, 100000);
    EXPECT_EQ(MemError(), memFullErr);
    EXPECT_EQ(GetHandleSize(h), 8);
    SetHandleSize(h, 4);
    EXPECT_EQ(MemError(), noErr);
    EXPECT_EQ(*h, before);
    HUnlock(h);
    SetHandleSize(h, 100000);
    EXPECT_EQ(GetHandleSize(h), 100000);
    DisposeHandle(h);
}

TEST(handles, refuse_what_cannot_be) {
    EXPECT_EQ(NewHandle(-1), nullptr);
    EXPECT_EQ(MemError(), memFullErr);
    Handle h = NewHandle(1);
    SetHandleSize(h, -1);
    EXPECT_EQ(MemError(), memFullErr);
    EXPECT_EQ(GetHandleSize(h), 1);
    SetHandleSize(nullptr, 4);
    EXPECT_EQ(MemError(), nilHandleErr);
    EXPECT_EQ(GetHandleSize(nullptr), 0);
    HLock(nullptr);
    HUnlock(nullptr);
    DisposeHandle(nullptr);
    DisposeHandle(h);
}

TEST_F(pointer_test, is_told_in_the_ports_coordinates) {
    toolbox_port_setorigin(port, 100, 50);
    world.pointer = point(110, 70);
    world.down = true;
    world.keys = optionKey;
    Point p;
    GetMouse(&p);
    EXPECT_TRUE(EqualPt(p, point(10, 20)));
    EXPECT_TRUE(Button());
    EXPECT_TRUE(StillDown());
    EXPECT_EQ(GetCurrentKeyModifiers(), 0x0800);
}

TEST_F(pointer_test, takes_an_image_and_gives_it_back) {
    EXPECT_EQ(toolbox_cursor(), nullptr);
    Cursor pencil = **GetCursor(3161);
    SetCursor(&pencil);
    ASSERT_NE(toolbox_cursor(), nullptr);
    EXPECT_EQ(std::memcmp(toolbox_cursor(), &pencil, sizeof pencil), 0);
    EXPECT_FALSE(world.own_cursor);
    InitCursor();
    EXPECT_EQ(toolbox_cursor(), nullptr);
    EXPECT_TRUE(world.own_cursor);
    EXPECT_EQ(world.cursors_set, 2);
}

TEST_F(pointer_test, hides_nest) {
    HideCursor();
    HideCursor();
    ShowCursor();
    EXPECT_TRUE(toolbox_cursor_hidden());
    ShowCursor();
    ShowCursor();
    EXPECT_FALSE(toolbox_cursor_hidden());
    HideCursor();
    InitCursor();
    EXPECT_FALSE(toolbox_cursor_hidden());
    EXPECT_EQ(world.hidden, (std::vector<bool>{true, false, true, false}));
}

TEST_F(pointer_test, the_gray_region_is_the_screen) {
    Rect r;
    GetRegionBounds(GetGrayRgn(), &r);
    Rect screen = rect(0, 0, 800, 600);
    EXPECT_TRUE(EqualRect(&r, &screen));
    toolbox_setplatform(nullptr);
    GetRegionBounds(GetGrayRgn(), &r);
    EXPECT_FALSE(EmptyRect(&r));
    EXPECT_FALSE(Button());
    GetMouse(&world.pointer);
    EXPECT_TRUE(EqualPt(world.pointer, point(0, 0)));
}
