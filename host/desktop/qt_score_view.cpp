// host/desktop/qt_score_view.cpp: the widget that shows an editor window's bitmap.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_score_view.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWheelEvent>

#include "host/desktop/qt_platform.h"
#include "host/kernel/windows.h"
#include "host/toolbox/toolbox_host.h"

namespace {

// The codes of the keys that the editor knows.
constexpr int KEY_DELETE = 8;
constexpr int KEY_RETURN = 13;
constexpr int KEY_LEFT = 28;
constexpr int KEY_RIGHT = 29;
constexpr int KEY_UP = 30;
constexpr int KEY_DOWN = 31;

constexpr int TURN_MS = 50;       // a held arrow of a scroll bar repeats so often
constexpr int SHORTEST_TURN = 10; // a pointer that moves does not make it faster than this
constexpr int NOTCH = 120;        // a wheel's notch in the units that Qt counts
constexpr double PIXELS_A_NOTCH = 48;
constexpr double SCROLL_STEP_PIXELS = 16; // of the horizontal scroll bar
constexpr double NOTCHES_A_ZOOM = 1;

int code_of(int key) {
    switch (key) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete: return KEY_DELETE;
    case Qt::Key_Return:
    case Qt::Key_Enter: return KEY_RETURN;
    case Qt::Key_Left: return KEY_LEFT;
    case Qt::Key_Right: return KEY_RIGHT;
    case Qt::Key_Up: return KEY_UP;
    case Qt::Key_Down: return KEY_DOWN;
    default: return key >= Qt::Key_0 && key <= Qt::Key_9 ? key : -1;
    }
}

// While a loop of the toolbox's runs, nothing but the pointer reaches the program: a shortcut could close the very
// document whose press is followed.
class pointer_only : public QObject {
public:
    pointer_only() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject*, QEvent* e) override {
        switch (e->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride: return true;
        case QEvent::Close: e->ignore(); return true;
        default: return false;
        }
    }
};

} // namespace

qt_score_view::qt_score_view(host_window* w, QWidget* parent) : QWidget(parent), shown_window(w) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName("Score editor");
    setAccessibleDescription("Notes over time; the arrow keys move the selected notes, Delete deletes them");
    qt_enter_view(w, this);
    const Point least = kel_window_least(w);
    setMinimumSize(size_for(least.h, least.v));
}

qt_score_view::~qt_score_view() {
    if (shown_window) qt_leave_view(shown_window);
}

// ---------------------------------------------------------------------------------------------------------------------
// Places and sizes

int qt_score_view::scale() const {
    return fixed_scale ? fixed_scale : std::max(1, static_cast<int>(std::lround(devicePixelRatioF())));
}

void qt_score_view::set_scale(int wanted) {
    fixed_scale = wanted;
    fit();
    update();
}

double qt_score_view::per_pixel() const {
    return scale() / devicePixelRatioF();
}

QSize qt_score_view::size_for(int width, int height) const {
    return {static_cast<int>(std::ceil(width * per_pixel())),
            static_cast<int>(std::ceil(height * per_pixel()))};
}

Point qt_score_view::at(QPointF in_widget) const {
    const auto whole = [this](double v) {
        return static_cast<std::int16_t>(std::clamp(std::floor(v / per_pixel()), -32000.0, 32000.0));
    };
    return {whole(in_widget.y()), whole(in_widget.x())};
}

Point qt_score_view::to_screen(QPointF qt_global) const {
    return at(qt_global - screen()->geometry().topLeft());
}

Point qt_score_view::pointer() const {
    return to_screen(QCursor::pos());
}

QPoint qt_score_view::on_screen(Point global) const {
    const QPointF offset(global.h * per_pixel(), global.v * per_pixel());
    return (offset + screen()->geometry().topLeft()).toPoint();
}

Rect qt_score_view::screen_bounds() const {
    const QRect all = screen()->geometry();
    const Point end = at(QPointF(all.width(), all.height()));
    return {0, 0, end.h, end.v};
}

void qt_score_view::move_pointer(Point global) {
    QCursor::setPos(screen(), on_screen(global));
}

// The port's place on the screen, which the toolbox turns points with, and whose pointer it is.
void qt_score_view::activate() {
    qt_set_active_view(this);
    const Point origin = to_screen(mapToGlobal(QPointF(0, 0)));
    toolbox_port_setorigin(shown_window->port, origin.h, origin.v);
}

void qt_score_view::fit() {
    if (!shown_window) return;
    const Point least = kel_window_least(shown_window);
    setMinimumSize(size_for(least.h, least.v));
    const Point end = at(QPointF(width(), height()) + QPointF(0.001, 0.001));
    const int wide = std::max<int>(end.h, least.h);
    const int high = std::max<int>(end.v, least.v);
    if (wide == shown_window->width && high == shown_window->height) return;
    const qt_in_kernel now;
    kel_window_resize(shown_window, wide, high);
    kel_windows_draw_invalid();
}

