// host/kernel/windows.h: editor windows as a platform drives them: presses, drags, keys, sizes, drawing.
// Layer: kernel; host_window_… is the object's side of the same records.
// Called by host/headless/ and host/desktop/.
#pragma once

#include <string>
#include <vector>

#include "host/kel.h"

// The most pixels that a window's content can be wide or high.
constexpr int KEL_WINDOW_MOST = 16384;

// Makes the window's port current for the scope's life, as an Edit command finds it; none while the window is hidden.
// [main]
class kel_in_port {
public:
    explicit kel_in_port(const host_window* w) {
        GetPort(&before);
        SetPort(w->visible ? w->port : nullptr);
    }
    ~kel_in_port() { SetPort(before); }
    kel_in_port(const kel_in_port&) = delete;
    kel_in_port& operator=(const kel_in_port&) = delete;

private:
    GrafPtr before = nullptr;
};

// All windows there are, in the order of making. [main]
const std::vector<host_window*>& kel_windows();

// As UTF-8; borrowed until it is set anew. [main]
const std::string& kel_window_title(const host_window* w);

// The pointer's button goes down in a visible window: the object's "click". A hidden window gets nothing. What the click
// returned. [main]
int kel_window_click(host_window* w, Point where, int modifiers);

// Whether a drag runs that host_window_drag began, and in which window. [main]
host_window* kel_drag_window();

// The pointer moves with the button down, of which a hidden window hears nothing; the button goes up there, which ends
// the drag, whether the window is shown or not. Nothing without a drag. [main]
void kel_drag_move(Point where);
void kel_drag_release(Point where);

// The pointer moves over the visible window with the button up; leaves it. [main]
void kel_window_pointer(host_window* w, Point where, int modifiers);
void kel_window_pointerout(host_window* w, Point where, int modifiers);

// A key goes down while the visible window is in front. [main]
void kel_window_key(host_window* w, int code);

// A new size of the content, at least 1 by 1: scroll bars move, the object's "wsize". Whoever lets a person pull at the
// window's corner holds the size to the window's least one first; h is the width. [main]
void kel_window_resize(host_window* w, int width, int height);
Point kel_window_least(const host_window* w);

// Draws the visible window anew, whole. [main]
void kel_window_update(host_window* w);

// Draws anew what is invalid in the visible windows; false when nothing was. [main]
bool kel_windows_draw_invalid();

// The scroll values were changed by the platform (a wheel): held to their ranges, bars set, content drawn. [main]
void kel_window_scroll_to(host_window* w, int h, int v);

// The point of the last press, which a number field is dragged from. [main]
Point kel_last_press();
