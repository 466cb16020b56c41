// host/desktop/qt_menu_items.cpp: the menu items that windows of several kinds have.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_menu_items.h"

#include <utility>

#include <QAction>
#include <QMenu>
#include <QTimer>

#include "host/desktop/qt_platform.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"

namespace {

struct edit_items {
    QAction* cut;
    QAction* copy;
    QAction* paste;
    QAction* clear;
    QAction* select_all;
};

void offer_what_can_be_done(const edit_items& items, host_window* w) {
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
}

} // namespace

QAction* qt_add_item(QMenu* menu, const QString& text, const QKeySequence& key, std::function<void()> does) {
    QAction* const a = menu->addAction(text);
    a->setShortcut(key);
    QObject::connect(a, &QAction::triggered, a, [does = std::move(does)] { does(); });
    return a;
}

void qt_add_switch(QMenu* menu, const QString& text, std::function<bool()> is_on,
                   std::function<void(bool)> set) {
    QAction* const a = menu->addAction(text);
    a->setCheckable(true);
    QObject::connect(menu, &QMenu::aboutToShow, a, [a, is_on = std::move(is_on)] { a->setChecked(is_on()); });
    QObject::connect(a, &QAction::triggered, a, std::move(set));
}

void qt_add_edit_items(QMenu* menu, host_window* w, std::function<void(void (*does)(host_object*))> sends) {
    const auto item = [&](const QString& text, const QKeySequence& key, void (*does)(host_object*)) {
        return qt_add_item(menu, text, key, [sends, does] { sends(does); });
    };
    edit_items items{};
    items.cut =
        item(QStringLiteral("Cu&t"), QKeySequence::Cut, [](host_object* x) { kel_private<"cut">(x); });
    items.copy =
        item(QStringLiteral("&Copy"), QKeySequence::Copy, [](host_object* x) { kel_private<"copy">(x); });
    items.paste =
        item(QStringLiteral("&Paste"), QKeySequence::Paste, [](host_object* x) { kel_private<"paste">(x); });
    items.clear =
        item(QStringLiteral("C&lear"), Qt::Key_Delete, [](host_object* x) { kel_private<"clr">(x); });
    menu->addSeparator();
    items.select_all = item(QStringLiteral("Select &all"), QKeySequence::SelectAll,
                            [](host_object* x) { kel_private<"selectall">(x); });
    QObject::connect(menu, &QMenu::aboutToShow, menu, [items, w] { offer_what_can_be_done(items, w); });
    // A key may come at any time, and an action that is off has none.
    QObject::connect(menu, &QMenu::aboutToHide, menu, [menu, items] {
        QTimer::singleShot(0, menu, [items] {
            for (QAction* a : {items.cut, items.copy, items.paste, items.clear, items.select_all})
                a->setEnabled(true);
        });
    });
}

void qt_add_zoom_items(QMenu* menu, std::function<void(desk_zoom)> zoom) {
    const auto item = [&](const QString& text, const QKeySequence& key, desk_zoom way) {
        return qt_add_item(menu, text, key, [zoom, way] { zoom(way); });
    };
    item(QStringLiteral("Zoom &in"), {}, desk_zoom::time_in)
        ->setShortcuts({QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
    item(QStringLiteral("Zoom &out"), QKeySequence(QStringLiteral("Ctrl+-")), desk_zoom::time_out);
    item(QStringLiteral("&Higher rows"), QKeySequence(QStringLiteral("Ctrl+Shift+Up")), desk_zoom::value_in);
    item(QStringLiteral("&Lower rows"), QKeySequence(QStringLiteral("Ctrl+Shift+Down")),
         desk_zoom::value_out);
}
