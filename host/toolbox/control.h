// A scroll bar from the inside.
// Toolbox, internal: leans on host/toolbox.h.
// Called by ports, which own controls, and by controls.cpp.
#pragma once

#include "host/toolbox.h"

struct toolbox_control {
    GrafPort* port = nullptr; // the owner
    Rect bounds{0, 0, 0, 0};
    int16_t value = 0, maximum = 0; // 0 <= value <= maximum
    int viewsize = 0;               // what part of the content is in view, in units of value; 0 unknown
    int16_t pressed = 0;            // the part shown as pressed while it is tracked
    bool visible = true;
    bool disabled = false; // switched off by HiliteControl
};
