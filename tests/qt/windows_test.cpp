// tests/qt/windows_test.cpp: the desktop's windows without a screen: menus, shortcuts, names for whoever cannot see, what is
// remembered.
// Test layer.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QMouseEvent>
#include <QScreen>
#include <QStatusBar>
#include <QTextBrowser>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include "app/editor.h"
#include "core/instance.h"
#include "host/desktop/descriptions.h"
#include "host/desktop/qt_desktop.h"
#include "host/desktop/qt_editor_window.h"
#include "host/desktop/qt_inspector.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_score_view.h"
#include "host/kernel/windows.h"

namespace {

// One application a process, which Qt wants; gone before what Qt itself keeps until the process ends.
class one_application : public testing::Environment {
protected:
    void SetUp() override {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        app = std::make_unique<QApplication>(argc, argv);
        QApplication::setOrganizationName("brisolan");
        QApplication::setApplicationName("brisolan");
    }
    void TearDown() override { app.reset(); }

private:
    int argc = 1;
    char name[8] = "test_qt";
    char* argv[2] = {name, nullptr};
    std::unique_ptr<QApplication> app;
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new one_application);

class windows_test : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "brisolan-windows-XXXXXX").string();
        folder = mkdtemp(name.data());
        for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME"})
            setenv(place, folder.c_str(), 1);
        start();
        // Where settings lie is asked for once a process: those of the test before are still there.
        desktop->settings().clear();
    }
    void TearDown() override {
        end();
        std::filesystem::remove_all(folder);
    }

    void start() {
        program = std::make_unique<editor>(qt_host_hooks());
        qt_take_toolbox();
        desktop = std::make_unique<qt_desktop>(*program);
    }
    void end() {
        desktop.reset();
        program.reset();
    }

    // Everything that is due is done.
    static void settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }

    static brisolan* score(qt_editor_window& w) { return static_cast<brisolan*>(w.document().score()); }

    static QMenu* menu(qt_editor_window& w, const QString& title) {
        for (QAction* a : w.menuBar()->actions()) {
            if (a->text().remove('&') == title) return a->menu();
        }
        ADD_FAILURE() << "no menu " << title.toStdString();
        return nullptr;
    }
    static QAction* action(QMenu* in, const QString& text) {
        for (QAction* a : in->actions()) {
            if (a->text().remove('&') == text) return a;
        }
        ADD_FAILURE() << "no item " << text.toStdString();
        return nullptr;
    }

    // Does something that asks, and answers by the button of this text; what was asked.
    static QString answer(const QString& button, const std::function<void()>& does) {
        QString told;
        QTimer::singleShot(0, [&] {
            QWidget* const box = QApplication::activeModalWidget();
            ASSERT_NE(box, nullptr);
            for (const QLabel* label : box->findChildren<QLabel*>()) told += label->text() + ' ';
            for (QAbstractButton* b : box->findChildren<QAbstractButton*>()) {
                if (b->text().remove('&') == button) return b->click();
            }
            box->close();
            FAIL() << "no button " << button.toStdString();
        });
        does();
        EXPECT_FALSE(told.isEmpty()) << "nothing was asked";
        return told;
    }

    std::string example() const { return std::string(BRISOLAN_SOURCE_DIR) + "/examples/invention-in-c.mid"; }

    std::filesystem::path folder;
    std::unique_ptr<editor> program;
    std::unique_ptr<qt_desktop> desktop;
};

// Every item of a menu and of the menus in it, filled as a person would see them.
void each_item(QMenu* in, const std::function<void(QMenu*, QAction*)>& visit) {
    emit in->aboutToShow();
    const QList<QAction*> items = in->actions();
    for (QAction* a : items) {
        if (a->isSeparator()) continue;
        visit(in, a);
        if (a->menu()) each_item(a->menu(), visit);
    }
    emit in->aboutToHide();
}

QChar mnemonic(const QString& text) {
    const qsizetype at = text.indexOf('&');
    return at >= 0 && at + 1 < text.size() ? text[at + 1].toLower() : QChar();
}

TEST_F(windows_test, no_two_items_have_the_same_key_and_each_menu_can_be_used_by_letters) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    ASSERT_NE(w, nullptr);
    std::set<QString> keys;
    std::set<QChar> letters;
    int items = 0;
    for (QAction* top : w->menuBar()->actions()) {
        EXPECT_TRUE(letters.insert(mnemonic(top->text())).second) << top->text().toStdString();
        std::map<QMenu*, std::set<QChar>> used;
        each_item(top->menu(), [&](QMenu* in, QAction* a) {
            ++items;
            for (const QKeySequence& key : a->shortcuts())
                EXPECT_TRUE(keys.insert(key.toString()).second)
                    << key.toString().toStdString() << ": " << a->text().toStdString();
            const QChar letter = mnemonic(a->text());
            EXPECT_TRUE(letter.isNull() || used[in].insert(letter).second) << a->text().toStdString();
        });
    }
    EXPECT_GT(items, 60);
    EXPECT_GT(keys.size(), 30U);
}

