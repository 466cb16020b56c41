// host/desktop/qt_file_kinds.cpp: file dialogs, with the kinds of files in words.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_file_kinds.h"

#include <algorithm>

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStringList>

namespace {

struct kind {
    file_type type;
    const char* words;
    const char* ending;  // that a name gets
    const char* endings; // that tell the type
};

constexpr std::array<kind, 3> all_kinds{{
    {TYPE_MIDI, "MIDI file", ".mid", "*.mid *.midi *.smf *.kar"},
    {TYPE_TEXT, "Document as text", ".kel", "*.kel *.txt"},
    {TYPE_KELB, "Document, binary", ".kelb", "*.kelb"},
}};

const kind& kind_of(file_type type) {
    const auto* const found =
        std::find_if(all_kinds.begin(), all_kinds.end(), [type](const kind& k) { return k.type == type; });
    return found == all_kinds.end() ? all_kinds.front() : *found;
}

QString ending_of(file_type type) {
    return QString::fromLatin1(kind_of(type).ending);
}

QString filter_of(file_type type) {
    return QStringLiteral("%1 (%2)").arg(QString::fromLatin1(kind_of(type).words),
                                         QString::fromLatin1(kind_of(type).endings));
}

QStringList of_each(std::span<const file_type> types, QString (*text)(file_type)) {
    QStringList all;
    for (const file_type t : types) all.append(text(t));
    return all;
}

bool is_one_of(file_type type, std::span<const file_type> types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

file_type type_by_ending(const QString& name) {
    return kel_typeofname(QFile::encodeName(name).constData());
}

// The name with an ending that tells the type, in place of one that tells another.
QString named_for(const QString& name, file_type type) {
    const file_type told = type_by_ending(name);
    if (told == type) return name;
    return (told ? name.left(name.lastIndexOf('.')) : name) + ending_of(type);
}

// Shows the dialog until a file is chosen that will do; `why_not` says what is wrong with one, or nothing.
template <class says_why_not> QString ask(QFileDialog& dialog, says_why_not why_not) {
    for (;;) {
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return QString();
        const QString chosen = dialog.selectedFiles().constFirst();
        const QString why = why_not(chosen);
        if (why.isEmpty()) return chosen;
        QMessageBox::warning(dialog.parentWidget(), dialog.windowTitle(),
                             QStringLiteral("“%1” %2").arg(QFileInfo(chosen).fileName(), why));
    }
}

} // namespace

QString qt_kinds_to_open(std::span<const file_type> types) {
    QStringList endings;
    for (const file_type t : types) endings.append(QString::fromLatin1(kind_of(t).endings));
    return QStringLiteral("Scores (%1);;%2;;All files (*)")
        .arg(endings.join(' '), of_each(types, filter_of).join(";;"));
}

QString qt_ask_what_to_open(QWidget* parent, std::span<const file_type> types) {
    QFileDialog dialog(parent, QStringLiteral("Open"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(qt_kinds_to_open(types).split(";;"));
    return ask(dialog, [types](const QString& chosen) {
        if (is_one_of(kel_filetype(QFile::encodeName(chosen).toStdString()), types)) return QString();
        return QStringLiteral("is neither a MIDI file nor a document.");
    });
}

QString qt_ask_where_to_save(QWidget* parent, const QString& proposed, std::span<const file_type> types) {
    const bool midi_only = types.size() == 1 && types.front() == TYPE_MIDI;
    QFileDialog dialog(parent, midi_only ? QStringLiteral("Export as MIDI file") : QStringLiteral("Save as"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const QStringList filters = of_each(types, filter_of);
    dialog.setNameFilters(filters);
    const file_type told = type_by_ending(proposed);
    const file_type first = is_one_of(told, types) ? told : types.front();
    dialog.selectNameFilter(filter_of(first));
    // Endings are given to names without one before the dialog asks whether a file of that name may be replaced.
    dialog.setDefaultSuffix(ending_of(first).mid(1));
    QObject::connect(&dialog, &QFileDialog::filterSelected, [&](const QString& chosen) {
        const qsizetype at = filters.indexOf(chosen);
        if (at < 0) return;
        const file_type type = types[static_cast<std::size_t>(at)];
        const QStringList typed = dialog.selectedFiles();
        dialog.setDefaultSuffix(ending_of(type).mid(1));
        // With nothing typed it is the folder.
        if (typed.size() == 1 && !QFileInfo(typed.constFirst()).isDir())
            dialog.selectFile(named_for(typed.constFirst(), type));
    });
    const QFileInfo info(proposed);
    if (info.isAbsolute()) dialog.setDirectory(info.absolutePath());
    if (!proposed.isEmpty()) dialog.selectFile(named_for(info.fileName(), first));
    return ask(dialog, [types](const QString& chosen) {
        if (is_one_of(type_by_ending(chosen), types)) return QString();
        return QStringLiteral("should end in %1, which tells the kind of file.")
            .arg(of_each(types, ending_of).join(QStringLiteral(" or ")));
    });
}
