// host/desktop/qt_questions.cpp: what windows of several kinds ask a person.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_questions.h"

#include <QAbstractButton>
#include <QMessageBox>

qt_unsaved qt_ask_to_save(QWidget* parent, const QString& called) {
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Unsaved changes"),
                    QStringLiteral("“%1” has changes that are not saved.").arg(called),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
    box.setInformativeText(QStringLiteral("Without saving they are lost."));
    // A style's own words have no letters to press on every desktop.
    box.button(QMessageBox::Save)->setText(QStringLiteral("&Save"));
    box.button(QMessageBox::Discard)->setText(QStringLiteral("&Discard"));
    box.button(QMessageBox::Cancel)->setText(QStringLiteral("&Cancel"));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save: return qt_unsaved::save;
    case QMessageBox::Discard: return qt_unsaved::discard;
    default: return qt_unsaved::cancel;
    }
}