TEST_F(windows_test, the_page_of_keys_has_every_key_of_the_menus) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    desktop->show_help(w);
    QString page;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (const auto* const text = top->findChild<QTextBrowser*>()) page = text->toPlainText();
    }
    int keys = 0;
    for (QAction* top : w->menuBar()->actions()) {
        each_item(top->menu(), [&](QMenu*, QAction* a) {
            for (const QKeySequence& key : a->shortcuts()) {
                ++keys;
                EXPECT_TRUE(page.contains(key.toString(QKeySequence::NativeText)))
                    << key.toString().toStdString();
            }
        });
    }
    EXPECT_GT(keys, 30);
    EXPECT_TRUE(page.contains("View > Show patch")) << page.toStdString();
}

TEST_F(windows_test, whoever_cannot_see_is_told_what_each_control_is) {
    qt_editor_window* const w = desktop->new_document();
    for (QWidget* widget : w->findChildren<QWidget*>()) {
        const bool control = qobject_cast<QAbstractSlider*>(widget) ||
                             qobject_cast<QAbstractSpinBox*>(widget) || qobject_cast<QComboBox*>(widget) ||
                             dynamic_cast<qt_score_view*>(widget);
        EXPECT_FALSE(control && widget->accessibleName().isEmpty()) << widget->metaObject()->className();
    }
    // The dialog of the parameters, closed again from inside of its loop.
    bool looked = false;
    QTimer::singleShot(0, [&looked] {
        QWidget* const dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        for (QWidget* widget : dialog->findChildren<QWidget*>()) {
            const bool field =
                (qobject_cast<QLineEdit*>(widget) && !qobject_cast<QAbstractSpinBox*>(widget->parent())) ||
                qobject_cast<QAbstractSpinBox*>(widget) || qobject_cast<QComboBox*>(widget);
            EXPECT_FALSE(field && widget->accessibleName().isEmpty()) << widget->metaObject()->className();
        }
        looked = true;
        dialog->close();
    });
    w->inspect();
    EXPECT_TRUE(looked);
}

// What is drawn by a queued redraw, after the command itself has come back, is on the screen as well.
TEST_F(windows_test, the_screen_shows_what_an_edit_command_leads_to) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    qt_start_turns(program->wake_fd(), [this] { program->turn(); });
    settle();
    QMenu* const edit = menu(*w, "Edit");
    for (const char* command : {"Select all", "Copy", "Paste", "Clear", "Paste"}) {
        emit edit->aboutToShow();
        action(edit, command)->trigger();
        settle();
        auto* const view = w->findChild<qt_score_view*>();
        ASSERT_NE(view, nullptr);
        const QPoint place = view->mapTo(w, QPoint(0, 0));
        const QPixmap on_screen =
            w->screen()->grabWindow(w->winId(), place.x(), place.y(), view->width(), view->height());
        EXPECT_EQ(on_screen.toImage().convertToFormat(QImage::Format_RGB32),
                  view->grab().toImage().convertToFormat(QImage::Format_RGB32))
            << command;
    }
    qt_start_turns(-1, nullptr);
}

TEST_F(windows_test, the_edit_menu_offers_what_the_object_can_do) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    settle();
    QMenu* const edit = menu(*w, "Edit");
    emit edit->aboutToShow();
    EXPECT_FALSE(action(edit, "Cut")->isEnabled());
    EXPECT_FALSE(action(edit, "Clear")->isEnabled());
    EXPECT_TRUE(action(edit, "Select all")->isEnabled());
    emit edit->aboutToHide();
    settle();
    EXPECT_TRUE(action(edit, "Cut")->isEnabled()) << "or its key would be dead";
    action(edit, "Select all")->trigger();
    emit edit->aboutToShow();
    EXPECT_TRUE(action(edit, "Cut")->isEnabled());
    action(edit, "Cut")->trigger();
    EXPECT_EQ(score(*w)->events, nullptr);
    EXPECT_TRUE(w->document().unsaved());
    emit edit->aboutToShow();
    EXPECT_TRUE(action(edit, "Paste")->isEnabled());
    action(edit, "Paste")->trigger();
    EXPECT_EQ(score(*w)->nevents, 458);
}

