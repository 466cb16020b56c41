// host/desktop/qt_edit_items.cpp: the items of an Edit menu that a score says whether they can be used.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_edit_items.h"

#include <QTimer>

#include "host/desktop/qt_platform.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"

void qt_watch_edit_items(QMenu* menu, const qt_edit_items& items, host_window* w) {
    QObject::connect(menu, &QMenu::aboutToShow, menu, [items, w] {
        if (qt_kernel_busy()) return;
        host_menustate state;
        {
            const qt_in_kernel now;
            const kel_in_port port(w);
            kel_private<"chkmenu">(w->owner, &state);
        }
        for (QAction* a : {items.cut, items.copy, items.clear}) a->setEnabled(state.cut);
        items.paste->setEnabled(state.paste);
        items.select_all->setEnabled(state.selectall);
    });
    // A key may come at any time, and an action that is off has none.
    QObject::connect(menu, &QMenu::aboutToHide, menu, [menu, items] {
        QTimer::singleShot(0, menu, [items] {
            for (QAction* a : {items.cut, items.copy, items.paste, items.clear, items.select_all})
                a->setEnabled(true);
        });
    });
}
