// host/desktop/qt_platform.cpp: the machine as Qt shows it to kernel and toolbox.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_platform.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include <QApplication>
#include <QBitmap>
#include <QClipboard>
#include <QCursor>
#include <QEventLoop>
#include <QFile>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>

#include "host/desktop/qt_file_kinds.h"
#include "host/desktop/qt_score_view.h"

namespace {

// The state of the one Qt machine; main level.
struct {
    std::unordered_map<host_window*, qt_score_view*> views;
    qt_score_view* active = nullptr;
    qt_listeners listeners;
    int depth = 0;            // calls into the kernel that have not returned
    bool turn_is_due = false; // came while the kernel was busy
    std::function<void()> turn;
    QSocketNotifier* notifier = nullptr;
    QCursor image; // the pointer's picture
    bool hidden = false;
} machine;

void take_turn() {
    if (machine.depth > 0) {
        machine.turn_is_due = true;
        // Level-triggered: it would come again and again.
        if (machine.notifier) machine.notifier->setEnabled(false);
        return;
    }
    machine.turn_is_due = false;
    if (machine.notifier) machine.notifier->setEnabled(true);
    const qt_in_kernel now;
    if (machine.turn) machine.turn();
    // Queued redraws draw after they have told that they will.
    for (const auto& [window, view] : machine.views) view->drawn();
}

void turn_soon() {
    QTimer::singleShot(0, qApp, take_turn);
}

// ---- the kernel's hooks; the record that they get is the session's, which they do not need

void window_shown(void*, host_window* w, bool shown) {
    const auto& told = shown ? machine.listeners.window_shown : machine.listeners.window_hidden;
    if (told) told(w);
}

void window_freed(void*, host_window* w) {
    if (machine.listeners.window_freed) machine.listeners.window_freed(w);
    qt_leave_view(w);
}

void window_drawn(void*, host_window* w) {
    if (qt_score_view* view = qt_view_of(w)) view->drawn();
}

void move_pointer(void*, Point global) {
    if (machine.active) machine.active->move_pointer(global);
}

void patcher_dirty(void*, host_patcher* p) {
    if (machine.listeners.patcher_dirty) machine.listeners.patcher_dirty(p);
}

void inspector(void*, host_object* x) {
    if (machine.listeners.inspector) machine.listeners.inspector(x);
}

// What a dialog gives, chosen and of a known type: the path whole as the name.
host_err give_name(const QByteArray& chosen, file_type found, char* name, std::int16_t* path,
                   file_type* type) {
    if (chosen.isEmpty() || static_cast<std::size_t>(chosen.size()) >= HOST_NAME_SIZE) return HOST_CANCELLED;
    std::strcpy(name, chosen.constData());
    *path = host_default_path();
    *type = found;
    return HOST_OK;
}

host_err open_dialog(void*, char* name, std::int16_t* path, file_type* type,
                     std::span<const file_type> types) {
    const qt_in_kernel now;
    const QByteArray chosen = QFile::encodeName(qt_ask_what_to_open(QApplication::activeWindow(), types));
    return give_name(chosen, kel_filetype(chosen.toStdString()), name, path, type);
}

host_err saveas_dialog(void*, char* name, std::int16_t* path, file_type* type,
                       std::span<const file_type> types) {
    const qt_in_kernel now;
    const QByteArray chosen =
        QFile::encodeName(qt_ask_where_to_save(QApplication::activeWindow(), QString::fromUtf8(name), types));
    return give_name(chosen, kel_typeofname(chosen.constData()), name, path, type);
}

// ---- the toolbox's hooks

bool button(void*) {
    return QGuiApplication::mouseButtons() != Qt::NoButton;
}

Point mouse(void*) {
    return machine.active ? machine.active->pointer() : Point{0, 0};
}

int modifiers(void*) {
    return qt_modifiers(QGuiApplication::queryKeyboardModifiers());
}

bool track(void*, Point* where) {
    return machine.active && machine.active->track(where);
}

int popup(void*, MenuHandle menu, Point where, int item) {
    if (!machine.active) return 0;
    const qt_in_kernel now;
    QMenu shown(machine.active);
    QList<QAction*> actions;
    for (int i = 1; i <= CountMenuItems(menu); ++i) {
        const QString text = QString::fromLatin1(GetMenuItemText(menu, i));
        if (text == QLatin1String("-")) {
            actions.append(shown.addSeparator());
            continue;
        }
        QAction* const a = shown.addAction(QString(text).replace('&', "&&"));
        a->setEnabled(IsMenuItemEnabled(menu, i));
        a->setCheckable(GetItemMark(menu, i) != noMark);
        a->setChecked(GetItemMark(menu, i) != noMark);
        actions.append(a);
    }
    QAction* const at = item >= 1 && item <= actions.size() ? actions[item - 1] : nullptr;
    return static_cast<int>(actions.indexOf(shown.exec(machine.active->on_screen(where), at))) + 1;
}

void apply_cursor() {
    if (machine.active) machine.active->setCursor(machine.hidden ? QCursor(Qt::BlankCursor) : machine.image);
}

// A cursor's picture in device pixels: black where data and mask are set, white where the mask alone is.
QCursor picture_of(const Cursor& cursor, int scale, double ratio) {
    QImage image(16, 16, QImage::Format_ARGB32);
    for (int v = 0; v < 16; ++v) {
        for (int h = 0; h < 16; ++h) {
            const auto bit = static_cast<std::uint16_t>(0x8000 >> h);
            const bool inside = (cursor.mask[v] & bit) != 0;
            const bool dark = (cursor.data[v] & bit) != 0;
            image.setPixel(h, v, inside ? (dark ? 0xFF000000U : 0xFFFFFFFFU) : dark ? 0xFF000000U : 0U);
        }
    }
    QPixmap pixels = QPixmap::fromImage(image.scaled(16 * scale, 16 * scale));
    pixels.setDevicePixelRatio(ratio);
    const double size = scale / ratio; // of one of its pixels
    return QCursor(pixels, static_cast<int>(cursor.hotSpot.h * size),
                   static_cast<int>(cursor.hotSpot.v * size));
}

void setcursor(void*, const Cursor* cursor) {
    machine.image = cursor && machine.active
                        ? picture_of(*cursor, machine.active->scale(), machine.active->devicePixelRatioF())
                        : QCursor(Qt::ArrowCursor);
    apply_cursor();
}

void hidecursor(void*, bool hidden) {
    machine.hidden = hidden;
    apply_cursor();
}

// Lines end with a carriage return inside, with a line feed outside.
bool clipboard_read(void*, std::string* text) {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (!data || !data->hasText()) return false;
    QString found = data->text();
    found.replace("\r\n", "\r").replace('\n', '\r');
    *text = found.toLatin1().toStdString();
    return !text->empty();
}

void clipboard_write(void*, const std::string& text) {
    QString out = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    QGuiApplication::clipboard()->setText(out.replace('\r', '\n'));
}

Rect screen(void*) {
    return machine.active ? machine.active->screen_bounds() : Rect{0, 0, 1024, 768};
}

} // namespace

