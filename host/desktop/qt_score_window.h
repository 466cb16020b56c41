// host/desktop/qt_score_window.h: the plain editor window of a score in somebody's patch, which plays it: no transport.
// Layer: desktop platform, Qt.
// Called by the desktop's patches.
#pragma once

#include <functional>

#include <QMainWindow>

#include "host/desktop/desk.h"
#include "host/desktop/qt_asks.h"
#include "host/kel.h"

class qt_score_view;

// What it asks of whoever opened it; all set.
struct qt_score_hooks {
    qt_asks desktop;
    std::function<void()> save;    // saves the patch
    std::function<void(int)> tool; // as desk_document::set_tool
    std::function<void(desk_zoom)> zoom;
};

class qt_score_window : public QMainWindow {
public:
    // The host's window must outlive it, or be freed through it.
    qt_score_window(host_window* w, qt_score_hooks hooks);
    ~qt_score_window() override;

    host_window* shown() const { return window_of; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void make_menus();
    template <class Does> void edit(Does does);

    host_window* window_of;
    qt_score_hooks hooks;
    qt_score_view* view;
};
