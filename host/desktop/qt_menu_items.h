// host/desktop/qt_edit_items.h: the items of an Edit menu that a score says whether they can be used.
// Layer: desktop platform, Qt. Called by the windows with a score.
#pragma once

#include <QMenu>

#include "host/kel.h"

struct qt_edit_items {
    QAction* cut = nullptr;
    QAction* copy = nullptr;
    QAction* paste = nullptr;
    QAction* clear = nullptr;
    QAction* select_all = nullptr;
};

// Has the menu, whenever it opens, offer what the window's score can do. The items must be the menu's; the window must
// outlive it. [main]
void qt_watch_edit_items(QMenu* menu, const qt_edit_items& items, host_window* w);
