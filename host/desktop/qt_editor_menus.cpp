// host/desktop/qt_editor_menus.cpp: the menus of a score's window.
// Layer: desktop platform, Qt.
#include <QActionGroup>
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>

#include "host/desktop/qt_desktop.h"
#include "host/desktop/qt_editor_window.h"
#include "host/desktop/qt_file_kinds.h"
#include "host/desktop/qt_menu_items.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_score_view.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"

namespace {

constexpr int NPARAMETERS = 8;
constexpr int LARGEST_SCALE = 3;
constexpr double SPEED_STEP = 1.1;

// The display roles that a parameter may have.
constexpr const char* ROLES[] = {"None", "Time axis", "Vertical axis", "Label", "Bar length"};

} // namespace

// An Edit command, sent to the object by the host.
template <class Does> void qt_editor_window::edit(Does does) {
    if (qt_kernel_busy()) return;
    shown->remember();
    {
        const qt_in_kernel now;
        const kel_in_port port(shown->editor());
        does(shown->score());
    }
    score->drawn();
}

void qt_editor_window::make_actions() {
    const auto make = [this](const QString& text, const QKeySequence& key, bool checkable,
                             std::function<void()> does) {
        auto* const a = new QAction(text, this);
        a->setShortcut(key);
        a->setCheckable(checkable);
        QString tip = text;
        a->setToolTip(tip.remove('&').remove(QStringLiteral("…")) + QStringLiteral(" (") +
                      key.toString(QKeySequence::NativeText) + QStringLiteral(")"));
        connect(a, &QAction::triggered, this, [this, does = std::move(does)] {
            if (!qt_kernel_busy()) does();
            show_transport();
        });
        return a;
    };
    on.to_start = make(QStringLiteral("To the &beginning"), Qt::Key_Home, false, [this] {
        act([this] {
            shown->stop();
            shown->go_to(0);
            return std::string();
        });
    });
    on.play = make(QStringLiteral("&Play"), Qt::Key_Space, true, [this] { toggle_play(); });
    on.stop = make(QStringLiteral("&Stop"), Qt::Key_Escape, false, [this] {
        act([this] {
            shown->stop();
            return std::string();
        });
    });
    on.record =
        make(QStringLiteral("&Record"), QKeySequence(QStringLiteral("Ctrl+R")), true, [this] { record(); });
    on.follow = make(QStringLiteral("&Follow"), QKeySequence(QStringLiteral("Ctrl+Shift+F")), true, [this] {
        const desk_transport t = shown->transport();
        if (t.mode != desk_mode::following && !choose_part()) return;
        act([this, t] {
            if (t.mode != desk_mode::following) return shown->follow(t.position);
            shown->stop();
            return std::string();
        });
    });
    on.step = make(QStringLiteral("S&tep"), Qt::Key_Period, false,
                   [this] { act([this] { return shown->step(); }); });
}

void qt_editor_window::toggle_play() {
    const desk_transport t = shown->transport();
    act([this, t] {
        if (t.mode == desk_mode::idle) return shown->play(t.position);
        shown->stop();
        return std::string();
    });
}

// Where no note is the player's, asks which track is. False when that was called off.
bool qt_editor_window::choose_part() {
    if (shown->empty() || shown->has_part()) return true;
    QStringList names;
    std::vector<int> numbers;
    for (const desk_track& t : shown->tracks()) {
        names.append(QStringLiteral("Track %1").arg(t.number));
        numbers.push_back(t.number);
    }
    bool chosen = false;
    const QString name =
        QInputDialog::getItem(this, QStringLiteral("Follow"),
                              QStringLiteral("Notes on channel 1 are the player's part, and there are none.\n"
                                             "Which track is to be put on channel 1?"),
                              names, 0, false, &chosen);
    if (!chosen) return false;
    shown->remember();
    const qt_in_kernel now;
    shown->give_part(numbers[static_cast<std::size_t>(names.indexOf(name))]);
    return true;
}

