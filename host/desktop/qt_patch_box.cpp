// host/desktop/qt_patch_box.cpp: one box of a patch.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_patch_box.h"

#include <algorithm>

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int LINE_ROOM = 8;   // above and below a line of text, together
constexpr int SIDE = 8;        // between the border and the text
constexpr int STRIP = 5;       // the coloured edge of a score
constexpr int PORT_WIDTH = 10; // of the mark for an inlet or outlet
constexpr int PORT_HEIGHT = 3;
constexpr int PORT_STEP = 16;    // the least from one port to the next
constexpr int STATE_WIDTH = 150; // least, where a second line will change

QColor between(const QColor& a, const QColor& b, double part_of_b) {
    const auto mix = [part_of_b](int x, int y) { return qRound(x + (y - x) * part_of_b); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

bool is_dark(const QPalette& p) {
    return p.color(QPalette::Base).lightness() < 128;
}

QFont small(QFont font) {
    font.setPointSizeF(font.pointSizeF() * 0.85);
    return font;
}

QSize comment_size(const QFont& font, const QString& text, int width) {
    const QFontMetrics metrics(font);
    if (width <= 0) return {metrics.horizontalAdvance(text) + SIDE + 1, metrics.height() + LINE_ROOM};
    const QRect r = metrics.boundingRect(QRect(0, 0, width - SIDE, 10'000), Qt::TextWordWrap, text);
    return {width, r.height() + LINE_ROOM};
}

} // namespace

double qt_port_middle(int port) {
    return SIDE + PORT_WIDTH / 2.0 + port * PORT_STEP;
}

QSize qt_box_look::size(const QFont& font) const {
    if (drawn_as == kind::comment) return comment_size(font, text, width);
    const QFontMetrics metrics(font);
    const int ports = std::max(inlets, outlets);
    int w = width > 0 ? width : metrics.horizontalAdvance(text) + 2 * SIDE + 1;
    w = std::max(w, ports * PORT_STEP - (PORT_STEP - PORT_WIDTH) + 2 * SIDE);
    if (has_state_line) w = std::max(w, STATE_WIDTH);
    int h = metrics.height() + LINE_ROOM;
    if (has_state_line) h += QFontMetrics(small(font)).height();
    return {w, h};
}

void qt_box_look::paint(QPainter& to, const QWidget& in, bool down) const {
    const QPalette& p = in.palette();
    const bool dark = is_dark(p);
    const QColor base = p.color(QPalette::Base);
    const QColor ink = p.color(QPalette::Text);
    const QColor accent = dark ? QColor(0x5c, 0xc9, 0xb6) : QColor(0x12, 0x7d, 0x6e);
    const QColor trouble = dark ? QColor(0xf0, 0x8c, 0x7d) : QColor(0xb3, 0x2d, 0x1c);
    const QRectF whole = QRectF(in.rect());
    to.setRenderHint(QPainter::Antialiasing);
    if (drawn_as == kind::comment) {
        to.setPen(between(base, ink, 0.75));
        to.drawText(in.rect().adjusted(SIDE / 2, 0, -SIDE / 2, 0), Qt::TextWordWrap | Qt::AlignVCenter, text);
    } else {
        const bool round = drawn_as == kind::message;
        QColor fill = between(base, ink, round ? 0.12 : 0.05);
        if (in.underMouse() && in.cursor().shape() == Qt::PointingHandCursor)
            fill = between(fill, accent, 0.18);
        if (down) fill = between(fill, accent, 0.45);
        QPen border(drawn_as == kind::broken ? trouble : between(base, ink, 0.55));
        if (drawn_as == kind::score) border.setColor(accent);
        if (drawn_as == kind::broken) border.setStyle(Qt::DashLine);
        to.setPen(border);
        to.setBrush(fill);
        const double radius = round ? 8 : 3;
        to.drawRoundedRect(whole.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        to.setPen(Qt::NoPen);
        if (drawn_as == kind::score) {
            to.setBrush(accent);
            to.drawRoundedRect(QRectF(0, 0, STRIP, whole.height()), 2, 2);
        }
        to.setBrush(between(base, ink, 0.7));
        for (int k = 0; k < inlets; ++k)
            to.drawRect(QRectF(qt_port_middle(k) - PORT_WIDTH / 2.0, 0, PORT_WIDTH, PORT_HEIGHT));
        for (int k = 0; k < outlets; ++k)
            to.drawRect(QRectF(qt_port_middle(k) - PORT_WIDTH / 2.0, whole.height() - PORT_HEIGHT, PORT_WIDTH,
                               PORT_HEIGHT));
        QRect lines = in.rect().adjusted(SIDE, PORT_HEIGHT, -SIDE / 2, -PORT_HEIGHT);
        to.setPen(drawn_as == kind::broken ? trouble : ink);
        if (has_state_line) {
            const int line = QFontMetrics(in.font()).height();
            to.drawText(QRect(lines.left(), lines.top() + 1, lines.width(), line),
                        Qt::AlignLeft | Qt::AlignVCenter, text);
            lines.setTop(lines.top() + line);
            to.setFont(small(in.font()));
            to.setPen(between(base, ink, 0.75));
            to.drawText(lines, Qt::AlignLeft | Qt::AlignVCenter, state);
        } else {
            to.drawText(lines, Qt::AlignLeft | Qt::AlignVCenter,
                        QFontMetrics(in.font()).elidedText(text, Qt::ElideRight, lines.width() + 1));
        }
    }
    if (in.hasFocus()) {
        to.setBrush(Qt::NoBrush);
        to.setPen(QPen(p.color(QPalette::Highlight), 2));
        to.drawRoundedRect(whole.adjusted(1, 1, -1, -1), 3, 3);
    }
}

qt_patch_box::qt_patch_box(qt_patch_view& in, int at, const qt_box_look& drawn, qt_box_press pressed)
    : QAbstractButton(&in), view(in), place(at), look(drawn), does(pressed) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(look.drawn_as == qt_box_look::kind::message ? QStringLiteral("message ") + look.text
                                                                  : look.text);
    switch (does) {
    case qt_box_press::click: setAccessibleDescription(QStringLiteral("sends its messages")); break;
    case qt_box_press::bang: setAccessibleDescription(QStringLiteral("sends a bang")); break;
    case qt_box_press::open: setAccessibleDescription(QStringLiteral("opens its window")); break;
    case qt_box_press::nothing:
        setAccessibleDescription(look.drawn_as == qt_box_look::kind::comment  ? QStringLiteral("comment")
                                 : look.drawn_as == qt_box_look::kind::broken ? QStringLiteral("broken box")
                                                                              : QStringLiteral("box"));
    }
    if (does == qt_box_press::click || does == qt_box_press::bang) setCursor(Qt::PointingHandCursor);
    // A helper for whoever cannot see presses by this.
    connect(this, &QAbstractButton::clicked, this, [this] { view.press(place); });
    fit();
}

void qt_patch_box::fit() {
    resize(look.size(font()));
}

void qt_patch_box::set_state(const QString& text) {
    if (look.state == text) return;
    look.state = text;
    setAccessibleDescription(QStringLiteral("opens its window; ") + text);
    update();
}

void qt_patch_box::paintEvent(QPaintEvent*) {
    QPainter to(this);
    look.paint(to, *this, isDown());
}

// A press sends at once, as in a performance one wants; what opens a window wants two.
void qt_patch_box::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    if (does == qt_box_press::nothing || does == qt_box_press::open) return;
    setDown(true);
    repaint();
    view.press(place);
}

void qt_patch_box::mouseReleaseEvent(QMouseEvent*) {
    setDown(false);
}

void qt_patch_box::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && does == qt_box_press::open) return view.press(place);
    mousePressEvent(event);
}

