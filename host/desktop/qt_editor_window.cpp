// host/desktop/qt_editor_window.cpp: a window with one score: its life, its document, what it shows.
// Layer: desktop platform, Qt. The menus are in qt_editor_menus.cpp.
#include "host/desktop/qt_editor_window.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

#include "host/desktop/qt_desktop.h"
#include "host/desktop/qt_file_kinds.h"
#include "host/desktop/qt_inspector.h"
#include "host/desktop/qt_places.h"
#include "host/desktop/qt_platform.h"
#include "host/desktop/qt_questions.h"
#include "host/desktop/qt_score_view.h"
#include "host/desktop/qt_status.h"
#include "host/kernel/dispatch.h"

namespace {

constexpr int TICK_MS = 33;      // the position line moves so often
constexpr int TICKS_A_LOOK = 15; // marks and counts are looked after more seldom
constexpr int PAGE_END = 100;    // pixels at the picture's right from which the position leaves it
constexpr int SAYING_MS = 8000;
constexpr int REMEMBER_AFTER_MS = 400; // when the window has settled
constexpr int USUAL_WIDTH = 1040;
constexpr int USUAL_HEIGHT = 680;

QString from_file_name(const std::string& name) {
    return QFile::decodeName(QByteArray::fromStdString(name));
}

} // namespace

