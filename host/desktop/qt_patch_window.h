// host/desktop/qt_patch_window.h: a window with a patch: its boxes and cords, larger than the window where they have to be.
// Layer: desktop platform, Qt.
// Called by the desktop and by the windows of scores.
#pragma once

#include <functional>
#include <string>

#include <QMainWindow>

#include "host/desktop/qt_asks.h"
#include "host/desktop/qt_patch_view.h"

// What a patch window asks of whoever opened it. Each may be unset.
struct qt_patch_hooks {
    std::function<void()> before_press;             // a press is about to go to a box
    std::function<std::string(host_object*)> state; // what a score has to tell of itself, in a few words
    std::function<std::string()> file;              // where the patch lies; empty: nowhere yet
    std::function<std::string(const std::string&)>
        save;                     // writes it there; why it could not. Unset: it is not saved from here
    std::function<void()> closed; // the window goes
    qt_asks desktop;
};

class qt_patch_window : public QMainWindow {
public:
    // The patch must outlive the window. Deletes itself when it is closed.
    qt_patch_window(host_patcher* patch, const QString& title, qt_patch_hooks hooks);
    ~qt_patch_window() override;

    qt_patch_view& view() { return *shown; }
    host_patcher* patch() const { return patcher; }

    // Asks whether to save what was changed; false when the person wants to go on with it.
    bool may_close();
    bool save();
    bool save_as();

    // Says something in the status line for a while.
    void say(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void make_menu();
    bool write(const std::string& to);
    void look();

    host_patcher* patcher;
    QString title;
    qt_patch_hooks hooks;
    qt_patch_view* shown;
};
