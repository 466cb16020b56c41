// host/desktop/qt_editor_window.h: a window with one score: menus, transport, the editor, a status line.
// Layer: desktop platform, Qt.
// Called by the desktop, which owns all windows.
#pragma once

#include <memory>
#include <set>
#include <string>

#include <QMainWindow>
#include <QPointer>

#include "host/desktop/desk.h"
#include "host/desktop/qt_copies.h"
#include "host/desktop/qt_patch_window.h"
#include "host/desktop/qt_transport_bar.h"

class QLabel;
class QMenu;
class QTimer;
class qt_desktop;
class qt_score_view;

class qt_editor_window : public QMainWindow {
public:
    qt_editor_window(qt_desktop& desktop, std::unique_ptr<desk_document> document);
    ~qt_editor_window() override;

    desk_document& document() { return *shown; }
    qt_score_view& view() { return *score; }

    // Puts the notes in sight, once the window has its size.
    void frame();
    // A new title and mark of change.
    void show_title();
    // Says something in the status line for a while.
    void say(const QString& text);
    // What the devices are, at the status line's end; what is missing, where the pointer rests on it.
    void show_devices(const QString& text, const QString& trouble);

    // Asks whether to save what was not; false when the person wants to go on with it.
    bool may_close();
    bool save();
    // The dialog of the parameters.
    void inspect();
    bool save_as();
    bool save_as(const QString& proposed);
    // Brings the copy for after a crash up to date, where there is anything unsaved.
    void keep_copy();
    // The program ends without asking: what was not saved is left in the copy.
    void leave_copy();
    // Takes the notes of a copy that was left behind; it is this document's from then on.
    void take_copy(std::unique_ptr<qt_copy> left);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // What a person says of what a MIDI file cannot hold.
    enum class loss { agreed, as_score, cancelled };
    loss ask_to_lose(const std::string& to);
    bool write(const QString& file);
    QString called() const;
    void make_actions();
    void make_menus();
    void fill_file_menu(QMenu* menu);
    void fill_edit_menu(QMenu* menu);
    void fill_play_menu(QMenu* menu);
    void fill_view_menu(QMenu* menu);
    void fill_help_menu(QMenu* menu);
    void fill_roles(QMenu* menu);
    void fill_tracks(QMenu* menu);
    void show_patch();
    void show_transport();
    void look_at_input(desk_mode mode);
    void go_along(const desk_transport& t);
    void act(const std::function<std::string()>& does);
    void record();
    bool choose_part();
    void toggle_play();
    void change_speed(double factor);
    template <class Does> void edit(Does does);

    qt_desktop& desktop;
    std::unique_ptr<desk_document> shown;
    std::unique_ptr<qt_copy> copy;
    qt_score_view* score;
    QPointer<qt_patch_window> patch;
    qt_transport_actions on;
    qt_transport_bar* bar = nullptr;
    QLabel* counts;
    QLabel* devices;
    QTimer* ticks;
    std::set<std::string> agreed_to_lose; // what may be left out of a MIDI file
    QString restored_name;                // what a document that was taken from a copy was called
    QString input_trouble;                // said of the input last
    int turns = 0;
    desk_mode last_mode = desk_mode::idle;
    bool goes_along = true; // the picture, with the position while it plays
    std::int32_t last_line = -1;
};
