// host/desktop/qt_score_window.cpp: the plain editor window of a score in somebody's patch.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_score_window.h"

#include <utility>

#include <QCloseEvent>
#include <QMenuBar>
#include <QTimer>

#include "host/desktop/qt_menu_items.h"
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
    QMenu* const file = menuBar()->addMenu(QStringLiteral("&File"));
    qt_add_item(file, QStringLiteral("&Open…"), QKeySequence::Open, [this] { hooks.desktop.open(this); });
    qt_add_item(file, QStringLiteral("&Save the patch"), QKeySequence::Save, [this] { hooks.save(); });
    qt_add_item(file, QStringLiteral("&Close"), QKeySequence::Close, [this] { close(); });

    QMenu* const menu = menuBar()->addMenu(QStringLiteral("&Edit"));
    qt_add_edit_items(menu, window_of, [this](auto does) { edit(does); });
    menu->addSeparator();
    int number = 0;
    for (const char* name : {"A&rrow", "&Magnifier", "T&weak", "P&encil"}) {
        qt_add_item(menu, QString::fromLatin1(name), Qt::Key_1 + number,
                    [this, number] { edit([this, number](host_object*) { hooks.tool(number); }); });
        ++number;
    }
    qt_add_zoom_items(menuBar()->addMenu(QStringLiteral("&View")),
                      [this](desk_zoom way) { edit([this, way](host_object*) { hooks.zoom(way); }); });
    hooks.desktop.midi(menuBar()->addMenu(QStringLiteral("&MIDI")));
    qt_add_item(menuBar()->addMenu(QStringLiteral("&Help")), QStringLiteral("&Keys and tools"),
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
