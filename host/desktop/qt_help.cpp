// host/desktop/qt_help.cpp: the page of keys and tools.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_help.h"

#include <QAction>
#include <QDialog>
#include <QDialogButtonBox>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "host/desktop/qt_places.h"

namespace {

// What the modifier keys are called on this system's keyboards.
#ifdef __APPLE__
constexpr const char* OPTION = "Option";
constexpr const char* COMMAND = "Command";
constexpr const char* CONTROL = "Control";
#else
constexpr const char* OPTION = "Alt";
constexpr const char* COMMAND = "Ctrl";
constexpr const char* CONTROL = "Super";
#endif

constexpr const char* PAGE = R"==(
<h2>Tools</h2>
<p>The palette at the top left, or the keys <b>1</b> to <b>4</b>, choose a tool. While a key is held, another tool counts.</p>
<table cellpadding="4" cellspacing="0">
<tr><td><b>1</b> Arrow</td><td>selects; drags a note by its start (its time), middle (its value) or end (its length), with everything
selected; on empty space draws a rubber band. <b>Shift</b> adds or takes away.</td></tr>
<tr><td><b>2</b> Magnifier</td><td>zooms in where you click, with <b>%OPTION%</b> out.</td></tr>
<tr><td><b>3</b> Tweak</td><td>as the arrow, but one unit for each pixel, whatever the zoom.</td></tr>
<tr><td><b>4</b> Pencil</td><td>draws a note; drag to the right for its length. <b>Shift</b> keeps the selection.</td></tr>
</table>
<p>With arrow or pencil: <b>%OPTION%</b>, or the middle button, exchanges the two; <b>%COMMAND%</b> is the tweak tool;
<b>%CONTROL%</b>, or the right button, the magnifier.</p>
<h2>In the editor</h2>
<table cellpadding="4" cellspacing="0">
<tr><td>Legend, top row</td><td>a press on a picture chooses what a parameter shows; drag a value up or down to change it in the
selected notes, or in those drawn next.</td></tr>
<tr><td>Numbers below</td><td>show and hide tracks; drag over several; with <b>%OPTION%</b> one alone.</td></tr>
<tr><td>Box, bottom left</td><td>zooms out and in, by time and by value.</td></tr>
<tr><td>Wheel</td><td>scrolls; with <b>Shift</b> through time; with <b>%COMMAND%</b> zooms, and with <b>%COMMAND%+Shift</b> the rows.</td></tr>
<tr><td>Arrow keys</td><td>move the selected notes. <b>Delete</b> deletes them.</td></tr>
</table>
<h2>Playing</h2>
<table cellpadding="4" cellspacing="0">
<tr><td><b>Space</b></td><td>plays from the position, and stops there.</td></tr>
<tr><td><b>Shift+Space</b></td><td>plays from the first selected note.</td></tr>
<tr><td><b>.</b></td><td>plays one note and goes on to the next.</td></tr>
<tr><td><b>Home</b></td><td>back to the beginning. <b>Escape</b> stops.</td></tr>
<tr><td><b>[</b> <b>]</b> <b>\</b></td><td>slower, faster, as written.</td></tr>
<tr><td><b>%COMMAND%+R</b></td><td>records what the MIDI input plays.</td></tr>
<tr><td><b>%COMMAND%+Shift+F</b></td><td>follows a player: notes on channel 1 are the player's part, all others the accompaniment.</td></tr>
<tr><td><b>%COMMAND%+.</b></td><td>ends every note.</td></tr>
</table>
<h2>Files</h2>
<p>Drop a file on a window to open it. Cut, copy and paste use text: one note a line, eight numbers: time, pitch, velocity, duration, channel, track, and two free ones. What is pasted keeps
its time: it lands where it was copied, selected, so that arrow keys or a drag move it on.</p>
<h2>All keys of the menus</h2>
<table cellpadding="4" cellspacing="0">%MENUS%</table>
)==";

// A row for each item of a menu, and of the menus in it, that has a key.
QString rows_of(const QMenu* menu, const QString& path) {
    QString rows;
    for (const QAction* a : menu->actions()) {
        const QString name = path + QStringLiteral(" &gt; ") + QString(a->text()).remove('&').toHtmlEscaped();
        if (a->menu()) rows += rows_of(a->menu(), name);
        QStringList keys;
        for (const QKeySequence& key : a->shortcuts())
            keys.append(key.toString(QKeySequence::NativeText).toHtmlEscaped());
        if (!keys.isEmpty())
            rows += QStringLiteral("<tr><td><b>%1</b></td><td>%2</td></tr>")
                        .arg(keys.join(QStringLiteral("</b>, <b>")), name);
    }
    return rows;
}

QString keys_of_menus(const QWidget* parent) {
    const auto* const window = qobject_cast<const QMainWindow*>(parent);
    const QWidget* const bar = window ? window->menuWidget() : nullptr;
    QString rows;
    for (const QAction* top : bar ? bar->actions() : QList<QAction*>()) {
        if (top->menu()) rows += rows_of(top->menu(), QString(top->text()).remove('&'));
    }
    return rows;
}

QPointer<QDialog> page;

} // namespace

void qt_close_help() {
    delete page;
}

void qt_show_help(QWidget* parent) {
    if (!page) {
        page = new QDialog(nullptr);
        page->setAttribute(Qt::WA_DeleteOnClose);
        page->setAttribute(Qt::WA_QuitOnClose, false); // the program ends with its last document
        page->setWindowTitle(QStringLiteral("Keys and tools — brisolan"));
        auto* const text = new QTextBrowser(page);
        text->setAccessibleName(QStringLiteral("Keys and tools"));
        text->setFrameStyle(0);
        text->setHtml(QString::fromUtf8(PAGE)
                          .replace(QStringLiteral("%OPTION%"), QString::fromLatin1(OPTION))
                          .replace(QStringLiteral("%COMMAND%"), QString::fromLatin1(COMMAND))
                          .replace(QStringLiteral("%CONTROL%"), QString::fromLatin1(CONTROL))
                          .replace(QStringLiteral("%MENUS%"), keys_of_menus(parent)));
        auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, page);
        QObject::connect(buttons, &QDialogButtonBox::rejected, page, &QDialog::close);
        auto* const all = new QVBoxLayout(page);
        all->addWidget(text);
        all->addWidget(buttons);
        page->resize(680, 760);
        qt_fit_to_screen(*page);
        if (parent) page->move(parent->frameGeometry().topLeft() + QPoint(40, 40));
    }
    page->show();
    page->raise();
    page->activateWindow();
}