// Recording empties the score: a person who has notes in it is asked.
void qt_editor_window::record() {
    if (shown->transport().mode == desk_mode::recording) {
        act([this] {
            shown->stop();
            return std::string();
        });
        return;
    }
    if (shown->empty()) {
        act([this] { return shown->record(); });
        return;
    }
    QMessageBox box(
        QMessageBox::Question, QStringLiteral("Record"),
        QStringLiteral("Recording begins an empty score: the notes in this one would be deleted."),
        QMessageBox::Cancel, this);
    QPushButton* const other =
        box.addButton(QStringLiteral("Record in a &new window"), QMessageBox::AcceptRole);
    QPushButton* const here =
        box.addButton(QStringLiteral("&Delete them and record"), QMessageBox::DestructiveRole);
    box.setDefaultButton(other);
    box.exec();
    if (box.clickedButton() == here) act([this] { return shown->record(); });
    if (box.clickedButton() != other) return;
    if (qt_editor_window* const w = desktop.new_document()) w->act([w] { return w->shown->record(); });
}

void qt_editor_window::change_speed(double factor) {
    const double speed = factor == 0 ? 1 : shown->transport().speed * factor;
    shown->set_speed(std::min(std::max(speed, 0.25), 4.0));
    show_transport();
}

void qt_editor_window::make_menus() {
    fill_file_menu(menuBar()->addMenu(QStringLiteral("&File")));
    fill_edit_menu(menuBar()->addMenu(QStringLiteral("&Edit")));
    fill_play_menu(menuBar()->addMenu(QStringLiteral("&Play")));
    desktop.devices().fill_menu(menuBar()->addMenu(QStringLiteral("&MIDI")), [this] {
        act([this] {
            shown->stop();
            desktop.program().panic();
            return std::string();
        });
    });
    fill_view_menu(menuBar()->addMenu(QStringLiteral("&View")));
    fill_help_menu(menuBar()->addMenu(QStringLiteral("&Help")));
}

void qt_editor_window::fill_file_menu(QMenu* menu) {
    qt_add_item(menu, QStringLiteral("&New"), QKeySequence::New, [this] { desktop.new_document(); });
    qt_add_item(menu, QStringLiteral("&Open…"), QKeySequence::Open, [this] { desktop.ask_to_open(this); });
    QMenu* const recent = menu->addMenu(QStringLiteral("Open &recent"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] {
        recent->clear();
        for (const QString& file : desktop.recent()) {
            QAction* const a = recent->addAction(QFileInfo(file).fileName().replace('&', "&&"));
            a->setToolTip(file);
            a->setStatusTip(file);
            connect(a, &QAction::triggered, this, [this, file] { desktop.open_file(file, this); });
        }
        recent->addSeparator();
        QAction* const forget = recent->addAction(QStringLiteral("&Forget these"));
        forget->setEnabled(!desktop.recent().isEmpty());
        connect(forget, &QAction::triggered, this, [this] { desktop.clear_recent(); });
    });
    menu->addSeparator();
    qt_add_item(menu, QStringLiteral("&Save"), QKeySequence::Save, [this] { save(); });
    qt_add_item(menu, QStringLiteral("Save &as…"), QKeySequence(QStringLiteral("Ctrl+Shift+S")),
                [this] { save_as(); });
    QMenu* const exported = menu->addMenu(QStringLiteral("&Export as MIDI file"));
    const auto to_midi = [this](int format, bool timecode) {
        const QString name = QFileInfo(QString::fromStdString(shown->title())).completeBaseName();
        const QString chosen = qt_ask_where_to_save(this, name + QStringLiteral(".mid"), {&TYPE_MIDI, 1});
        if (chosen.isEmpty()) return;
        const std::string why = shown->export_midi(QFile::encodeName(chosen).toStdString(), format, timecode);
        if (why.empty())
            say(QStringLiteral("Exported ") + QFileInfo(chosen).fileName());
        else
            QMessageBox::warning(this, QStringLiteral("Not exported"), QString::fromStdString(why));
    };
    qt_add_item(exported, QStringLiteral("A track for each &track…"), QKeySequence(QStringLiteral("Ctrl+E")),
                [to_midi] { to_midi(1, false); });
    qt_add_item(exported, QStringLiteral("All in &one track…"), {}, [to_midi] { to_midi(0, false); });
    qt_add_item(exported, QStringLiteral("With times to the &millisecond…"), {},
                [to_midi] { to_midi(-1, true); });
    menu->addSeparator();
    qt_add_item(menu, QStringLiteral("&Close"), QKeySequence::Close, [this] { close(); });
    qt_add_item(menu, QStringLiteral("&Quit"), QKeySequence(QStringLiteral("Ctrl+Q")),
                [this] { desktop.quit(); });
}

