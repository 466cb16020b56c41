// host/desktop/qt_patch_window.cpp: a window with a patch.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_patch_window.h"

#include <algorithm>
#include <utility>

#include <QCloseEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QScrollArea>
#include <QStatusBar>
#include <QTimer>

#include "host/desktop/qt_menu_items.h"
#include "host/desktop/qt_places.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_questions.h"
#include "host/desktop/qt_status.h"

namespace {

constexpr int LOOK_EVERY_MS = 250;
constexpr int SAYING_MS = 8000;
constexpr int LEAST_WIDTH = 240;
constexpr int LEAST_HEIGHT = 160;
// However large a patch says that its window is.
constexpr int LARGEST_WIDTH = 1600;
constexpr int LARGEST_HEIGHT = 1000;

} // namespace

qt_patch_window::qt_patch_window(host_patcher* p, const QString& called, qt_patch_hooks asks)
    : patcher(p), title(called), hooks(std::move(asks)), shown(new qt_patch_view(p)) {
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const area = new QScrollArea(this);
    area->setWidget(shown);
    area->setFrameShape(QFrame::NoFrame);
    area->setBackgroundRole(QPalette::Base);
    area->setFocusPolicy(Qt::NoFocus);
    setCentralWidget(area);
    make_menu();
    shown->before_press = hooks.before_press;
    if (hooks.state) {
        shown->set_state([this](host_object* x) {
            return qt_kernel_busy() ? QString() : QString::fromStdString(hooks.state(x));
        });
    }
    auto* const looks = new QTimer(this);
    connect(looks, &QTimer::timeout, this, [this] { look(); });
    looks->start(LOOK_EVERY_MS);
    const kel_patch& all = kel_patcher_patch(patcher);
    resize(std::clamp<int>(std::max(all.width, shown->width()), LEAST_WIDTH, LARGEST_WIDTH),
           std::clamp<int>(std::max(all.height, shown->height()) + menuBar()->sizeHint().height() +
                               statusBar()->sizeHint().height(),
                           LEAST_HEIGHT, LARGEST_HEIGHT));
    qt_fit_to_screen(*this);
    look();
}

qt_patch_window::~qt_patch_window() {
    if (hooks.closed) hooks.closed();
}

void qt_patch_window::make_menu() {
    QMenu* const menu = menuBar()->addMenu(QStringLiteral("&File"));
    if (hooks.desktop.open) {
        qt_add_item(menu, QStringLiteral("&Open…"), QKeySequence::Open, [this] { hooks.desktop.open(this); });
        menu->addSeparator();
    }
    if (hooks.save) {
        qt_add_item(menu, QStringLiteral("&Save"), QKeySequence::Save, [this] { save(); });
        qt_add_item(menu, QStringLiteral("Save &as…"), QKeySequence(QStringLiteral("Ctrl+Shift+S")),
                    [this] { save_as(); });
        menu->addSeparator();
    }
    qt_add_item(menu, QStringLiteral("&Close"), QKeySequence::Close, [this] { close(); });
    if (!hooks.desktop.open) return;
    // Not from inside of the item, whose window goes.
    qt_add_item(menu, QStringLiteral("&Quit"), QKeySequence(QStringLiteral("Ctrl+Q")),
                [this] { QTimer::singleShot(0, hooks.desktop.quit); });
    hooks.desktop.midi(menuBar()->addMenu(QStringLiteral("&MIDI")));
    qt_add_item(menuBar()->addMenu(QStringLiteral("&Help")), QStringLiteral("&Keys and tools"),
                QKeySequence::HelpContents, [this] { hooks.desktop.help(this); });
}

// Marks and states as they are now.
void qt_patch_window::look() {
    if (qt_kernel_busy()) return;
    shown->refresh();
    const std::string file = hooks.file ? hooks.file() : "";
    const QString name =
        file.empty() ? title : QFileInfo(QFile::decodeName(QByteArray::fromStdString(file))).fileName();
    setWindowTitle(name + QStringLiteral("[*] — brisolan"));
    setWindowModified(hooks.save && kel_patcher_changed(patcher));
}

void qt_patch_window::say(const QString& text) {
    qt_say(statusBar(), text, SAYING_MS);
}

bool qt_patch_window::write(const std::string& to) {
    std::string why;
    {
        const qt_in_kernel now;
        why = hooks.save(to);
    }
    if (why.empty()) {
        look();
        say(QStringLiteral("Saved"));
        return true;
    }
    QMessageBox::warning(this, QStringLiteral("Not saved"), QString::fromStdString(why));
    return false;
}

bool qt_patch_window::save() {
    const std::string file = hooks.file ? hooks.file() : "";
    return file.empty() ? save_as() : write(file);
}

bool qt_patch_window::save_as() {
    const std::string file = hooks.file ? hooks.file() : "";
    const QString chosen = QFileDialog::getSaveFileName(this, QStringLiteral("Save as"),
                                                        QFile::decodeName(QByteArray::fromStdString(file)),
                                                        QStringLiteral("Patches (*.kel *.kelb)"));
    return !chosen.isEmpty() && write(QFile::encodeName(chosen).toStdString());
}

bool qt_patch_window::may_close() {
    if (!hooks.save || !kel_patcher_changed(patcher)) return true;
    const qt_unsaved answer = qt_ask_to_save(this, title);
    return answer == qt_unsaved::save ? save() : answer == qt_unsaved::discard;
}

void qt_patch_window::closeEvent(QCloseEvent* event) {
    if (qt_kernel_busy() || !may_close()) return event->ignore();
    event->accept();
}
