// host/desktop/qt_file_kinds.cpp: the kinds of files in the words of file dialogs.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_file_kinds.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

#include "host/kernel/files.h"

namespace {

const QString MIDI_KIND = QStringLiteral("MIDI file (*.mid *.midi *.smf *.kar)");
const QString TEXT_KIND = QStringLiteral("Document as text (*.kel *.txt)");
const QString BINARY_KIND = QStringLiteral("Document, binary (*.kelb)");

QString ending_of(const QString& kind) {
    if (kind == TEXT_KIND) return QStringLiteral(".kel");
    return kind == BINARY_KIND ? QStringLiteral(".kelb") : QStringLiteral(".mid");
}

QString kind_of(const QString& name) {
    switch (kel_typeofname(QFile::encodeName(name).constData())) {
    case TYPE_TEXT: return TEXT_KIND;
    case TYPE_KELB: return BINARY_KIND;
    default: return MIDI_KIND;
    }
}

} // namespace

QString qt_kinds_to_open() {
    return QStringLiteral("Scores (*.mid *.midi *.smf *.kar *.kel *.kelb *.txt);;") + MIDI_KIND + ";;" +
           TEXT_KIND + ";;" + BINARY_KIND + QStringLiteral(";;All files (*)");
}

QString qt_ask_where_to_save(QWidget* parent, const QString& proposed, bool midi_only) {
    QFileDialog dialog(parent, midi_only ? QStringLiteral("Export as MIDI file") : QStringLiteral("Save as"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const QStringList kinds =
        midi_only ? QStringList{MIDI_KIND} : QStringList{MIDI_KIND, TEXT_KIND, BINARY_KIND};
    dialog.setNameFilters(kinds);
    const QString kind = midi_only ? MIDI_KIND : kind_of(proposed);
    dialog.selectNameFilter(kind);
    // Endings are given to names without one before the dialog asks whether a file of that name may be replaced.
    dialog.setDefaultSuffix(ending_of(kind).mid(1));
    QObject::connect(&dialog, &QFileDialog::filterSelected,
                     [&dialog](const QString& chosen) { dialog.setDefaultSuffix(ending_of(chosen).mid(1)); });
    const QFileInfo info(proposed);
    if (info.isAbsolute()) dialog.setDirectory(info.absolutePath());
    if (!proposed.isEmpty()) dialog.selectFile(info.fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return QString();
    return dialog.selectedFiles().constFirst();
}