void qt_patch_box::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space)
        return QAbstractButton::keyPressEvent(event);
    // A held key is one press.
    if (!event->isAutoRepeat()) view.press(place);
}

void qt_patch_box::focusInEvent(QFocusEvent* event) {
    view.set_lit(place);
    QAbstractButton::focusInEvent(event);
}

void qt_patch_box::focusOutEvent(QFocusEvent* event) {
    view.set_lit(-1);
    QAbstractButton::focusOutEvent(event);
}

void qt_patch_box::enterEvent(QEnterEvent* event) {
    view.set_lit(place);
    QAbstractButton::enterEvent(event);
}

void qt_patch_box::leaveEvent(QEvent* event) {
    view.set_lit(-1);
    QAbstractButton::leaveEvent(event);
}

// Over an inlet or outlet, what it is for, where the box's class tells.
bool qt_patch_box::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QAbstractButton::event(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    const bool inlet = help->pos().y() < height() / 2;
    for (int k = 0; k < (inlet ? look.inlets : look.outlets); ++k) {
        if (qAbs(help->pos().x() - qt_port_middle(k)) > PORT_STEP / 2.0) continue;
        QToolTip::showText(help->globalPos(), view.port_help(place, inlet, k), this);
        return true;
    }
    QToolTip::hideText();
    return true;
}
