// view/eventclip.h: the state that events are drawn in, for a scope's life.
// Layer: view, internal to the data area.
// Called by the drawing of events, at once or gathered.
#pragma once

#include "view/bars.h"
#include "view/draw.h"
#include "view/events.h"

// The window's port, clipped to the data area. [main]
class event_clip {
public:
    explicit event_clip(brisolan* x) {
        GetPort(&before);
        SetPort(x->window->port);
        saved = t_getclip();
        brisolan_eventclip(x);
        brisolan_beginbars();
    }
    ~event_clip() {
        t_restoreclip(saved);
        SetPort(before);
    }
    event_clip(const event_clip&) = delete;
    event_clip& operator=(const event_clip&) = delete;

private:
    GrafPtr before = nullptr;
    RgnHandle saved = nullptr;
};