TEST_F(windows_test, a_view_that_is_hidden_under_the_pressed_button_ends_the_drag) {
    qt_editor_window* const w = desktop->new_document();
    settle();
    qt_score_view* view = nullptr;
    for (QWidget* widget : w->findChildren<QWidget*>()) {
        if (auto* found = dynamic_cast<qt_score_view*>(widget)) view = found;
    }
    ASSERT_NE(view, nullptr);
    const QPointF at(view->width() / 2.0, view->height() / 4.0);
    QMouseEvent press(QEvent::MouseButtonPress, at, view->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(view, &press);
    ASSERT_EQ(kel_drag_window(), score(*w)->window);
    ASSERT_EQ(score(*w)->dragkind, 7) << "a new event is drawn";
    view->hide();
    settle();
    EXPECT_EQ(kel_drag_window(), nullptr);
    EXPECT_EQ(score(*w)->dragkind, 0);
}

TEST_F(windows_test, a_drag_that_comes_all_at_once_with_its_release_still_counts) {
    constexpr QPointF VEL_IN_LEGEND(234, 10);
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    settle();
    action(menu(*w, "Edit"), "Select all")->trigger();
    qt_score_view& view = w->view();
    const auto mouse = [&view](QEvent::Type type, QPointF at, Qt::MouseButtons held) {
        QMouseEvent e(type, at, view.mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(&view, &e);
    };
    const std::int32_t shown = score(*w)->params[PARAM_VEL].defvalue;
    // The press does not return before its loop is over.
    QTimer::singleShot(0, [&] {
        mouse(QEvent::MouseMove, VEL_IN_LEGEND - QPointF(0, 5), Qt::LeftButton);
        mouse(QEvent::MouseMove, VEL_IN_LEGEND - QPointF(0, 10), Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, VEL_IN_LEGEND - QPointF(0, 10), Qt::NoButton);
    });
    mouse(QEvent::MouseButtonPress, VEL_IN_LEGEND, Qt::LeftButton);
    EXPECT_EQ(score(*w)->events->vel, shown + 10);
}

TEST_F(windows_test, view_items_change_what_the_editor_shows) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    QMenu* const view = menu(*w, "View");
    const std::int32_t before = score(*w)->xzoom;
    action(view, "Zoom in")->trigger();
    EXPECT_EQ(score(*w)->xzoom, before / 2);
    action(view, "Whole score")->trigger();
    EXPECT_GT(score(*w)->xzoom, before / 2);
    emit view->aboutToShow();
    EXPECT_FALSE(action(view, "Note names")->isChecked());
    action(view, "Note names")->trigger();
    EXPECT_EQ(score(*w)->params[PARAM_PITCH].notenames, 1);
    EXPECT_EQ(score(*w)->yparam, static_cast<int>(PARAM_PITCH)) << "and its role stays";
    QMenu* const tracks = action(view, "Tracks")->menu();
    emit tracks->aboutToShow();
    action(tracks, "Track 2")->trigger();
    EXPECT_EQ(score(*w)->trackshown[1], 0);
    QMenu* const roles = action(view, "Roles")->menu();
    emit roles->aboutToShow();
    action(action(roles, "Vel")->menu(), "Vertical axis")->trigger();
    EXPECT_EQ(score(*w)->yparam, static_cast<int>(PARAM_VEL));
}

TEST_F(windows_test, a_description_keeps_the_role_that_it_does_not_change) {
    qt_editor_window* const w = desktop->new_document();
    std::vector<parameter_description> before = ask_descriptions(score(*w)).parameters;
    ASSERT_EQ(before.size(), 8U);
    for (int i = 0; i < 8; ++i) {
        parameter_description d = before[static_cast<std::size_t>(i)];
        d.max = 100 + i;
        d.value = 50;
        send_description(score(*w), i, d);
        before[static_cast<std::size_t>(i)] = d;
    }
    EXPECT_EQ(ask_descriptions(score(*w)).parameters, before);
    EXPECT_EQ(score(*w)->labelparam, static_cast<int>(PARAM_VEL));
}

TEST_F(windows_test, a_document_is_shown_as_it_was_saved) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    w->document().set_role(PARAM_VEL, ROLE_VERTICAL);
    w->document().set_role(PARAM_CHAN, ROLE_LABEL);
    std::vector<int> roles;
    for (int i = 0; i < NPARAMS; ++i) roles.push_back(w->document().role(i));
    for (const char* name : {"a.kel", "a.kelb"}) {
        const std::string file = (folder / name).string();
        ASSERT_EQ(w->document().save(file), "");
        EXPECT_FALSE(w->document().unsaved());
        std::string why;
        const std::unique_ptr<desk_document> again = program->open(file, why);
        ASSERT_NE(again, nullptr) << why;
        for (int i = 0; i < NPARAMS; ++i) EXPECT_EQ(again->role(i), roles[static_cast<std::size_t>(i)]) << i;
        EXPECT_EQ(static_cast<brisolan*>(again->score())->yparam, static_cast<int>(PARAM_VEL));
        again->remember();
        EXPECT_FALSE(again->unsaved());
    }
}