void qt_editor_window::fill_edit_menu(QMenu* menu) {
    qt_add_edit_items(menu, shown->editor(), [this](auto does) { edit(does); });
    menu->addSeparator();
    QMenu* const tools = menu->addMenu(QStringLiteral("T&ool"));
    auto* const group = new QActionGroup(tools);
    int number = 0;
    for (const char* name : {"&Arrow", "&Magnifier", "&Tweak", "&Pencil"}) {
        QAction* const a = qt_add_item(tools, QString::fromLatin1(name), Qt::Key_1 + number,
                                       [this, number] { shown->set_tool(number); });
        a->setCheckable(true);
        group->addAction(a);
        ++number;
    }
    connect(tools, &QMenu::aboutToShow, this,
            [this, group] { group->actions().at(shown->tool())->setChecked(true); });
}

void qt_editor_window::fill_play_menu(QMenu* menu) {
    menu->addActions({on.play, on.stop});
    qt_add_item(menu, QStringLiteral("Play from the se&lection"), QKeySequence(QStringLiteral("Shift+Space")),
                [this] { act([this] { return shown->play(-1); }); });
    menu->addActions({on.to_start, on.step});
    menu->addSeparator();
    menu->addActions({on.record, on.follow});
    menu->addSeparator();
    qt_add_item(menu, QStringLiteral("Slo&wer"), Qt::Key_BracketLeft,
                [this] { change_speed(1 / SPEED_STEP); });
    qt_add_item(menu, QStringLiteral("F&aster"), Qt::Key_BracketRight, [this] { change_speed(SPEED_STEP); });
    qt_add_item(menu, QStringLiteral("As wr&itten"), Qt::Key_Backslash, [this] { change_speed(0); });
}

void qt_editor_window::fill_roles(QMenu* menu) {
    menu->clear();
    for (int p = 0; p < NPARAMETERS; ++p) {
        QMenu* const roles =
            menu->addMenu(QString::fromStdString(shown->parameter_name(p)).replace('&', "&&"));
        auto* const group = new QActionGroup(roles);
        for (int r = 0; r < static_cast<int>(std::size(ROLES)); ++r) {
            QAction* const a = roles->addAction(QString::fromLatin1(ROLES[r]));
            a->setCheckable(true);
            a->setChecked(shown->role(p) == r);
            group->addAction(a);
            connect(a, &QAction::triggered, this, [this, p, r] {
                act([this, p, r] {
                    shown->set_role(p, r);
                    return std::string();
                });
            });
        }
    }
}

void qt_editor_window::fill_tracks(QMenu* menu) {
    menu->clear();
    for (const desk_track& t : shown->tracks()) {
        QAction* const a = menu->addAction(QStringLiteral("Track %1").arg(t.number));
        a->setCheckable(true);
        a->setChecked(t.shown);
        connect(a, &QAction::triggered, this, [this, number = t.number](bool wanted) {
            const qt_in_kernel now;
            shown->show_track(number, wanted);
        });
    }
    menu->addSeparator();
    qt_add_item(menu, QStringLiteral("Show &all"), {}, [this] {
        const qt_in_kernel now;
        shown->show_track(0, true);
    });
}

