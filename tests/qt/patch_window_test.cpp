// tests/qt/patch_window_test.cpp: the patch window without a screen: what it draws, and what pressing a box does.
// Test layer.
#include <cstdlib>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include "app/session.h"
#include "host/boxes/boxes.h"
#include "host/desktop/qt_patch_window.h"
#include "host/desktop/qt_platform.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "host/kernel/notify.h"
#include "host/kernel/patchfile.h"
#include "host/kernel/windows.h"

namespace {

constexpr const char* TUNE = "#P window 40 40 500 300;\n"
                             "#N message start , 60 64;\n"
                             "#P box 20 30;\n"
                             "#N print said;\n"
                             "#P box 20 120;\n"
                             "#N brisolan tune;\n"
                             "#P box 200 120;\n"
                             "#N comment \"what this is\";\n"
                             "#P box 200 30;\n"
                             "#N receive go;\n"
                             "#P box 20 200 90;\n"
                             "#N unheard of;\n"
                             "#P box 200 200;\n"
                             "#P cord 0 0 1 0;\n"
                             "#P cord 4 0 1 0;\n"
                             "#P cord 2 1 5 3;\n";

class patch_window_test : public testing::Test {
protected:
    void SetUp() override {
        static std::vector<std::string>* told;
        told = &console;
        host_platform machine;
        machine.console = [](void*, console_kind, const char* text) { told->push_back(text); };
        machine.window_shown = [](void* user, host_window* w, bool) {
            static_cast<patch_window_test*>(user)->shown.push_back(w);
        };
        machine.user = this;
        kel_start(kel_timing::virtual_time, &machine);
        load_brisolan();
        boxes_load();
        patch = kel_patcher_new();
    }
    void TearDown() override {
        delete window;
        kel_patcher_free(patch);
        kel_end();
    }

    void open(const char* text, qt_patch_hooks hooks = {}) {
        kel_patcher_build(patch);
        ASSERT_TRUE(kel_patch_parse(patch, text, "tune.kel"));
        console.clear();
        kel_patcher_setchanged(patch, false);
        window = new qt_patch_window(patch, QStringLiteral("tune"), std::move(hooks));
        window->show();
        QApplication::processEvents();
    }

    // The console's lines so far; what the scheduler's level says waits for the main one.
    const std::vector<std::string>& said() {
        kel_run_queue();
        return console;
    }

    QWidget* box(int place) { return window->view().box(place); }

    static void mouse(QWidget* to, QEvent::Type type) {
        const QPointF at = to->rect().center();
        QMouseEvent event(type, at, to->mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(to, &event);
    }
    static void click(QWidget* to) {
        mouse(to, QEvent::MouseButtonPress);
        mouse(to, QEvent::MouseButtonRelease);
    }
    static void double_click(QWidget* to) {
        click(to);
        mouse(to, QEvent::MouseButtonDblClick);
        mouse(to, QEvent::MouseButtonRelease);
    }
    static void key(QWidget* to, int code, bool repeated = false) {
        QKeyEvent down(QEvent::KeyPress, code, Qt::NoModifier, QString(), repeated);
        QApplication::sendEvent(to, &down);
        QKeyEvent up(QEvent::KeyRelease, code, Qt::NoModifier, QString(), repeated);
        QApplication::sendEvent(to, &up);
    }

    std::vector<std::string> console;
    std::vector<host_window*> shown;
    host_patcher* patch = nullptr;
    qt_patch_window* window = nullptr;
};

using lines = std::vector<std::string>;

TEST_F(patch_window_test, boxes_lie_where_the_patch_says) {
    open(TUNE);
    EXPECT_EQ(box(0)->pos(), QPoint(20, 30));
    EXPECT_EQ(box(2)->pos(), QPoint(200, 120));
    EXPECT_EQ(box(4)->width(), 90);
    EXPECT_GE(window->width(), 500);
}

TEST_F(patch_window_test, a_message_box_sends_all_its_messages_once_a_press) {
    open(TUNE);
    click(box(0));
    EXPECT_EQ(said(), (lines{"said: start", "said: 60 64"}));
    double_click(box(0));
    EXPECT_EQ(said().size(), 6U); // fast presses all count
}

TEST_F(patch_window_test, return_enter_and_space_press_and_a_held_key_presses_once) {
    open(TUNE);
    for (const int code : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        console.clear();
        key(box(0), code);
        key(box(0), code, true);
        EXPECT_EQ(said(), (lines{"said: start", "said: 60 64"})) << code;
    }
}

TEST_F(patch_window_test, a_receive_box_sends_a_bang_and_other_boxes_nothing) {
    open(TUNE);
    click(box(4));
    EXPECT_EQ(said(), lines{"said: bang"});
    for (const int place : {1, 3, 5}) {
        double_click(box(place));
        key(box(place), Qt::Key_Return);
    }
    EXPECT_EQ(said(), lines{"said: bang"});
}

TEST_F(patch_window_test, the_scores_box_opens_its_editor_by_a_double_click_or_a_key) {
    open(TUNE);
    click(box(2));
    EXPECT_TRUE(shown.empty());
    double_click(box(2));
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0]->owner, kel_patcher_find(patch, "brisolan"));
    key(box(2), Qt::Key_Return);
    EXPECT_EQ(shown.size(), 2U);
}

