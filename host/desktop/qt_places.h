// host/desktop/qt_places.h: where a document's window was when it was closed last.
// Layer: desktop platform, Qt.
// Called by the desktop's windows.
#pragma once

#include <QSettings>
#include <QString>
#include <QWidget>

// Keeps size and place of the window that showed the file; an empty name: of a new document's. [main]
void qt_keep_place(QSettings& settings, const QString& file, const QWidget& window);

// Puts the window there; one of a file that was never open gets the size of the window closed last. [main]
void qt_restore_place(const QSettings& settings, const QString& file, QWidget& window);

// Makes a window that was not shown yet no larger than its screen has room for, its frame included. [main]
void qt_fit_to_screen(QWidget& window);
