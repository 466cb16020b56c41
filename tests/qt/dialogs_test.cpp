// tests/qt/dialogs_test.cpp: the file dialogs that the object's messages show, without a screen: what they offer and
// propose, what becomes of the choice.
// Test layer.
#include <deque>
#include <functional>

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include "app/editor.h"
#include "core/sequence.h"
#include "host/desktop/qt_platform.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/kernel.h"
#include "tests/support/scratch_folder.h"

namespace {

constexpr const char* MIDI = "MIDI file (*.mid *.midi *.smf *.kar)";
constexpr const char* TEXT = "Document as text (*.kel *.txt)";
constexpr const char* BINARY = "Document, binary (*.kelb)";

class dialogs_test : public testing::Test {
protected:
    void SetUp() override {
        program = std::make_unique<editor>(qt_host_hooks());
        qt_take_toolbox();
        std::string why;
        document = program->open("", why);
        ASSERT_NE(document, nullptr) << why;
        x = static_cast<brisolan*>(document->score());
        brisolan_append(x, 0, {0, 60, 100, 10, 1, 1, 0, 0}, false);
        (void)program->console();
    }
    void TearDown() override {
        document.reset();
        program.reset();
    }

    // Sends a message; the person does the steps, one for each dialog or box that comes up. Each must come, and no other.
    void send(const char* message, std::deque<std::function<void(QWidget*)>> to_do) {
        steps = std::move(to_do);
        QObject here; // whose timers end with it
        look(&here);
        kel_send(x, host_symbol(message), {});
        kel_run_queue();
        EXPECT_TRUE(steps.empty()) << steps.size() << " dialogs did not come";
    }

    // Each look has a timer of its own: one that is in a step, and in the box that the step brought up, does not go off.
    void look(QObject* here) {
        QTimer::singleShot(10, here, [this, here] {
            look(here);
            QWidget* const modal = QApplication::activeModalWidget();
            if (!modal) return;
            if (steps.empty()) {
                const auto* const box = qobject_cast<QMessageBox*>(modal);
                ADD_FAILURE() << "another dialog: " << modal->windowTitle().toStdString() << " "
                              << (box ? box->text().toStdString() : "");
                modal->close();
                return;
            }
            // A dialog begins where the one before it ended.
            const QString place = QString::fromStdString(folder.path().string());
            auto* const files = qobject_cast<QFileDialog*>(modal);
            if (files && files->directory() != QDir(place)) files->setDirectory(place);
            const auto step = steps.front();
            steps.pop_front();
            step(modal);
        });
    }

    static QLineEdit& name_in(QWidget* dialog) { return *dialog->findChild<QLineEdit*>("fileNameEdit"); }
    static QStringList kinds_in(QWidget* dialog) { return static_cast<QFileDialog*>(dialog)->nameFilters(); }

    // The steps.
    static void accept(QWidget* dialog) { static_cast<QDialog*>(dialog)->accept(); }
    static auto choose(const QString& kind) {
        return [kind](QWidget* dialog) {
            QComboBox& combo = *dialog->findChild<QComboBox*>("fileTypeCombo");
            const int at = combo.findText(kind);
            ASSERT_GE(at, 0) << kind.toStdString();
            combo.setCurrentIndex(at);
            emit combo.activated(at);
            emit combo.textActivated(kind);
        };
    }
    static auto give(const QString& name) {
        return [name](QWidget* dialog) {
            // The row of a file that was proposed goes before what is typed until it is left.
            dialog->findChild<QListView*>("listView")->selectionModel()->clear();
            name_in(dialog).setText(name);
            accept(dialog);
        };
    }
    // A box that tells something with these words in it.
    static auto read_box(const QString& words) {
        return [words](QWidget* box) {
            auto* const message = qobject_cast<QMessageBox*>(box);
            ASSERT_NE(message, nullptr) << box->windowTitle().toStdString();
            EXPECT_TRUE(message->text().contains(words)) << message->text().toStdString();
            message->accept();
        };
    }
    static void cancel(QWidget* dialog) { static_cast<QDialog*>(dialog)->reject(); }

