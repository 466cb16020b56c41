// host/desktop/qt_platform.h: the machine as Qt shows it to kernel and toolbox: windows, pointer, menus, dialogs,
// clipboard; and the kernel's turns in Qt's loop.
// Layer: desktop platform, Qt.
// Called by the desktop's windows.
#pragma once

#include <functional>

#include <QPointF>

#include "host/platform.h"
#include "host/toolbox/toolbox_host.h"

class qt_score_view;

// What the host is to be started with. [main]
host_platform qt_host_hooks();

// Puts the pointer, menus, cursor and clipboard into the toolbox; after the host was started, which empties it. [main]
void qt_take_toolbox();

// Calls `turn` whenever `fd` becomes readable, but never while the kernel is inside a call that runs a loop of its own (a
// held button, a menu, a dialog): what that call stands on must not be freed under it. Null ends it. [main]
void qt_start_turns(int fd, std::function<void()> turn);

// While one lives, the kernel is inside a call from Qt. The last one to go has what waited meanwhile carried out. [main]
class qt_in_kernel {
public:
    qt_in_kernel();
    ~qt_in_kernel();
    qt_in_kernel(const qt_in_kernel&) = delete;
    qt_in_kernel& operator=(const qt_in_kernel&) = delete;
};
bool qt_kernel_busy();

// The view that shows a host window; null where none does. Views enter and leave by themselves. [main]
qt_score_view* qt_view_of(host_window* w);
void qt_enter_view(host_window* w, qt_score_view* view);
void qt_leave_view(host_window* w);

// The view that the pointer is in or was in last: whose coordinates the toolbox's screen has. [main]
void qt_set_active_view(qt_score_view* view);

// The modifier bits of the toolbox that keys and button stand for. [main]
int qt_modifiers(Qt::KeyboardModifiers keys, Qt::MouseButton button = Qt::LeftButton);

// Who is told of what the kernel does with windows and documents. Unset: nobody. [main]
struct qt_listeners {
    std::function<void(host_window*)> window_shown; // one without a view is to be shown
    std::function<void(host_window*)> window_hidden;
    std::function<void(host_window*)> window_freed;
    std::function<void(host_patcher*)> patcher_dirty;
    std::function<void(host_object*)> inspector;
};
qt_listeners& qt_listen();
