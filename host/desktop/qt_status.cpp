// host/desktop/qt_status.cpp: the passing line at the foot of a window.
// Layer: platform.
#include "host/desktop/qt_status.h"

#include <QFontMetrics>
#include <QLabel>

namespace {

constexpr int MARGIN = 24; // the bar's own frame, and the corner by which the window is resized

} // namespace

void qt_say(QStatusBar* bar, const QString& text, int ms) {
    int room = bar->width() - MARGIN;
    for (const QLabel* label : bar->findChildren<QLabel*>()) room -= label->width() + MARGIN / 2;
    const QString shown = bar->fontMetrics().elidedText(text, Qt::ElideRight, room);
    bar->showMessage(shown, ms);
    bar->setToolTip(shown == text ? QString() : text);
}
