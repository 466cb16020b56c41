// host/desktop/qt_help.h: the page of keys and tools.
// Layer: desktop platform, Qt.
// Called by the desktop.
#pragma once

class QWidget;

// Shows it beside what one works in; a second call brings it to the front. [main]
void qt_show_help(QWidget* parent);
// Takes it away, if it is there. [main]
void qt_close_help();
