// view/cursor.cpp: which tool the modifier keys choose, and which cursor shows it.
// Layer: view.
// Called by the pointer's tracking and by the mouse.
#include "view/cursor.h"

#include <array>

#include "core/class.h"
#include "view/selected.h"

std::int16_t g_currentcursor = -1;
std::int16_t g_setcursor = 0;

namespace {

struct tool_choice {
    std::int8_t option, command, control, none;
};

// The tool for each selected tool and modifier. Shift is no tool key.
constexpr std::array<tool_choice, 4> choices{{
    {TOOL_DRAW, TOOL_TWEAK, TOOL_MAGNIFIER, TOOL_ARROW},
    {TOOL_MAGNIFIER, TOOL_MAGNIFIER, TOOL_MAGNIFIER, TOOL_MAGNIFIER},
    {TOOL_TWEAK, TOOL_TWEAK, TOOL_TWEAK, TOOL_TWEAK},
    {TOOL_ARROW, TOOL_TWEAK, TOOL_MAGNIFIER, TOOL_DRAW},
}};

} // namespace

int brisolan_tempeditmode(const brisolan* x, int modifiers) {
    if (x->editmode < 0 || x->editmode >= static_cast<int>(choices.size())) return TOOL_ARROW;
    const tool_choice& c = choices[static_cast<std::size_t>(x->editmode)];
    if (modifiers & optionKey) return c.option;
    if (modifiers & cmdKey) return c.command;
    if (modifiers & controlKey) return c.control;
    return c.none;
}

void brisolan_cursor(brisolan* x, int entry) {
    if (entry < 0 || entry >= NCURSORS) {
        g_currentcursor = -1;
        host_window_setcursor(x->window);
    } else {
        g_currentcursor = static_cast<std::int16_t>(entry);
        SetCursor(&g_curs[static_cast<std::size_t>(entry)]);
    }
    g_setcursor = 1;
}

void brisolan_eventcursor(brisolan* x, const event* e, Point where) {
    if (x->cursor_override < 0)
        brisolan_cursor(x, CURSOR_HOST);
    else if (x->cursor_override > 0)
        brisolan_cursor(x, x->cursor_override - 1);
    else
        brisolan_cursor(x, brisolan_eventthird(x, e, where.h));
}

void brisolan_magcursor(brisolan* x, int modifiers) {
    brisolan_cursor(x, modifiers & optionKey ? CURSOR_SHRINK : CURSOR_MAGNIFY);
}

void brisolan_copycursor(int id, int entry) {
    if (entry < 0 || entry >= NCURSORS) return;
    if (const CursHandle c = GetCursor(id)) g_curs[static_cast<std::size_t>(entry)] = **c;
}