TEST_F(windows_test, unsaved_is_what_would_be_saved_otherwise) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    desk_document& d = w->document();
    d.remember();
    EXPECT_FALSE(d.unsaved());
    event* const first = score(*w)->events;
    first->vel += 1;
    EXPECT_TRUE(d.unsaved());
    first->vel -= 1;
    EXPECT_FALSE(d.unsaved());
    d.set_role(PARAM_VEL, ROLE_VERTICAL);
    EXPECT_FALSE(d.unsaved()) << "how it is shown is not the piece";
    first->x1 = 7;
    EXPECT_TRUE(d.unsaved()) << "or it would be lost at the closing without a word";
    ASSERT_EQ(d.save((folder / "b.kel").string()), "");
    first->x1 = 8;
    EXPECT_TRUE(d.unsaved()) << "a document has";
}

using lost_things = std::vector<std::string>;

TEST_F(windows_test, recording_and_following_without_an_input_say_how_to_choose_one) {
    qt_editor_window* w = desktop->new_document();
    const auto told = [&w] { return w->statusBar()->currentMessage() + w->statusBar()->toolTip(); };
    w->resize(1040, 680);
    settle();
    w->statusBar()->clearMessage();
    action(menu(*w, "Play"), "Record")->trigger();
    EXPECT_TRUE(told().contains("no note can come in", Qt::CaseInsensitive) ||
                told().contains("MIDI > Input"))
        << told().toStdString();
    action(menu(*w, "Play"), "Stop")->trigger();
    EXPECT_TRUE(w->statusBar()->currentMessage().isEmpty()) << "it is no trouble any more";
    w = desktop->open_file(QString::fromStdString(example()));
    settle();
    w->statusBar()->clearMessage();
    action(menu(*w, "Play"), "Follow")->trigger();
    EXPECT_FALSE(told().isEmpty());
}

TEST_F(windows_test, a_window_is_no_larger_than_its_screen) {
    qt_editor_window* const w = desktop->new_document();
    const QSize screen = w->screen()->availableSize();
    w->resize(screen + QSize(300, 300));
    w->close();
    settle();
    const QSize again = desktop->new_document()->size();
    EXPECT_LE(again.width(), screen.width());
    EXPECT_LE(again.height(), screen.height());
}

TEST_F(windows_test, one_note_is_told_as_one) {
    const std::string file = (folder / "one.kel").string();
    std::ofstream(file) << "#N brisolan;\n#X restore;\n#X 0 60 64 300 1 1 0 0;\n#X stop;\n";
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(file));
    ASSERT_NE(w, nullptr);
    QString counted;
    for (const QLabel* label : w->statusBar()->findChildren<QLabel*>()) {
        if (label->accessibleName() == "Notes") counted = label->text();
    }
    EXPECT_EQ(counted, "1 note");
}

TEST_F(windows_test, what_a_midi_file_cannot_hold_is_told) {
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(example()));
    desk_document& d = w->document();
    const lost_things of_the_file{
        "what the file held beside notes: program changes, tempo, meter, key, names and texts"};
    EXPECT_EQ(d.lost_in(d.file()), of_the_file);
    EXPECT_EQ(d.lost_in((folder / "b.kel").string()), lost_things{});
    ASSERT_EQ(d.save((folder / "b.mid").string()), "");
    EXPECT_EQ(d.lost_in(d.file()), lost_things{}) << "the file that is there now holds notes alone";
    score(*w)->events->x2 = 7;
    EXPECT_EQ(d.lost_in(d.file()), lost_things{"the values of X1 and X2"});
    score(*w)->events->pitch = 128;
    EXPECT_EQ(d.lost_in(d.file()).size(), 2U);
    // Beyond the range of the tracks, of which a file has one each.
    score(*w)->events->track = 40;
    EXPECT_EQ(d.lost_in(d.file()), (lost_things{"the values of X1 and X2", "pitches beyond 0 to 127",
                                                "which track each note is on"}));
    score(*w)->events->track = 1;
    std::vector<parameter_description> told = ask_descriptions(score(*w)).parameters;
    told[PARAM_X1].name = "Bow";
    send_description(score(*w), PARAM_X1, told[PARAM_X1]);
    EXPECT_EQ(d.lost_in(d.file()), (lost_things{"the values of Bow and X2", "pitches beyond 0 to 127",
                                                "the parameters' names and ranges"}));
}