    static std::string begins(const char* name) { return get_file(name).substr(0, 4); }

    scratch_folder folder; // on the disk, which keeps types

    std::unique_ptr<editor> program;
    std::unique_ptr<desk_document> document;
    brisolan* x = nullptr;
    std::deque<std::function<void(QWidget*)>> steps;
};

TEST_F(dialogs_test, writekel_proposes_a_binary_document) {
    send("writekel", {[](QWidget* dialog) {
             EXPECT_EQ(kinds_in(dialog), (QStringList{BINARY, TEXT}));
             EXPECT_EQ(static_cast<QFileDialog*>(dialog)->selectedNameFilter(), BINARY);
             EXPECT_EQ(name_in(dialog).text(), "Untitled.kelb");
             accept(dialog);
         }});
    EXPECT_EQ(folder.names(), std::vector<std::string>{"Untitled.kelb"});
    EXPECT_EQ(begins("Untitled.kelb"), "kelb");
}

TEST_F(dialogs_test, the_name_takes_the_ending_of_the_chosen_kind) {
    send("writekel", {choose(TEXT), [](QWidget* dialog) {
                          EXPECT_EQ(name_in(dialog).text(), "Untitled.kel");
                          accept(dialog);
                      }});
    send("writekel", {choose(TEXT), give("take")});
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"Untitled.kel", "take.kel"}));
    EXPECT_EQ(begins("take.kel").substr(0, 2), "#N");
}

TEST_F(dialogs_test, write_proposes_a_midi_file_and_offers_documents) {
    send("write", {[](QWidget* dialog) {
                       EXPECT_EQ(kinds_in(dialog), (QStringList{MIDI, TEXT, BINARY}));
                       EXPECT_EQ(name_in(dialog).text(), "Untitled.mid");
                   },
                   choose(BINARY), choose(MIDI), accept});
    EXPECT_EQ(begins("Untitled.mid"), "MThd");
    send("write", {give("take.kelb")});
    EXPECT_EQ(begins("take.kelb"), "kelb") << "the ending that was typed tells the kind";
}

TEST_F(dialogs_test, export_offers_midi_alone_and_proposes_no_name) {
    send("export", {[](QWidget* dialog) {
                        EXPECT_EQ(kinds_in(dialog), QStringList{MIDI});
                        EXPECT_EQ(name_in(dialog).text(), "");
                    },
                    give("take")});
    EXPECT_EQ(folder.names(), std::vector<std::string>{"take.mid"});
    EXPECT_EQ(begins("take.mid"), "MThd");
}

TEST_F(dialogs_test, a_name_of_another_kind_is_not_taken) {
    send("writekel", {give("take.mid"), read_box("“take.mid” should end in .kelb or .kel"), give("take.2"),
                      read_box("“take.2” should end in"), cancel});
    send("export", {give("take.kel"), read_box("should end in .mid,"), cancel});
    EXPECT_EQ(folder.names(), std::vector<std::string>{});
}

TEST_F(dialogs_test, reading_goes_by_the_type_that_a_file_keeps) {
    host_file* file = nullptr;
    ASSERT_EQ(host_file_create("twin.kel", 0, TYPE_MIDI, &file), HOST_OK);
    ASSERT_EQ(host_file_close(file), HOST_OK);
    if (kel_filetype("twin.kel") != TYPE_MIDI) GTEST_SKIP() << "this file system keeps no types";
    send("read", {[](QWidget* dialog) {
                      EXPECT_EQ(kinds_in(dialog).mid(1, 3), (QStringList{MIDI, TEXT, BINARY}));
                  },
                  give("twin.kel")});
    const std::vector<std::string> told = program->console();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told[0].ends_with("twin.kel: bad midi file")) << told[0];
}

TEST_F(dialogs_test, a_file_of_another_kind_is_not_opened) {
    put_file("plain", "#N brisolan \"\";\n#X restore;\n#X stop;\n");
    send("read", {give("plain"), read_box("“plain” is neither a MIDI file nor a document"), cancel});
    EXPECT_EQ(program->console(), std::vector<std::string>{});
    EXPECT_EQ(x->nevents, 1);
}

} // namespace
