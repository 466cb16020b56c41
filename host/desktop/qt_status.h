// host/desktop/qt_status.h: the passing line at the foot of a window.
// Layer: platform. Called by the editor's and the patch windows.
#pragma once

#include <QStatusBar>

// Shows the text for so many milliseconds. Where the window is too narrow for it, its beginning and an ellipsis; the whole
// text then shows where the pointer rests on the line. [main]
void qt_say(QStatusBar* bar, const QString& text, int ms);
