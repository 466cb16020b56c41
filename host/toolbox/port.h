// The port from the inside: its bitmap, its clip, and the state that drawing reads.
// Toolbox, internal: leans on host/toolbox.h and region.h.
// Called by every drawing verb and by the host side of the toolbox.
#pragma once

#include "host/toolbox.h"
#include "host/toolbox/raster.h"
#include "host/toolbox/region.h"

#include <memory>
#include <vector>

struct toolbox_control;

struct GrafPort {
    // The surface. Written by the host side alone.
    int width = 0, height = 0;
    std::vector<uint32_t> pixels; // 0xFFRRGGBB, width a row; empty until port_lay_out
    Point origin{0, 0};           // of the port's (0, 0) on the screen
    bool changed = false;         // something was drawn since the machine last asked

    // Where drawing may go. drawable = clip and visible (when there is one) and the bitmap, kept by port_reclip.
    toolbox_region clip, visible, drawable;
    bool has_visible = false;
    toolbox_region invalid; // what the host will have drawn anew; not cut to the bitmap

    // Pen, colours, text: written by the calls of the same names.
    Point pen{0, 0};
    int pen_width = 1, pen_height = 1;
    raster_ink pen_ink; // mode, pattern and both colours, ready for the span routine
    RGBColor fore{0, 0, 0}, back{0xFFFF, 0xFFFF, 0xFFFF};
    int font = 0, face = kFacePlain, size = 0, text_mode = srcOr;

    // Owned; the address of each is its ControlHandle.
    std::vector<std::unique_ptr<toolbox_control>> controls;

    GrafPort();
    ~GrafPort();
    GrafPort(const GrafPort&) = delete;
    GrafPort& operator=(const GrafPort&) = delete;
};

// The current port, null when there is none. Written by SetPort and by a port's destruction.
extern GrafPtr toolbox_thePort;

// Gives the port its pixels, white, where it has none yet: a window that is never shown costs no bitmap. Whoever writes or
// reads pixels calls it first; SetPort does so for all drawing in the current port. [main]
void port_lay_out(GrafPort& port);
// Works out drawable again. [main]
void port_reclip(GrafPort& port);
// An RGBColor as a pixel. [main]
constexpr uint32_t port_pixel(RGBColor c) {
    return 0xFF000000u | (c.red >> 8u) << 16 | (c.green >> 8u) << 8 | c.blue >> 8u;
}