void qt_editor_window::fill_view_menu(QMenu* menu) {
    qt_add_zoom_items(menu, [this](desk_zoom way) {
        if (qt_kernel_busy()) return;
        const qt_in_kernel now;
        shown->zoom(way);
    });
    qt_add_item(menu, QStringLiteral("&Whole score"), QKeySequence(QStringLiteral("Ctrl+0")), [this] {
        const qt_in_kernel now;
        shown->show_all();
    });
    QAction* const along = menu->addAction(QStringLiteral("Go &along while playing"));
    along->setCheckable(true);
    along->setChecked(goes_along);
    connect(along, &QAction::triggered, this, [this](bool wanted) { goes_along = wanted; });
    menu->addSeparator();
    QMenu* const roles = menu->addMenu(QStringLiteral("&Roles"));
    connect(roles, &QMenu::aboutToShow, this, [this, roles] { fill_roles(roles); });
    QMenu* const tracks = menu->addMenu(QStringLiteral("&Tracks"));
    connect(tracks, &QMenu::aboutToShow, this, [this, tracks] { fill_tracks(tracks); });
    const auto toggle = [this, menu](const QString& text, auto is_on, auto set) {
        qt_add_switch(
            menu, text, [this, is_on] { return is_on(*shown); },
            [this, set](bool wanted) {
                shown->remember();
                const qt_in_kernel now;
                set(*shown, wanted);
            });
    };
    toggle(
        QStringLiteral("&Note names"), [](desk_document& d) { return d.note_names(); },
        [](desk_document& d, bool wanted) { d.set_note_names(wanted); });
    toggle(
        QStringLiteral("Mark &black keys"), [](desk_document& d) { return d.black_keys(); },
        [](desk_document& d, bool wanted) { d.set_black_keys(wanted); });
    qt_add_item(menu, QStringLiteral("&Parameters…"), QKeySequence(QStringLiteral("Ctrl+I")),
                [this] { inspect(); });
    menu->addSeparator();
    qt_add_item(menu, QStringLiteral("Show pat&ch"), QKeySequence(QStringLiteral("Ctrl+P")),
                [this] { show_patch(); });
    QMenu* const sizes = menu->addMenu(QStringLiteral("&Size of the picture"));
    auto* const group = new QActionGroup(sizes);
    for (int s = 0; s <= LARGEST_SCALE; ++s) {
        QAction* const a = qt_add_item(
            sizes, s ? QStringLiteral("&%1 ×").arg(s) : QStringLiteral("&By the display"), {}, [this, s] {
                score->set_scale(s);
                desktop.settings().setValue(QT_SCALE_KEY, s);
            });
        a->setCheckable(true);
        a->setChecked(s == score->wanted_scale());
        group->addAction(a);
    }
}

void qt_editor_window::fill_help_menu(QMenu* menu) {
    qt_add_item(menu, QStringLiteral("&Keys and tools"), QKeySequence::HelpContents,
                [this] { desktop.show_help(this); });
    qt_add_item(menu, QStringLiteral("&About brisolan"), {}, [this] { desktop.show_about(this); });
}

// The boxes around the score, through which it plays, records and follows.
void qt_editor_window::show_patch() {
    if (!patch) {
        qt_patch_hooks hooks;
        hooks.before_press = [this] { shown->remember(); };
        hooks.state = [this](host_object* x) { return desktop.program().state_of(x); };
        hooks.desktop = desktop.asks();
        patch =
            new qt_patch_window(shown->patcher(), QStringLiteral("Patch of ") + called(), std::move(hooks));
    }
    patch->show();
    patch->raise();
    patch->activateWindow();
}
