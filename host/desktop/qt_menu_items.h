// host/desktop/qt_menu_items.h: the menu items that windows of several kinds have.
// Layer: desktop platform, Qt. Called by the windows.
#pragma once

#include <functional>

#include <QKeySequence>
#include <QString>

#include "host/desktop/desk.h"
#include "host/kel.h"

class QAction;
class QMenu;

// An item with a key, and what it does. The item is the menu's. [main]
QAction* qt_add_item(QMenu* menu, const QString& text, const QKeySequence& key, std::function<void()> does);

// An item that is checked for as long as `is_on` says so, looked at whenever the menu opens. [main]
void qt_add_switch(QMenu* menu, const QString& text, std::function<bool()> is_on,
                   std::function<void(bool)> set);

// Cut, copy, paste, clear and select all: `sends` is handed what is to be done to the window's score. Whenever the menu
// opens, it offers what the score can do; the window must outlive it. [main]
void qt_add_edit_items(QMenu* menu, host_window* w, std::function<void(void (*does)(host_object*))> sends);

// In and out, higher and lower rows. [main]
void qt_add_zoom_items(QMenu* menu, std::function<void(desk_zoom)> zoom);
