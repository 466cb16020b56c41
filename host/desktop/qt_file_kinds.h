// host/desktop/qt_file_kinds.h: the kinds of files in the words of file dialogs.
// Layer: desktop platform, Qt.
// Called by the desktop's windows and the host's own dialogs.
#pragma once

#include <QString>

class QWidget;

// The name filters of a dialog that opens files. [main]
QString qt_kinds_to_open();

// Asks for a file to write, `proposed` being a name or a path; the name that is given has an ending that tells its kind.
// Empty when it was cancelled. [main]
QString qt_ask_where_to_save(QWidget* parent, const QString& proposed, bool midi_only = false);
