// host/desktop/qt_icons.h: the transport's icons, drawn in the colours of the desktop.
// Layer: desktop platform, Qt.
// Called by the editor's windows.
#pragma once

#include <QIcon>

class QPalette;

enum class qt_icon { to_start, play, stop, record, follow, step, panic };

// [main]
QIcon qt_make_icon(qt_icon which, const QPalette& colours);
// The program's own. [main]
QIcon qt_program_icon();
