// host/desktop/qt_asks.h: what the windows of patches ask of the desktop as a whole.
// Layer: desktop platform, Qt. Filled by the desktop; called by the windows.
#pragma once

#include <functional>

class QMenu;
class QWidget;

// All set, or none: a window of a patch in a score's own window has none. The widget is the window that asks.
struct qt_asks {
    std::function<void(QWidget*)> open; // asks which files to open, and opens them
    std::function<void(QWidget*)> help; // shows the page of keys and tools
    std::function<void(QMenu*)> midi;   // fills the menu of ports and synth
    std::function<void()> quit;
};