TEST_F(windows_test, a_person_is_asked_once_before_something_is_left_out_of_a_midi_file) {
    const std::filesystem::path file = folder / "b.mid";
    std::filesystem::copy_file(example(), file);
    qt_editor_window* const w = desktop->open_file(QString::fromStdString(file.string()));
    const auto size = std::filesystem::file_size(file);
    w->document().remember();
    score(*w)->events->x1 = 7;
    QString told;
    told = answer("Cancel", [w] { EXPECT_FALSE(w->save()); });
    EXPECT_TRUE(told.contains("X1")) << told.toStdString();
    EXPECT_TRUE(told.contains("tempo")) << told.toStdString();
    EXPECT_TRUE(told.contains(".kel")) << told.toStdString();
    EXPECT_EQ(std::filesystem::file_size(file), size);
    EXPECT_TRUE(w->document().unsaved());
    answer("Save anyway", [w] { EXPECT_TRUE(w->save()); });
    EXPECT_NE(std::filesystem::file_size(file), size);
    EXPECT_FALSE(w->document().unsaved());
    score(*w)->events->x1 = 8;
    EXPECT_TRUE(w->save()) << "agreed to before";
    score(*w)->events->chan = 17;
    told = answer("Cancel", [w] { EXPECT_FALSE(w->save()); });
    EXPECT_TRUE(told.contains("channels")) << "which was not agreed to";
}

TEST_F(windows_test, recent_files_and_places_are_remembered) {
    qt_editor_window* w = desktop->open_file(QString::fromStdString(example()));
    w->resize(760, 555);
    settle();
    const QSize size = w->size();
    w->close();
    settle();
    end();
    start();
    EXPECT_EQ(desktop->recent(), QStringList{QString::fromStdString(example())});
    w = desktop->open_file(QString::fromStdString(example()));
    EXPECT_EQ(w->size(), size);
    EXPECT_EQ(desktop->open_file(QString::fromStdString(example())), w) << "one window a file";
}

TEST_F(windows_test, the_picture_fills_its_widget_with_whole_pixels) {
    qt_editor_window* const w = desktop->new_document();
    settle();
    for (const int scale : {1, 2, 3}) {
        w->view().set_scale(scale);
        settle();
        const host_window* shown = w->document().editor();
        EXPECT_LE(shown->width * scale, w->view().width() + scale);
        EXPECT_GT(shown->width * scale, w->view().width() - scale);
        // A pixel of the bitmap is a square of the display.
        const QImage picture = w->view().grab().toImage();
        int uneven = 0;
        for (int y = 0; y < picture.height() / scale * scale; y += scale) {
            for (int x = 0; x < picture.width() / scale * scale; x += scale) {
                for (int i = 0; i < scale * scale; ++i)
                    uneven += picture.pixel(x + i % scale, y + i / scale) != picture.pixel(x, y);
            }
        }
        EXPECT_EQ(uneven, 0) << scale;
    }
}

TEST_F(windows_test, a_file_dropped_on_a_window_is_opened) {
    qt_editor_window* const w = desktop->new_document();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(example()))});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w, &drop);
    settle();
    const QStringList recent = desktop->recent();
    EXPECT_EQ(recent, QStringList{QString::fromStdString(example())});
}

TEST_F(windows_test, a_file_that_cannot_be_read_is_told_of_and_opens_no_window) {
    QFile broken(QString::fromStdString((folder / "broken.mid").string()));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("MThd but no more");
    broken.close();
    QString told;
    QTimer::singleShot(0, [&told] {
        QWidget* const box = QApplication::activeModalWidget();
        ASSERT_NE(box, nullptr);
        for (const QObject* child : box->findChildren<QObject*>()) told += child->property("text").toString();
        box->close();
    });
    EXPECT_EQ(desktop->open_file(broken.fileName()), nullptr);
    EXPECT_TRUE(told.contains("broken.mid")) << told.toStdString();
    EXPECT_TRUE(told.contains("damaged")) << told.toStdString();
    EXPECT_TRUE(desktop->recent().isEmpty());
}

} // namespace
