// tests/qt/patch_files_test.cpp: patches opened on the desktop without a screen: their windows, those of their scores, and
// their files.
// Test layer.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QMenuBar>

#include <gtest/gtest.h>

#include "app/editor.h"
#include "app/patch_document.h"
#include "core/instance.h"
#include "host/desktop/qt_desktop.h"
#include "host/desktop/qt_editor_window.h"
#include "host/desktop/qt_patch_window.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_score_window.h"

namespace {

constexpr const char* PATCH = "#P window 40 40 500 300;\n"
                              "#N brisolan inner;\n"
                              "#P box 20 120;\n"
                              "#N message restore , 0 60 64 300 1 1 0 0 , stop;\n"
                              "#P box 20 30;\n"
                              "#N message wclose;\n"
                              "#P box 260 30;\n"
                              "#P cord 1 0 0 0;\n"
                              "#P cord 2 0 0 0;\n";

class patch_files_test : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "brisolan-patches-XXXXXX").string();
        folder = mkdtemp(name.data());
        for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME"})
            setenv(place, folder.c_str(), 1);
        program = std::make_unique<editor>(qt_host_hooks());
        qt_take_toolbox();
        desktop = std::make_unique<qt_desktop>(*program);
    }
    void TearDown() override {
        desktop.reset();
        program.reset();
        std::filesystem::remove_all(folder);
    }

    std::string write(const char* name, const std::string& text) const {
        const std::filesystem::path file = folder / name;
        std::ofstream(file) << text;
        return file.string();
    }
    static std::string contents(const std::string& file) {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

    // Everything that is due is done, by the kernel as well.
    void settle() const {
        for (int i = 0; i < 5; ++i) {
            program->turn();
            QApplication::processEvents();
        }
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // The windows of a kind that can be seen.
    template <class Window> static std::vector<Window*> windows() {
        std::vector<Window*> found;
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (auto* const one = dynamic_cast<Window*>(w); one && one->isVisible()) found.push_back(one);
        }
        return found;
    }
    void press(qt_patch_window* w, int place) const {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(w->view().box(place), &key);
        settle();
    }

    qt_patch_window* open(const std::string& file) {
        desktop->open_file(QString::fromStdString(file));
        settle();
        const std::vector<qt_patch_window*> found = windows<qt_patch_window>();
        return found.empty() ? nullptr : found.back();
    }

    std::filesystem::path folder;
    std::unique_ptr<editor> program;
    std::unique_ptr<qt_desktop> desktop;
};

TEST_F(patch_files_test, a_patch_is_told_from_a_score_by_its_first_line) {
    EXPECT_TRUE(patch_document::is_one(write("a.kel", PATCH)));
    EXPECT_TRUE(patch_document::is_one(write("b.kel", "#N message hello;\n")));
    EXPECT_TRUE(patch_document::is_one(write("c.kel", "\n  #P box 1 2;\n")));
    EXPECT_FALSE(patch_document::is_one(write("d.kel", "#N brisolan \"\";\n#X restore;\n#X stop;\n")));
    EXPECT_FALSE(patch_document::is_one(write("e.kel", "#N brisolan;\n#X restore;\n#X stop;\n")));
    EXPECT_FALSE(patch_document::is_one(write("f.kel", "")));
    EXPECT_FALSE(patch_document::is_one(write("g.mid", PATCH)));
    EXPECT_FALSE(patch_document::is_one((folder / "nothing.kel").string()));
    EXPECT_FALSE(patch_document::is_one(folder.string()));
}

TEST_F(patch_files_test, a_patch_opens_once_in_a_window_of_its_own) {
    const std::string file = write("mine.kel", PATCH);
    qt_patch_window* const w = open(file);
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(windows<qt_editor_window>().empty());
    EXPECT_TRUE(desktop->any_patch());
    EXPECT_TRUE(w->windowTitle().startsWith("mine.kel"));
    EXPECT_EQ(open(file), w);
    EXPECT_EQ(windows<qt_patch_window>().size(), 1U);
    EXPECT_EQ(desktop->recent().first(), QString::fromStdString(file));
    w->close();
    settle();
    EXPECT_FALSE(desktop->any_patch());
}