qt_editor_window::qt_editor_window(qt_desktop& d, std::unique_ptr<desk_document> document)
    : desktop(d), shown(std::move(document)), copy(qt_copy::make()),
      score(new qt_score_view(shown->editor(), this)), counts(new QLabel(this)), devices(new QLabel(this)),
      ticks(new QTimer(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setCentralWidget(score);
    score->set_scale(desktop.settings().value(QT_SCALE_KEY, 0).toInt());
    make_actions();
    bar = new qt_transport_bar(on, this);
    addToolBar(Qt::TopToolBarArea, bar);
    setContextMenuPolicy(Qt::NoContextMenu); // which would offer to hide the bar for good
    make_menus();
    for (QLabel* label : {counts, devices}) label->setContentsMargins(6, 0, 6, 0);
    statusBar()->addPermanentWidget(counts);
    statusBar()->addPermanentWidget(devices);
    counts->setAccessibleName(QStringLiteral("Notes"));
    devices->setAccessibleName(QStringLiteral("Devices"));

    bar->position_moved = [this](std::int64_t to) {
        if (shown->transport().mode == desk_mode::playing)
            act([this, to] { return shown->play(to); });
        else
            shown->go_to(to);
    };
    bar->speed_chosen = [this](double speed) { shown->set_speed(speed); };
    score->before_input = [this] { shown->remember(); };
    connect(ticks, &QTimer::timeout, this, [this] { show_transport(); });
    ticks->start(TICK_MS);
    QTimer::singleShot(REMEMBER_AFTER_MS, this, [this] {
        if (!qt_kernel_busy()) shown->remember();
    });
    resize(USUAL_WIDTH, USUAL_HEIGHT);
    qt_restore_place(desktop.settings(), from_file_name(shown->file()), *this);
    qt_fit_to_screen(*this);
    {
        const qt_in_kernel now;
        kel_private<"dblclick">(shown->score());
    }
    score->setFocus();
    show_title();
    show_transport();
}

qt_editor_window::~qt_editor_window() {
    delete patch;
    score->forget();
    const qt_in_kernel now;
    qt_leave_view(shown->editor());
    shown.reset();
}

void qt_editor_window::frame() {
    const qt_in_kernel now;
    shown->frame_values();
}

void qt_editor_window::show_title() {
    const std::string file = shown->file();
    setWindowTitle(called() + QStringLiteral("[*] — brisolan"));
    setWindowFilePath(file.empty() ? QString() : from_file_name(file));
    setWindowModified(shown->unsaved());
}

QString qt_editor_window::called() const {
    return restored_name.isEmpty() ? QString::fromStdString(shown->title())
                                   : QFileInfo(restored_name).fileName();
}

void qt_editor_window::say(const QString& text) {
    qt_say(statusBar(), text, SAYING_MS);
}

void qt_editor_window::show_devices(const QString& text, const QString& trouble) {
    devices->setText(text);
    devices->setToolTip(trouble);
    devices->setAccessibleDescription(trouble);
}

void qt_editor_window::act(const std::function<std::string()>& does) {
    shown->remember();
    std::string why;
    {
        const qt_in_kernel now;
        why = does();
    }
    if (!why.empty()) say(QString::fromStdString(why));
    show_transport();
}

// Turns the page when the position has run out of it at the right; a person who has scrolled away is left alone.
void qt_editor_window::go_along(const desk_transport& t) {
    const bool at_the_end = last_line > shown->editor()->width - PAGE_END;
    const bool runs = t.mode == desk_mode::playing || t.mode == desk_mode::following;
    last_line = t.line;
    if (!runs || !goes_along || !at_the_end || t.line >= 0 || qt_kernel_busy()) return;
    const qt_in_kernel now;
    shown->scroll_to(t.position);
}

// Recording and following without an input wait for ever: a person is told so for as long as it is so.
void qt_editor_window::look_at_input(desk_mode mode) {
    const bool listens = mode == desk_mode::recording || mode == desk_mode::following;
    const QString trouble = listens ? QString::fromStdString(desktop.program().why_no_input()) : QString();
    if (trouble.isEmpty()) {
        if (!input_trouble.isEmpty()) statusBar()->clearMessage();
    } else if (trouble != input_trouble || statusBar()->currentMessage().isEmpty()) {
        say(trouble.left(1).toUpper() + trouble.mid(1));
    }
    input_trouble = trouble;
}

void qt_editor_window::show_transport() {
    const desk_transport t = shown->transport();
    if (std::exchange(last_mode, t.mode) != t.mode) turns = 0; // what follows is due at once
    go_along(t);
    bar->show_state(t);
    const bool moves = t.mode != desk_mode::idle || t.position > 0;
    score->set_line(moves && t.mode != desk_mode::recording ? t.line : -1, t.line_top, t.line_bottom);
    if (turns++ % TICKS_A_LOOK != 0 || qt_kernel_busy()) return;
    const int selected = shown->nselected();
    QString text =
        shown->nnotes() == 1 ? QStringLiteral("1 note") : QStringLiteral("%L1 notes").arg(shown->nnotes());
    if (selected) text += QStringLiteral(", %L1 selected").arg(selected);
    counts->setText(text);
    look_at_input(t.mode);
    setWindowModified(shown->unsaved());
}

// ---------------------------------------------------------------------------------------------------------------------
// Files

// Before the first time that something would be left out of a file, a person says whether it may be.
qt_editor_window::loss qt_editor_window::ask_to_lose(const std::string& to) {
    const std::vector<std::string> lost = shown->lost_in(to);
    if (std::ranges::all_of(lost, [this](const std::string& what) { return agreed_to_lose.contains(what); }))
        return loss::agreed;
    QString list;
    for (const std::string& what : lost) list += QStringLiteral("\n    •  ") + QString::fromStdString(what);
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Save as MIDI file"),
                    QStringLiteral("A MIDI file keeps notes alone. Saved as one, this loses:") + list,
                    QMessageBox::Cancel, this);
    QString stays = QStringLiteral("A score (.kel) keeps everything that is in the editor");
    if (!shown->file().empty())
        stays += QStringLiteral(", and “%1” stays as it is").arg(QString::fromStdString(shown->title()));
    box.setInformativeText(stays + '.');
    QPushButton* const as_score = box.addButton(QStringLiteral("Save as a s&core…"), QMessageBox::ActionRole);
    QPushButton* const anyway = box.addButton(QStringLiteral("&Save anyway"), QMessageBox::AcceptRole);
    box.button(QMessageBox::Cancel)->setText(QStringLiteral("Ca&ncel"));
    box.setDefaultButton(as_score);
    box.exec();
    if (box.clickedButton() == as_score) return loss::as_score;
    if (box.clickedButton() != anyway) return loss::cancelled;
    agreed_to_lose.insert(lost.begin(), lost.end());
    return loss::agreed;
}

