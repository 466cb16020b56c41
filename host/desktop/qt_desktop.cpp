// host/desktop/qt_desktop.cpp: the desktop as a whole.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_desktop.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include "host/desktop/desktop.h"
#include "host/desktop/qt_editor_window.h"
#include "host/desktop/qt_file_kinds.h"
#include "host/desktop/qt_help.h"
#include "host/desktop/qt_icons.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_score_view.h"

namespace {

constexpr qsizetype RECENT_FILES = 10;
constexpr int LOOK_EVERY_MS = 1000;
constexpr int USUAL_COPY_SECONDS = 30; // a crash loses half a minute
const QString RECENT = QStringLiteral("files/recent");
const QString FOLDER = QStringLiteral("files/folder");
const QString COPY_SECONDS = QStringLiteral("files/copy-seconds");

std::string file_name(const QString& file) {
    return QFile::encodeName(file).toStdString();
}

// The console's own words, without who says them.
QString plain_line(const std::string& line) {
    QString text = QString::fromStdString(line).section(' ', 1);
    for (const char* who : {"brisolan: ", "host: "}) {
        if (text.startsWith(QLatin1String(who))) text = text.mid(static_cast<qsizetype>(std::strlen(who)));
    }
    return text;
}

} // namespace

qt_desktop::qt_desktop(desk_program& program) : behind(program) {
    qt_listen().window_shown = [this](host_window* w) {
        for (qt_editor_window* window : windows) {
            if (window->document().editor() != w || !window->isVisible()) continue;
            window->raise();
            window->activateWindow();
        }
        patches.window_shown(w);
    };
    qt_listen().window_hidden = [this](host_window* w) {
        patches.window_hidden(w);
        for (qt_editor_window* window : windows) {
            if (window->document().editor() == w) QTimer::singleShot(0, window, &QWidget::close);
        }
    };
    // Asked for from inside of the object's press, which must be over first.
    qt_listen().inspector = [this](host_object* x) {
        for (qt_editor_window* window : windows) {
            if (window->document().score() == x)
                QTimer::singleShot(0, window, [window] { window->inspect(); });
        }
    };
    used.changed = [this] { show_devices(); };
    used.failed = [this](const QString& why) { tell_all(why); };
    QObject::connect(&timer, &QTimer::timeout, [this] { look_after(); });
    timer.start(LOOK_EVERY_MS);
}

qt_desktop::~qt_desktop() {
    qt_listen() = {};
    qt_close_help();
    while (!windows.empty()) {
        qt_editor_window* const last = windows.back();
        windows.pop_back();
        delete last;
    }
}

qt_editor_window* qt_desktop::show(std::unique_ptr<desk_document> document) {
    auto* const window = new qt_editor_window(*this, std::move(document));
    windows.push_back(window);
    window->show_devices(used.text(), used.trouble());
    window->show();
    window->frame();
    return window;
}

qt_editor_window* qt_desktop::new_document() {
    std::string why;
    std::unique_ptr<desk_document> document;
    {
        const qt_in_kernel now;
        document = behind.make(why);
    }
    if (document) return show(std::move(document));
    QMessageBox::warning(nullptr, QStringLiteral("No new score"), QString::fromStdString(why));
    return nullptr;
}

qt_editor_window* qt_desktop::open_file(const QString& file, QWidget* asking) {
    const QString whole = QFileInfo(file).absoluteFilePath();
    for (qt_editor_window* window : windows) {
        if (window->document().file() != file_name(whole)) continue;
        window->raise();
        window->activateWindow();
        return window;
    }
    if (behind.is_patch(file_name(whole))) {
        QString trouble;
        if (patches.open(whole, trouble))
            add_recent(whole);
        else
            QMessageBox::warning(asking, QStringLiteral("Not opened"), trouble);
        return nullptr;
    }
    std::string why;
    std::unique_ptr<desk_document> document;
    {
        const qt_in_kernel now;
        document = behind.open(file_name(whole), why);
    }
    if (!document) {
        QMessageBox box(QMessageBox::Warning, QStringLiteral("Not opened"), QString::fromStdString(why),
                        QMessageBox::Ok, asking);
        if (why.find("bad midi file") != std::string::npos)
            box.setInformativeText(
                QStringLiteral("It has the name of a MIDI file, but what is in it is damaged, or of "
                               "another kind. Perhaps it was not copied as a whole."));
        box.exec();
        return nullptr;
    }
    add_recent(whole);
    // A window in which nothing was done yet makes room.
    for (qt_editor_window* window : windows) {
        desk_document& d = window->document();
        if (window != asking || !d.file().empty() || !d.empty() || d.unsaved()) continue;
        QTimer::singleShot(0, window, &QWidget::close);
    }
    return show(std::move(document));
}

void qt_desktop::ask_to_open(QWidget* asking) {
    const QStringList files = QFileDialog::getOpenFileNames(
        asking, QStringLiteral("Open"), kept.value(FOLDER).toString(), qt_kinds_to_open(SCORE_TYPES));
    for (const QString& file : files) {
        kept.setValue(FOLDER, QFileInfo(file).absolutePath());
        open_file(file, asking);
    }
}

void qt_desktop::quit() {
    if (!patches.close_all()) return;
    const std::vector<qt_editor_window*> all = windows;
    for (qt_editor_window* window : all) {
        if (!window->close()) return;
    }
}

bool qt_desktop::all_painted() const {
    return std::all_of(windows.begin(), windows.end(),
                       [](qt_editor_window* window) { return window->view().painted(); });
}

void qt_desktop::closed(qt_editor_window* window) {
    std::erase(windows, window);
}

QStringList qt_desktop::recent() const {
    return kept.value(RECENT).toStringList();
}