TEST_F(patch_files_test, its_score_opens_in_an_editor_that_closes_again_by_itself_or_by_a_message) {
    qt_patch_window* const w = open(write("mine.kel", PATCH));
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->view().box(0)->accessibleDescription(), "opens its window; 0 notes, idle");
    press(w, 1);
    w->view().refresh();
    EXPECT_EQ(w->view().box(0)->accessibleDescription(), "opens its window; 1 note, idle");
    press(w, 0);
    ASSERT_EQ(windows<qt_score_window>().size(), 1U);
    qt_score_window* const score = windows<qt_score_window>().front();
    EXPECT_TRUE(score->shown()->visible);
    EXPECT_TRUE(score->windowTitle().contains("inner")) << score->windowTitle().toStdString();
    score->close();
    settle();
    EXPECT_FALSE(score->shown()->visible);
    EXPECT_TRUE(windows<qt_score_window>().empty());
    press(w, 0);
    EXPECT_EQ(windows<qt_score_window>().size(), 1U);
    press(w, 2);
    EXPECT_TRUE(windows<qt_score_window>().empty());
    // Closed with its score's editor open, nothing is left of either.
    press(w, 0);
    w->close();
    settle();
    EXPECT_TRUE(windows<QWidget>().empty());
}

TEST_F(patch_files_test, the_edit_menu_of_a_patchs_score_edits_it_and_the_patch_is_saved_with_it) {
    const std::string file = write("mine.kel", PATCH);
    qt_patch_window* const w = open(file);
    ASSERT_NE(w, nullptr);
    press(w, 1);
    press(w, 0);
    qt_score_window* const window = windows<qt_score_window>().at(0);
    const auto* const score = static_cast<const brisolan*>(window->shown()->owner);
    QMenu* const menu = window->menuBar()->actions().at(1)->menu();
    const auto choose = [&](const char* text) {
        for (QAction* a : menu->actions()) {
            if (a->text().remove('&') == text) return a->trigger();
        }
        ADD_FAILURE() << "no item " << text;
    };
    choose("Select all");
    choose("Copy");
    choose("Paste");
    EXPECT_EQ(score->nevents, 2);
    settle();
    EXPECT_TRUE(kel_patcher_changed(w->patch()));
    EXPECT_TRUE(w->save());
    EXPECT_FALSE(kel_patcher_changed(w->patch()));
    const std::string saved = contents(file);
    EXPECT_NE(saved.find("#X 0 60 64 300 1 1 0 0;\n#X 0 60 64 300 1 1 0 0;\n"), std::string::npos) << saved;
    EXPECT_NE(saved.find("#P cord 1 0 0 0;"), std::string::npos) << saved;
    choose("Select all");
    choose("Cut");
    EXPECT_EQ(score->nevents, 0);
    kel_patcher_setchanged(w->patch(), false); // or it asks
}

TEST_F(patch_files_test, windows_of_patches_have_help_tools_zoom_and_what_their_menus_offer_can_be_done) {
    const std::string file = write("mine.kel", PATCH);
    qt_patch_window* const w = open(file);
    ASSERT_NE(w, nullptr);
    press(w, 0);
    qt_score_window* const window = windows<qt_score_window>().at(0);
    auto* const score = static_cast<brisolan*>(window->shown()->owner);
    const auto item = [](QMainWindow* of, const char* key) {
        QAction* found = nullptr;
        for (QAction* top : of->menuBar()->actions()) {
            for (QAction* a : top->menu()->actions()) {
                if (a->shortcuts().contains(QKeySequence(QString::fromLatin1(key)))) found = a;
            }
        }
        EXPECT_NE(found, nullptr) << key;
        return found;
    };
    for (const char* key : {"Ctrl+O", "Ctrl+S", "Ctrl+Q", "F1"}) ASSERT_NE(item(w, key), nullptr);
    for (const char* key : {"Ctrl+O", "Ctrl+S", "F1", "1", "4", "Ctrl++", "Ctrl+-"})
        ASSERT_NE(item(window, key), nullptr);
    item(window, "3")->trigger();
    EXPECT_EQ(score->editmode, 2);
    const std::int32_t before = score->xzoom;
    item(window, "Ctrl++")->trigger();
    EXPECT_EQ(score->xzoom, before / 2);
    item(window, "F1")->trigger();
    EXPECT_EQ(windows<QDialog>().size(), 1U);
    windows<QDialog>().front()->close();

    QMenu* const edit = window->menuBar()->actions().at(1)->menu();
    emit edit->aboutToShow();
    EXPECT_FALSE(item(window, "Ctrl+X")->isEnabled());
    emit edit->aboutToHide();
    settle();
    EXPECT_TRUE(item(window, "Ctrl+X")->isEnabled()) << "or its key would be dead";

    press(w, 1);
    ASSERT_EQ(score->nevents, 1);
    item(window, "Ctrl+S")->trigger();
    EXPECT_NE(contents(file).find("#X 0 60 64 300 1 1 0 0;"), std::string::npos) << contents(file);
}

