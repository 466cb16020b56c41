// host/desktop/qt_desktop.h: the desktop as a whole: its windows, recent files, devices, copies for after a crash.
// Layer: desktop platform, Qt.
// Made by desktop_run; called by the windows.
#pragma once

#include <memory>
#include <vector>

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>

#include "host/desktop/desk.h"
#include "host/desktop/qt_devices.h"
#include "host/desktop/qt_patches.h"

class qt_editor_window;

// The setting of the picture's size: display pixels for one of its, 0 by the display.
inline const QString QT_SCALE_KEY = QStringLiteral("view/scale");

class qt_desktop {
public:
    explicit qt_desktop(desk_program& program);
    ~qt_desktop();
    qt_desktop(const qt_desktop&) = delete;
    qt_desktop& operator=(const qt_desktop&) = delete;

    desk_program& program() { return behind; }
    QSettings& settings() { return kept; }

    // A window with a new document; with a file's, or the one that shows it already. Null when it cannot be read, which a
    // person is told.
    qt_editor_window* new_document();
    qt_editor_window* open_file(const QString& file, QWidget* asking = nullptr);
    // The file of a patch opens in a window of its own, and gives null; this tells whether there is any.
    bool any_patch() const { return !patches.none(); }
    void ask_to_open(QWidget* asking);

    // Asks each window; closes all when none objects.
    void quit();
    bool all_painted() const;
    void closed(qt_editor_window* window); // it goes

    QStringList recent() const;
    void add_recent(const QString& file);
    void clear_recent();

    // What a person chose to play to and from; a choice that cannot be is said in every window's status line.
    qt_devices& devices() { return used; }

    // Leaves what was not saved in copies, for when nobody is there to be asked.
    void leave_copies();
    // Offers what a program that did not end as it should has left; true when a window came of it.
    bool offer_copies();
    qt_asks asks(); // for the windows of patches
    void show_help(QWidget* asking);
    void show_about(QWidget* asking);

private:
    qt_editor_window* show(std::unique_ptr<desk_document> document);
    void look_after(); // once a second
    void tell_console();
    void show_devices();
    void tell_all(const QString& text);

    desk_program& behind;
    QSettings kept;
    qt_devices used{behind, kept};
    qt_patches patches{behind, asks()};
    std::vector<qt_editor_window*> windows;
    QTimer timer; // for looking after everything, once a second
    int looks = 0;
};