host_platform qt_host_hooks() {
    host_platform p;
    p.open_dialog = open_dialog;
    p.saveas_dialog = saveas_dialog;
    p.inspector = inspector;
    p.window_shown = window_shown;
    p.window_freed = window_freed;
    p.window_drawn = window_drawn;
    p.move_pointer = move_pointer;
    p.patcher_dirty = patcher_dirty;
    return p;
}

void qt_take_toolbox() {
    toolbox_platform p;
    p.button = button;
    p.mouse = mouse;
    p.modifiers = modifiers;
    p.track = track;
    p.popup = popup;
    p.setcursor = setcursor;
    p.hidecursor = hidecursor;
    p.clipboard_read = clipboard_read;
    p.clipboard_write = clipboard_write;
    p.screen = screen;
    toolbox_setplatform(&p);
}

void qt_start_turns(int fd, std::function<void()> turn) {
    delete machine.notifier;
    machine.notifier = nullptr;
    machine.turn = std::move(turn);
    if (!machine.turn) return;
    machine.notifier = new QSocketNotifier(fd, QSocketNotifier::Read, qApp);
    QObject::connect(machine.notifier, &QSocketNotifier::activated, take_turn);
    turn_soon();
}

qt_in_kernel::qt_in_kernel() {
    ++machine.depth;
}

qt_in_kernel::~qt_in_kernel() {
    if (--machine.depth == 0 && machine.turn_is_due) turn_soon();
}

bool qt_kernel_busy() {
    return machine.depth > 0;
}

qt_score_view* qt_view_of(host_window* w) {
    const auto found = machine.views.find(w);
    return found == machine.views.end() ? nullptr : found->second;
}

void qt_enter_view(host_window* w, qt_score_view* view) {
    machine.views[w] = view;
}

void qt_leave_view(host_window* w) {
    qt_score_view* const view = qt_view_of(w);
    if (machine.active == view) machine.active = nullptr;
    machine.views.erase(w);
}

void qt_set_active_view(qt_score_view* view) {
    machine.active = view;
}

int qt_modifiers(Qt::KeyboardModifiers keys, Qt::MouseButton pressed) {
    // Qt's names are those of the keys' places: on a Mac its Control is the command key already, its Meta the control key.
    int bits = 0;
    if (keys & Qt::ShiftModifier) bits |= shiftKey;
    if (keys & Qt::ControlModifier) bits |= cmdKey;
    if (keys & Qt::AltModifier) bits |= optionKey;
    if (keys & Qt::MetaModifier) bits |= controlKey;
    // For desktops that keep Alt or Meta for themselves.
    if (pressed == Qt::MiddleButton) bits |= optionKey;
    if (pressed == Qt::RightButton) bits |= controlKey;
    return bits;
}

qt_listeners& qt_listen() {
    return machine.listeners;
}