TEST_F(patch_window_test, a_press_while_the_kernel_is_busy_does_nothing) {
    int asked = 0;
    qt_patch_hooks hooks;
    hooks.before_press = [&asked] { ++asked; };
    open(TUNE, std::move(hooks));
    {
        const qt_in_kernel busy;
        click(box(0));
    }
    EXPECT_TRUE(said().empty());
    EXPECT_EQ(asked, 0);
    click(box(0));
    EXPECT_EQ(said().size(), 2U);
    EXPECT_EQ(asked, 1);
}

TEST_F(patch_window_test, tab_goes_through_the_boxes_in_the_patchs_order) {
    open(TUNE);
    window->activateWindow();
    QApplication::processEvents();
    box(0)->setFocus();
    for (int place = 1; place < 6; ++place) {
        key(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), box(place)) << place;
    }
}

TEST_F(patch_window_test, boxes_have_names_for_whoever_cannot_see_them) {
    qt_patch_hooks hooks;
    hooks.state = [](host_object*) { return std::string("3 notes, idle"); };
    open(TUNE, std::move(hooks));
    EXPECT_EQ(box(0)->accessibleName(), "message start , 60 64");
    EXPECT_EQ(box(0)->accessibleDescription(), "sends its messages");
    EXPECT_EQ(box(2)->accessibleName(), "brisolan tune");
    EXPECT_EQ(box(2)->accessibleDescription(), "opens its window; 3 notes, idle");
    EXPECT_EQ(box(3)->accessibleName(), "what this is");
    EXPECT_EQ(box(4)->accessibleName(), "receive go");
    EXPECT_EQ(box(5)->accessibleName(), "unheard of");
    EXPECT_EQ(box(5)->accessibleDescription(), "broken box");
    static_cast<QAbstractButton*>(box(0))->click(); // as an aid for them presses it
    EXPECT_EQ(said().size(), 2U);
}

TEST_F(patch_window_test, inlets_and_outlets_are_those_of_the_object_or_of_a_broken_boxs_cords) {
    open(TUNE);
    qt_patch_view& v = window->view();
    EXPECT_EQ(v.inlets(2), 8);
    EXPECT_EQ(v.outlets(2), 8);
    EXPECT_EQ(v.outlets(0), 1);
    EXPECT_EQ(v.inlets(3), 0);
    EXPECT_EQ(v.inlets(5), 4);
    EXPECT_EQ(v.outlets(5), 0);
    EXPECT_EQ(v.port_help(2, false, 1), "Pitch Parameter Output");
    EXPECT_EQ(v.port_help(5, true, 1), "");
}

