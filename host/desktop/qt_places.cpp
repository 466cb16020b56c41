// host/desktop/qt_places.cpp: where a document's window was when it was closed last.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_places.h"

#include <QCryptographicHash>
#include <QScreen>
#include <QStringList>
#include <QStyle>

namespace {

constexpr qsizetype FILES_KEPT = 100;
const QString LAST_SIZE = QStringLiteral("windows/size");
const QString ORDER = QStringLiteral("windows/order"); // of the files' keys, the newest first

QString key_of(const QString& file) {
    const QByteArray sum = QCryptographicHash::hash(file.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QStringLiteral("windows/place-") + QString::fromLatin1(sum.left(16));
}

} // namespace

void qt_keep_place(QSettings& settings, const QString& file, const QWidget& window) {
    if (!window.isMaximized() && !window.isFullScreen()) settings.setValue(LAST_SIZE, window.size());
    if (file.isEmpty()) return;
    const QString key = key_of(file);
    settings.setValue(key, window.saveGeometry());
    QStringList order = settings.value(ORDER).toStringList();
    order.removeAll(key);
    order.prepend(key);
    while (order.size() > FILES_KEPT) settings.remove(order.takeLast());
    settings.setValue(ORDER, order);
}

void qt_restore_place(const QSettings& settings, const QString& file, QWidget& window) {
    if (!file.isEmpty() && window.restoreGeometry(settings.value(key_of(file)).toByteArray())) return;
    const QSize size = settings.value(LAST_SIZE).toSize();
    if (size.isValid()) window.resize(size);
}

void qt_fit_to_screen(QWidget& window) {
    // How wide the frame will be is known only when it is there: a title, and a little at each side.
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const int side = window.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const QSize room = window.screen()->availableSize() - QSize(2 * side, title + 2 * side);
    window.resize(window.size().boundedTo(room));
}
