// host/desktop/qt_score_window.cpp: the plain editor window of a score in somebody's patch.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_score_window.h"

#include <utility>

#include <QCloseEvent>
#include <QMenuBar>
#include <QTimer>

#include "host/desktop/qt_edit_items.h"
#include "host/desktop/qt_places.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_score_view.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"

qt_score_window::qt_score_window(host_window* w, qt_score_hooks asks)
    : window_of(w), hooks(std::move(asks)), view(new qt_score_view(w, this)) {
    setCentralWidget(view);
    make_menus();
    resize(view->size_for(w->width, w->height).grownBy({0, menuBar()->sizeHint().height(), 0, 0}));
    qt_fit_to_screen(*this);
    view->setFocus();
}

qt_score_window::~qt_score_window() {
    view->forget();
    qt_leave_view(window_of);
}

// A score names its window after it has shown it, and only when it has a name.
void qt_score_window::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    QTimer::singleShot(0, this, [this] {
        const QString name = QString::fromStdString(kel_window_title(window_of));
        setWindowTitle((name.isEmpty() ? QStringLiteral("Score") : name) + QStringLiteral(" — brisolan"));
    });
}

// A command of the Edit menu, sent to the score as the host does.
template <class Does> void qt_score_window::edit(Does does) {
    if (qt_kernel_busy()) return;
    {
        const qt_in_kernel now;
        const kel_in_port port(window_of);
        does(window_of->owner);
    }
    view->drawn();
}

void qt_score_window::make_menus() {
    const auto add = [this](QMenu* menu, const QString& text, const QKeySequence& key, auto does) {
        QAction* const a = menu->addAction(text);
        connect(a, &QAction::triggered, this, does);
        a->setShortcut(key);
        return a;
    };
    QMenu* const file = menuBar()->addMenu(QStringLiteral("&File"));
    add(file, QStringLiteral("&Open…"), QKeySequence::Open, [this] { hooks.desktop.open(this); });
    add(file, QStringLiteral("&Save the patch"), QKeySequence::Save, [this] { hooks.save(); });
    add(file, QStringLiteral("&Close"), QKeySequence::Close, [this] { close(); });

    const auto sends = [this](auto does) { return [this, does] { edit(does); }; };
    QMenu* const menu = menuBar()->addMenu(QStringLiteral("&Edit"));
    qt_edit_items items;
    items.cut = add(menu, QStringLiteral("Cu&t"), QKeySequence::Cut,
                    sends([](host_object* x) { kel_private<"cut">(x); }));
    items.copy = add(menu, QStringLiteral("&Copy"), QKeySequence::Copy,
                     sends([](host_object* x) { kel_private<"copy">(x); }));
    items.paste = add(menu, QStringLiteral("&Paste"), QKeySequence::Paste,
                      sends([](host_object* x) { kel_private<"paste">(x); }));
    items.clear = add(menu, QStringLiteral("C&lear"), QKeySequence::Delete,
                      sends([](host_object* x) { kel_private<"clr">(x); }));
    items.select_all = add(menu, QStringLiteral("Select &all"), QKeySequence::SelectAll,
                           sends([](host_object* x) { kel_private<"selectall">(x); }));
    qt_watch_edit_items(menu, items, window_of);
    menu->addSeparator();
    int number = 0;
    for (const char* name : {"A&rrow", "&Magnifier", "T&weak", "P&encil"}) {
        add(menu, QString::fromLatin1(name), Qt::Key_1 + number,
            sends([this, number](host_object*) { hooks.tool(number); }));
        ++number;
    }

    QMenu* const look = menuBar()->addMenu(QStringLiteral("&View"));
    const auto zooms = [this, sends](desk_zoom way) {
        return sends([this, way](host_object*) { hooks.zoom(way); });
    };
    add(look, QStringLiteral("Zoom &in"), {}, zooms(desk_zoom::time_in))
        ->setShortcuts({QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
    add(look, QStringLiteral("Zoom &out"), QKeySequence(QStringLiteral("Ctrl+-")),
        zooms(desk_zoom::time_out));
    add(look, QStringLiteral("&Higher rows"), QKeySequence(QStringLiteral("Ctrl+Shift+Up")),
        zooms(desk_zoom::value_in));
    add(look, QStringLiteral("&Lower rows"), QKeySequence(QStringLiteral("Ctrl+Shift+Down")),
        zooms(desk_zoom::value_out));
    hooks.desktop.midi(menuBar()->addMenu(QStringLiteral("&MIDI")));
    add(menuBar()->addMenu(QStringLiteral("&Help")), QStringLiteral("&Keys and tools"),
        QKeySequence::HelpContents, [this] { hooks.desktop.help(this); });
}

// The score hides its window, as it does when a message tells it to.
void qt_score_window::closeEvent(QCloseEvent* event) {
    if (qt_kernel_busy()) return event->ignore();
    if (window_of->visible) {
        const qt_in_kernel now;
        kel_send(window_of->owner, host_symbol("wclose"), {});
    }
    event->accept();
}