void qt_desktop::add_recent(const QString& file) {
    QStringList files = recent();
    files.removeAll(file);
    files.prepend(file);
    kept.setValue(RECENT, files.mid(0, RECENT_FILES));
}

void qt_desktop::clear_recent() {
    kept.remove(RECENT);
}

void qt_desktop::show_devices() {
    for (qt_editor_window* window : windows) window->show_devices(used.text(), used.trouble());
}

void qt_desktop::tell_all(const QString& text) {
    for (qt_editor_window* window : windows) window->say(text);
    patches.tell_all(text);
}

void qt_desktop::tell_console() {
    for (const std::string& line : behind.console()) tell_all(plain_line(line));
}

void qt_desktop::look_after() {
    tell_console();
    if (behind.signal()) {
        leave_copies();
        qApp->exit(0);
        return;
    }
    if (qt_kernel_busy()) return;
    {
        const qt_in_kernel now;
        behind.poll();
    }
    if (++looks % std::clamp(kept.value(COPY_SECONDS, USUAL_COPY_SECONDS).toInt(), 1, 60) != 0) return;
    for (qt_editor_window* window : windows) window->keep_copy();
}

void qt_desktop::leave_copies() {
    for (qt_editor_window* window : windows) window->leave_copy();
}

bool qt_desktop::offer_copies() {
    std::vector<std::unique_ptr<qt_copy>> left = qt_copy::left_behind();
    if (left.empty()) return false;
    QStringList names;
    for (const std::unique_ptr<qt_copy>& copy : left)
        names.append(QStringLiteral("“%1”, %2").arg(copy->title(), copy->when()));
    QMessageBox box(QMessageBox::Question, QStringLiteral("Unsaved scores"),
                    QStringLiteral("brisolan did not end as it should, and these were not saved:"),
                    QMessageBox::NoButton);
    box.setInformativeText(names.join('\n'));
    QPushButton* const open = box.addButton(QStringLiteral("&Open them"), QMessageBox::AcceptRole);
    QPushButton* const discard = box.addButton(QStringLiteral("&Delete them"), QMessageBox::DestructiveRole);
    QPushButton* const later = box.addButton(QStringLiteral("&Ask again"), QMessageBox::RejectRole);
    box.setDefaultButton(open);
    box.setEscapeButton(later);
    box.exec();
    bool any = false;
    for (std::unique_ptr<qt_copy>& copy : left) {
        if (box.clickedButton() == later) copy->keep();
        if (box.clickedButton() == discard || box.clickedButton() == later) continue;
        if (qt_editor_window* const window = new_document()) {
            window->take_copy(std::move(copy));
            any = true;
        } else {
            copy->keep();
        }
    }
    return any;
}

qt_asks qt_desktop::asks() {
    return {[this](QWidget* asking) { ask_to_open(asking); }, [this](QWidget* asking) { show_help(asking); },
            [this](QMenu* menu) { used.fill_menu(menu, [this] { behind.panic(); }); }, [this] { quit(); }};
}

void qt_desktop::show_help(QWidget* asking) {
    qt_show_help(asking);
}

void qt_desktop::show_about(QWidget* asking) {
    QMessageBox::about(
        asking, QStringLiteral("About brisolan"),
        QStringLiteral("<h3>brisolan %1</h3><p>Plays, records, follows and edits note sequences.</p>")
            .arg(QApplication::applicationVersion()));
}

namespace {

// What Qt said last before it would give up.
QString last_words;

// A display that does not answer is no crash: one line says so.
void while_starting(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "brisolan: the editor cannot be shown: %s\n", qUtf8Printable(last_words));
        std::_Exit(1);
    }
    if (type == QtWarningMsg && text.contains(QStringLiteral("display"))) last_words = text;
}

qt_desktop* runs = nullptr;

// When the screen goes, Qt ends the program from within. Nothing that runs beside may see its own end come then.
void when_cut_off() {
    if (!runs) return;
    runs->leave_copies();
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace

int desktop_run(int argc, char** argv,
                const std::function<std::unique_ptr<desk_program>(const host_platform& machine)>& start) {
    qInstallMessageHandler(while_starting);
    QApplication application(argc, argv);
    qInstallMessageHandler(nullptr);
    QApplication::setOrganizationName(QStringLiteral("brisolan"));
    QApplication::setApplicationName(QStringLiteral("brisolan"));
    QApplication::setApplicationVersion(QStringLiteral(BRISOLAN_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("brisolan"));
    QApplication::setWindowIcon(qt_program_icon());
    const std::unique_ptr<desk_program> program = start(qt_host_hooks());
    qt_take_toolbox();
    int status = 0;
    {
        qt_desktop desktop(*program);
        qt_start_turns(program->wake_fd(), [&program] { program->turn(); });
        bool any = false;
        QStringList files = QApplication::arguments().mid(1);
        const bool only_show = files.removeAll(QStringLiteral("--until-shown")) > 0;
        for (const QString& file : files) any = desktop.open_file(file) || any;
        if (!only_show) any = desktop.offer_copies() || any;
        if (!any && !desktop.any_patch()) desktop.new_document();
        if (only_show) {
            // Its picture is on the screen, and what has come in was dealt with: the window can be used.
            while (!desktop.all_painted()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QApplication::processEvents();
            return 0;
        }
        // The window first: a synth takes its time.
        QTimer::singleShot(0, [&desktop] { desktop.devices().open(); });
        runs = &desktop;
        std::atexit(when_cut_off); // now: what Qt sets up before is still there then
        status = QApplication::exec();
        runs = nullptr;
        qt_start_turns(-1, nullptr);
    }
    return status;
}
