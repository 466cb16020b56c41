// host/desktop/qt_inspector.h: the dialog that describes an object's eight parameters.
// Layer: desktop platform, Qt.
// Called by the desktop, for the role menu's last item and for the View menu.
#pragma once

#include <functional>

#include "host/kel.h"

class QWidget;

// Shows the parameters of the object in a dialog of the window's and sends what a person changes. `before_change` is
// called before anything is sent. Returns when the dialog is closed. [main]
void qt_inspect(QWidget* window, host_object* x, const std::function<void()>& before_change);