TEST_F(patch_files_test, windows_of_patches_choose_what_the_program_plays_to_and_from) {
    qt_patch_window* const w = open(write("mine.kel", PATCH));
    ASSERT_NE(w, nullptr);
    press(w, 0);
    const auto item = [](QMainWindow* of, const QString& text) {
        QAction* found = nullptr;
        for (QAction* top : of->menuBar()->actions()) {
            if (top->text() != QStringLiteral("&MIDI")) continue;
            emit top->menu()->aboutToShow();
            for (QAction* a : top->menu()->actions()) {
                if (a->text().remove('&').startsWith(text)) found = a;
            }
        }
        EXPECT_NE(found, nullptr) << text.toStdString();
        return found;
    };
    qt_score_window* const score = windows<qt_score_window>().at(0);
    for (const char* text : {"Input", "Output", "Synth", "Hear the input", "Panic"}) {
        ASSERT_NE(item(w, QString::fromLatin1(text)), nullptr);
        ASSERT_NE(item(score, QString::fromLatin1(text)), nullptr);
    }
    EXPECT_FALSE(program->hears_input());
    item(w, QStringLiteral("Hear"))->trigger();
    EXPECT_TRUE(program->hears_input());
    EXPECT_TRUE(item(score, QStringLiteral("Hear"))->isChecked());
    item(score, QStringLiteral("Hear"))->trigger();
    EXPECT_FALSE(program->hears_input());
    QMenu* const outputs = item(w, QStringLiteral("Output"))->menu();
    emit outputs->aboutToShow();
    ASSERT_FALSE(outputs->isEmpty());
    EXPECT_EQ(outputs->actions().back()->text(), QStringLiteral("None"));
    EXPECT_TRUE(outputs->actions().back()->isChecked());
}

TEST_F(patch_files_test, saving_where_that_cannot_be_done_says_why_and_keeps_the_name) {
    const std::string file = write("mine.kel", PATCH);
    std::function<void(const std::string&)> console;
    patch_document d(console);
    EXPECT_EQ(d.start(file), "");
    EXPECT_NE(d.save((folder / "missing" / "mine.kel").string()), "");
    EXPECT_EQ(d.file(), file);
    EXPECT_EQ(d.save((folder / "other.kelb").string()), "");
    EXPECT_EQ(d.file(), (folder / "other.kelb").string());
    EXPECT_NE(patch_document(console).start((folder / "nothing.kel").string()), "");
}

TEST_F(patch_files_test, the_patch_around_an_edited_score_is_shown_and_goes_with_it) {
    desktop->open_file(QString::fromStdString(BRISOLAN_SOURCE_DIR "/examples/invention-in-c.mid"));
    settle();
    ASSERT_EQ(windows<qt_editor_window>().size(), 1U);
    qt_editor_window* const w = windows<qt_editor_window>().front();
    QAction* show = nullptr;
    for (QAction* top : w->menuBar()->actions()) {
        for (QAction* a : top->menu()->actions()) {
            if (a->text().remove('&') == "Show patch") show = a;
        }
    }
    ASSERT_NE(show, nullptr);
    show->trigger();
    show->trigger();
    settle();
    ASSERT_EQ(windows<qt_patch_window>().size(), 1U);
    qt_patch_window* const p = windows<qt_patch_window>().front();
    EXPECT_TRUE(p->windowTitle().startsWith("Patch of invention-in-c.mid")) << p->windowTitle().toStdString();
    EXPECT_EQ(p->patch(), w->document().patcher());
    w->close();
    settle();
    EXPECT_TRUE(windows<qt_patch_window>().empty());
}

} // namespace