bool qt_editor_window::write(const QString& file) {
    const std::string to = QFile::encodeName(file).toStdString();
    switch (ask_to_lose(to)) {
    case loss::cancelled: return false;
    case loss::as_score: {
        const QFileInfo info(file);
        return save_as(info.absolutePath() + '/' + info.completeBaseName() + QStringLiteral(".kel"));
    }
    case loss::agreed: break;
    }
    std::string why;
    {
        const qt_in_kernel now;
        why = shown->save(to);
    }
    if (!why.empty()) {
        QMessageBox::warning(this, QStringLiteral("Not saved"), QString::fromStdString(why));
        return false;
    }
    restored_name.clear();
    show_title();
    say(QStringLiteral("Saved"));
    return true;
}

bool qt_editor_window::save() {
    return shown->file().empty() ? save_as() : write(from_file_name(shown->file()));
}

bool qt_editor_window::save_as() {
    const QString file = from_file_name(shown->file());
    if (!file.isEmpty()) return save_as(file);
    return save_as(restored_name.isEmpty() ? called() + QStringLiteral(".kel") : restored_name);
}

bool qt_editor_window::save_as(const QString& proposed) {
    const QString chosen = qt_ask_where_to_save(this, proposed, SCORE_TYPES);
    if (chosen.isEmpty() || !write(chosen)) return false;
    desktop.add_recent(from_file_name(shown->file()));
    return true;
}

bool qt_editor_window::may_close() {
    if (qt_kernel_busy()) return false;
    if (!shown->unsaved()) return true;
    switch (qt_ask_to_save(this, restored_name.isEmpty() ? QString::fromStdString(shown->title())
                                                         : restored_name)) {
    case qt_unsaved::save: return save();
    case qt_unsaved::discard: return true;
    default: return false;
    }
}

void qt_editor_window::inspect() {
    qt_inspect(this, shown->score(), [this] { shown->remember(); });
}

void qt_editor_window::keep_copy() {
    if (qt_kernel_busy()) return;
    const qt_in_kernel now;
    if (!shown->unsaved()) {
        copy->drop();
        return;
    }
    if (!shown->keep_copy(QFile::encodeName(copy->file()).toStdString())) {
        say(QStringLiteral("No copy for after a crash could be written"));
        return;
    }
    copy->tell(QString::fromStdString(shown->title()), from_file_name(shown->file()));
}

void qt_editor_window::leave_copy() {
    keep_copy();
    copy->keep();
}

void qt_editor_window::take_copy(std::unique_ptr<qt_copy> left) {
    const qt_in_kernel now;
    const std::string why = shown->take_copy(QFile::encodeName(left->file()).toStdString());
    if (!why.empty()) say(QString::fromStdString(why));
    restored_name = left->of().isEmpty() ? left->title() : left->of();
    copy = std::move(left);
    show_title();
}

void qt_editor_window::closeEvent(QCloseEvent* event) {
    if (!may_close()) {
        event->ignore();
        return;
    }
    qt_keep_place(desktop.settings(), from_file_name(shown->file()), *this);
    {
        const qt_in_kernel now;
        shown->stop();
    }
    desktop.closed(this);
    event->accept();
}

void qt_editor_window::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void qt_editor_window::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) files.append(url.toLocalFile());
    }
    // Not inside the drop: what asks a question would keep the other program waiting.
    QTimer::singleShot(0, this, [this, files] {
        for (const QString& file : files) desktop.open_file(file, this);
    });
}

void qt_editor_window::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && score) score->setFocus();
}
