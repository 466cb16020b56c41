// host/desktop/qt_score_window.h: the plain editor window of a score in somebody's patch, which plays it: no transport.
// Layer: desktop platform, Qt.
// Called by the desktop's patches.
#pragma once

#include <QMainWindow>

#include "host/kel.h"

class qt_score_view;

class qt_score_window : public QMainWindow {
public:
    // The host's window must outlive it, or be freed through it.
    explicit qt_score_window(host_window* w);
    ~qt_score_window() override;

    host_window* shown() const { return window_of; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void make_menus();
    template <class Does> void edit(Does does);

    host_window* window_of;
    qt_score_view* view;
};