void qt_score_view::resizeEvent(QResizeEvent*) {
    fit();
}

// ---------------------------------------------------------------------------------------------------------------------
// The picture

void qt_score_view::drawn() {
    if (shown_window && toolbox_port_takechanged(shown_window->port)) update();
}

QRect qt_score_view::line_place() const {
    if (line_column < 0) return {};
    const double size = per_pixel();
    return QRectF(line_column * size - 1, line_top * size, size + 2, (line_bottom - line_top) * size)
        .toAlignedRect();
}

void qt_score_view::set_line(int column, int top, int bottom) {
    if (column == line_column && top == line_top && bottom == line_bottom) return;
    update(line_place());
    line_column = column;
    line_top = top;
    line_bottom = bottom;
    update(line_place());
}

void qt_score_view::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    was_painted = true;
    if (!shown_window) {
        painter.fillRect(event->rect(), Qt::white);
        return;
    }
    GrafPtr port = shown_window->port;
    const int wide = toolbox_port_width(port);
    const int high = toolbox_port_height(port);
    const QImage picture(reinterpret_cast<const uchar*>(toolbox_port_pixels(port)), wide, high,
                         toolbox_port_rowpixels(port) * qsizetype{4}, QImage::Format_RGB32);
    const double ratio = devicePixelRatioF();
    const QSizeF covered(wide * per_pixel(), high * per_pixel());
    if (covered.width() < width() || covered.height() < height())
        painter.fillRect(event->rect(), palette().window());
    painter.scale(1 / ratio, 1 / ratio);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(QRect(0, 0, wide * scale(), high * scale()), picture);
    if (line_column >= 0) {
        painter.fillRect(
            QRect(line_column * scale(), line_top * scale(), scale(), (line_bottom - line_top) * scale()),
            QColor(200, 30, 30, 200));
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// The pointer

void qt_score_view::mousePressEvent(QMouseEvent* event) {
    last = event->position();
    if (!shown_window || pressed || qt_kernel_busy()) return;
    if (before_input) before_input();
    activate();
    pressed = true;
    pressed_button = event->button();
    const int modifiers = qt_modifiers(event->modifiers(), event->button());
    {
        const qt_in_kernel now;
        kel_window_click(shown_window, at(last), modifiers);
    }
    // A menu that the press opened has taken the release.
    if (!kel_drag_window() && !(QGuiApplication::mouseButtons() & pressed_button)) pressed = false;
    drawn();
}

void qt_score_view::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void qt_score_view::mouseMoveEvent(QMouseEvent* event) {
    last = event->position();
    inside = true;
    if (turn) turn->quit();
    if (!shown_window || tracking || qt_kernel_busy()) return;
    activate();
    if (pressed && !(event->buttons() & pressed_button)) { // the release went elsewhere
        mouseReleaseEvent(event);
        return;
    }
    const qt_in_kernel now;
    if (kel_drag_window() == shown_window)
        kel_drag_move(at(last));
    else if (!pressed)
        kel_window_pointer(shown_window, at(last), qt_modifiers(event->modifiers()));
    drawn();
}

void qt_score_view::release_drag() {
    if (kel_drag_window() == shown_window) kel_drag_release(at(last));
}

void qt_score_view::mouseReleaseEvent(QMouseEvent* event) {
    last = event->position();
    if (event->type() == QEvent::MouseButtonRelease && event->button() != pressed_button) return;
    pressed = false;
    if (turn) turn->quit();
    if (!shown_window || tracking || qt_kernel_busy()) return;
    const qt_in_kernel now;
    release_drag();
    kel_window_pointer(shown_window, at(last), qt_modifiers(event->modifiers()));
    drawn();
}

bool qt_score_view::track(Point* where) {
    drawn(); // what the turn before did
    const qt_in_kernel now;
    const pointer_only filter;
    QElapsedTimer since;
    since.start();
    QEventLoop loop;
    tracking = true;
    turn = &loop;
    const QPointF before = last;
    if (pressed) {
        QTimer::singleShot(TURN_MS, &loop, &QEventLoop::quit);
        loop.exec();
    }
    turn = nullptr;
    if (pressed && last != before && since.elapsed() < SHORTEST_TURN) {
        // Takes in what else the pointer does within the shortest turn.
        QTimer::singleShot(static_cast<int>(SHORTEST_TURN - since.elapsed()), &loop, &QEventLoop::quit);
        loop.exec();
    }
    tracking = false;
    if (!(QGuiApplication::mouseButtons() & pressed_button)) pressed = false;
    *where = to_screen(mapToGlobal(last));
    // Where the pointer still went before a release of the same turn counts: the release is the next turn's then.
    return (pressed || last != before) && shown_window;
}

void qt_score_view::hover(Qt::KeyboardModifiers keys) {
    if (!shown_window || !inside || pressed || qt_kernel_busy()) return;
    activate();
    const qt_in_kernel now;
    kel_window_pointer(shown_window, at(last), qt_modifiers(keys));
    drawn();
}

void qt_score_view::leaveEvent(QEvent*) {
    inside = false;
    if (!shown_window || pressed || qt_kernel_busy()) return;
    activate();
    const qt_in_kernel now;
    kel_window_pointerout(shown_window, at(last), qt_modifiers(QGuiApplication::keyboardModifiers()));
    drawn();
}

// No release comes to a widget that is hidden under the pressed button. The call that hides it runs in the kernel.
void qt_score_view::hideEvent(QHideEvent*) {
    if (!pressed) return;
    pressed = false;
    if (turn) turn->quit();
    QTimer::singleShot(0, this, [this] {
        if (!shown_window || qt_kernel_busy()) return;
        const qt_in_kernel now;
        release_drag();
    });
}

void qt_score_view::scroll_by(double h, double v) {
    rest_h += h / SCROLL_STEP_PIXELS;
    rest_v += v;
    const int steps_h = static_cast<int>(rest_h);
    const int steps_v = static_cast<int>(rest_v);
    rest_h -= steps_h;
    rest_v -= steps_v;
    if (!steps_h && !steps_v) return;
    const qt_in_kernel now;
    kel_window_scroll_to(shown_window, shown_window->hscroll_value - steps_h,
                         shown_window->vscroll_value - steps_v);
}

void qt_score_view::zoom_by(double notches, bool vertically) {
    rest_zoom += notches;
    // The four segments of the zoom box, as a press on them: out and in by time, out and in by value.
    constexpr int SEGMENT = 15;
    while (std::fabs(rest_zoom) >= NOTCHES_A_ZOOM) {
        const int segment = (vertically ? 2 : 0) + (rest_zoom > 0 ? 1 : 0);
        rest_zoom -= rest_zoom > 0 ? NOTCHES_A_ZOOM : -NOTCHES_A_ZOOM;
        const Point on_box{static_cast<std::int16_t>(shown_window->height - SEGMENT / 2),
                           static_cast<std::int16_t>(segment * SEGMENT + SEGMENT / 2)};
        const qt_in_kernel now;
        kel_window_click(shown_window, on_box, 0);
        kel_drag_release(on_box);
    }
    kel_windows_draw_invalid();
}

void qt_score_view::wheelEvent(QWheelEvent* event) {
    event->accept();
    if (!shown_window || pressed || qt_kernel_busy()) return;
    activate();
    const QPointF notches = QPointF(event->angleDelta()) / NOTCH;
    if (event->modifiers() & Qt::ControlModifier) {
        zoom_by(notches.y() + notches.x(), (event->modifiers() & Qt::ShiftModifier) != 0);
    } else {
        QPointF by = event->pixelDelta().isNull() ? notches * PIXELS_A_NOTCH
                                                  : QPointF(event->pixelDelta()) / per_pixel();
        // Shift, and on some systems Alt, turn the wheel; Qt has then exchanged the directions by itself for Alt.
        if (event->modifiers() & Qt::ShiftModifier && by.x() == 0) by = {by.y(), 0};
        scroll_by(by.x(), by.y());
    }
    hover(event->modifiers());
    drawn();
}

// ---------------------------------------------------------------------------------------------------------------------
// Keys

void qt_score_view::key(int code) {
    if (!shown_window || pressed || qt_kernel_busy()) return;
    if (before_input) before_input();
    const qt_in_kernel now;
    kel_window_key(shown_window, code);
    drawn();
}

void qt_score_view::keyPressEvent(QKeyEvent* event) {
    hover(event->modifiers());
    const int code = code_of(event->key());
    const Qt::KeyboardModifiers held = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (code < 0 || held != Qt::NoModifier) {
        QWidget::keyPressEvent(event);
        return;
    }
    key(code);
}

void qt_score_view::keyReleaseEvent(QKeyEvent* event) {
    hover(QGuiApplication::queryKeyboardModifiers());
    QWidget::keyReleaseEvent(event);
}

// Another ratio: the window was moved to another display.
bool qt_score_view::event(QEvent* event) {
    if (event->type() == QEvent::ScreenChangeInternal || event->type() == QEvent::PaletteChange) {
        fit();
        update();
    }
    return QWidget::event(event);
}
