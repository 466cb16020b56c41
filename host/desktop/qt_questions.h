// host/desktop/qt_questions.h: what windows of several kinds ask a person.
// Layer: desktop platform, Qt. Called by the windows.
#pragma once

#include <QString>

class QWidget;

enum class qt_unsaved { save, discard, cancel };

// Asks what becomes of the changes to what is called so. [main]
qt_unsaved qt_ask_to_save(QWidget* parent, const QString& called);
