// host/desktop/qt_file_kinds.h: file dialogs, with the kinds of files in words.
// Layer: desktop platform, Qt.
// Called by the desktop's windows and the host's own dialogs.
#pragma once

#include <array>
#include <span>

#include <QString>

#include "host/kernel/files.h"

class QWidget;

// What a score is saved as, the usual kind first.
constexpr std::array<file_type, 3> SCORE_TYPES{TYPE_MIDI, TYPE_TEXT, TYPE_KELB};

// The name filters of a dialog that opens files of these types. [main]
QString qt_kinds_to_open(std::span<const file_type> types);

// Asks for a file to read of one of the types, going by the type that the file keeps before its name's ending; says so
// and asks again when another is chosen. Empty when it was cancelled. [main]
QString qt_ask_what_to_open(QWidget* parent, std::span<const file_type> types);

// Asks for a file to write of one of the types, `proposed` being a name or a path, or empty. It proposes the type that
// the name's ending tells, or else the first, and the name with that one's ending. The name that is given has an ending
// that tells one of the types: says so and asks again when another is typed. Empty when it was cancelled. [main]
QString qt_ask_where_to_save(QWidget* parent, const QString& proposed, std::span<const file_type> types);
