// host/desktop/qt_icons.cpp: the transport's icons, drawn in the colours of the desktop.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace {

// All are drawn on a square of 24 units.
constexpr int UNITS = 24;
constexpr QColor RED{206, 44, 49};

QPainterPath triangle(double left, double top, double width, double height) {
    QPainterPath path(QPointF(left, top));
    path.lineTo(left + width, top + height / 2);
    path.lineTo(left, top + height);
    path.closeSubpath();
    return path;
}

QPainterPath bar(double left, double width, double top = 5, double height = 14) {
    QPainterPath path;
    path.addRoundedRect(QRectF(left, top, width, height), 1, 1);
    return path;
}

QPainterPath shape_of(qt_icon which) {
    QPainterPath path;
    switch (which) {
    case qt_icon::to_start:
        path.addPath(bar(5, 3));
        path.moveTo(19, 5);
        path.lineTo(9.5, 12);
        path.lineTo(19, 19);
        path.closeSubpath();
        break;
    case qt_icon::play: path = triangle(7, 4, 13, 16); break;
    case qt_icon::stop: path = bar(6, 12, 6, 12); break;
    case qt_icon::record: path.addEllipse(QPointF(12, 12), 6.5, 6.5); break;
    case qt_icon::step:
        path = triangle(6, 5, 9, 14);
        path.addPath(bar(16, 3));
        break;
    case qt_icon::follow: // a score's line and, under it, the player's that it goes along with
        path.addPath(bar(4, 8, 6, 4));
        path.addPath(bar(14, 6, 6, 4));
        path.addPath(bar(4, 5, 14, 4));
        path.addPath(triangle(12, 12, 7, 8));
        break;
    case qt_icon::panic:
        path.addEllipse(QPointF(12, 12), 8, 8);
        path.addPath(bar(11, 2, 7, 6));
        path.addEllipse(QPointF(12, 16), 1.3, 1.3);
        break;
    }
    return path;
}

QPixmap draw(qt_icon which, int size, const QColor& colour) {
    QPixmap pixels(size, size);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / double{UNITS}, size / double{UNITS});
    painter.fillPath(shape_of(which), colour);
    return pixels;
}

} // namespace

QIcon qt_make_icon(qt_icon which, const QPalette& colours) {
    QIcon icon;
    const QColor usual =
        which == qt_icon::record ? RED : colours.color(QPalette::Active, QPalette::ButtonText);
    const QColor off = colours.color(QPalette::Disabled, QPalette::ButtonText);
    for (const int size : {16, 24, 32, 48, 72}) {
        icon.addPixmap(draw(which, size, usual), QIcon::Normal);
        icon.addPixmap(draw(which, size, off), QIcon::Disabled);
    }
    return icon;
}

// Three notes as bars over a grid, as the editor shows them.
QIcon qt_program_icon() {
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 128}) {
        QPixmap pixels(size, size);
        pixels.fill(Qt::transparent);
        QPainter painter(&pixels);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 32.0, size / 32.0);
        QPainterPath page;
        page.addRoundedRect(QRectF(1, 1, 30, 30), 5, 5);
        painter.fillPath(page, QColor(250, 250, 247));
        painter.setPen(QPen(QColor(205, 208, 214), 1));
        for (const int y : {8, 14, 20, 26}) painter.drawLine(QPointF(3, y), QPointF(29, y));
        painter.fillRect(QRectF(4, 18.5, 9, 4), QColor(0, 114, 178));
        painter.fillRect(QRectF(11, 12.5, 9, 4), QColor(213, 94, 0));
        painter.fillRect(QRectF(18, 6.5, 10, 4), QColor(0, 158, 115));
        painter.setPen(QPen(QColor(80, 84, 92), 1.2));
        painter.drawPath(page);
        icon.addPixmap(pixels);
    }
    return icon;
}