// Cords whose boxes, inlets or outlets are not there are kept by the patch; none of them may be drawn where nothing is.
TEST_F(patch_window_test, a_patch_of_wrong_cords_and_far_boxes_is_drawn) {
    open("#N message hello;\n#P box -50 -20;\n#N what;\n#P box 30000 40;\n"
         "#P cord 0 0 7 0;\n#P cord -1 0 0 0;\n#P cord 0 9 1 2000000000;\n#P cord 0 -4 1 0;\n#P cord 1 0 0 "
         "-1;\n");
    EXPECT_EQ(box(0)->pos(), QPoint(0, 0));
    EXPECT_EQ(window->view().inlets(1), 64);
    EXPECT_FALSE(window->grab().isNull());
}

TEST_F(patch_window_test, a_cord_is_drawn_from_outlet_to_inlet_in_light_and_in_dark) {
    open(TUNE);
    for (const bool dark : {false, true}) {
        QPalette colours;
        colours.setColor(QPalette::Base, dark ? QColor(30, 30, 30) : QColor(255, 255, 255));
        colours.setColor(QPalette::Text, dark ? QColor(230, 230, 230) : QColor(0, 0, 0));
        window->setPalette(colours);
        QApplication::processEvents();
        window->view().set_lit(-1);
        const QImage picture = window->view().grab().toImage();
        // Halfway down from the message box to the print box, straight below the one outlet: the cord; beside it nothing.
        const int y = (box(0)->geometry().bottom() + box(1)->y()) / 2;
        const auto contrast = [&](int x) {
            return std::abs(picture.pixelColor(x, y).lightness() - (dark ? 30 : 255));
        };
        int strongest = 0;
        for (int x = 20; x < 50; ++x) strongest = std::max(strongest, contrast(x));
        EXPECT_GT(strongest, 60) << dark;
        EXPECT_EQ(contrast(150), 0) << dark;
    }
}

TEST_F(patch_window_test, two_scores_of_one_patch_tell_each_others_listeners) {
    open("#N brisolan left;\n#P box 20 20;\n#N brisolan right;\n#P box 200 20;\n"
         "#N message restore , 0 60 64 300 1 1 0 0 , stop;\n#P box 20 120;\n"
         "#N receive ear1;\n#N receive ear2;\n#N print left;\n#N print right;\n"
         "#P cord 2 0 0 0;\n#P cord 3 0 5 0;\n#P cord 4 0 6 0;\n");
    host_object* const left = kel_patcher_patch(patch).boxes[0].object;
    host_object* const right = kel_patcher_patch(patch).boxes[1].object;
    EXPECT_EQ(host_symbol("left")->thing, left);
    EXPECT_EQ(host_symbol("right")->thing, right);
    // Which of them a window belongs to is told by its owner.
    double_click(box(0));
    double_click(box(1));
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0]->owner, left);
    EXPECT_EQ(shown[1]->owner, right);
    click(box(2));
    EXPECT_EQ(static_cast<const brisolan*>(left)->nevents, 1);
    EXPECT_EQ(static_cast<const brisolan*>(right)->nevents, 0);

    // What is edited in one score's window reaches those who listen to it, and nobody else.
    for (int place : {0, 1}) {
        kel_listen(kel_patcher_patch(patch).boxes[static_cast<std::size_t>(3 + place)].object,
                   host_symbol(place == 0 ? "left" : "right"));
    }
    constexpr int ARROW_UP = 30;
    said();
    for (const int place : {0, 1}) {
        console.clear();
        kel_window_key(shown[static_cast<std::size_t>(place)], ARROW_UP);
        EXPECT_EQ(said(), lines{place == 0 ? "left: tabchanged" : "right: tabchanged"});
    }
}

TEST_F(patch_window_test, saving_is_offered_only_where_it_can_be_done_and_marks_the_window) {
    std::string written;
    qt_patch_hooks hooks;
    hooks.file = [] { return std::string("/tmp/tune.kel"); };
    hooks.save = [&](const std::string& to) {
        written = to;
        kel_patcher_setchanged(patch, false);
        return std::string();
    };
    open(TUNE, std::move(hooks));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_TRUE(window->windowTitle().startsWith("tune.kel"));
    kel_patcher_setchanged(patch, true);
    EXPECT_TRUE(window->save());
    EXPECT_EQ(written, "/tmp/tune.kel");
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_TRUE(window->may_close());
}

} // namespace
