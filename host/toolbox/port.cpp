// Ports: the bitmap, the clip, what must be drawn anew, and which port is current.
// Toolbox: implements the ports of host/toolbox.h and of toolbox_host.h.
// Called by the kernel's windows and by the view.
#include "host/toolbox/port.h"

#include "host/toolbox/control.h"
#include "host/toolbox/pin.h"
#include "host/toolbox/toolbox_host.h"

#include <algorithm>
#include <utility>

namespace {

constexpr uint32_t WHITE = 0xFFFFFFFFu;
constexpr Rect EVERYWHERE{INT16_MIN, INT16_MIN, INT16_MAX, INT16_MAX};

Rect bitmap_bounds(const GrafPort& port) {
    return {0, 0, pin16(port.width), pin16(port.height)};
}

void set_size(GrafPort& port, int width, int height) {
    port.width = std::clamp<int>(width, 0, INT16_MAX);
    port.height = std::clamp<int>(height, 0, INT16_MAX);
}

} // namespace

// Written by SetPort and toolbox_port_free, read by every drawing call; null at start.
GrafPtr toolbox_thePort = nullptr;

GrafPort::GrafPort() : clip(region_of(EVERYWHERE)) {}
GrafPort::~GrafPort() = default;

void port_reclip(GrafPort& port) {
    toolbox_region whole = region_of(bitmap_bounds(port));
    port.drawable = region_combine(port.clip, whole, region_op::sect);
    if (port.has_visible) port.drawable = region_combine(port.drawable, port.visible, region_op::sect);
}

void GetPort(GrafPtr* port) {
    *port = toolbox_thePort;
}
void port_lay_out(GrafPort& port) {
    if (port.pixels.empty())
        port.pixels.assign(static_cast<size_t>(port.width) * static_cast<size_t>(port.height), WHITE);
}

void SetPort(GrafPtr port) {
    if (port) port_lay_out(*port);
    toolbox_thePort = port;
}

Rect* GetPortBounds(GrafPtr port, Rect* r) {
    *r = port ? bitmap_bounds(*port) : Rect{0, 0, 0, 0};
    return r;
}

void LocalToGlobal(Point* pt) {
    if (!toolbox_thePort) return;
    SetPt(pt, pt->h + toolbox_thePort->origin.h, pt->v + toolbox_thePort->origin.v);
}

void GlobalToLocal(Point* pt) {
    if (!toolbox_thePort) return;
    SetPt(pt, pt->h - toolbox_thePort->origin.h, pt->v - toolbox_thePort->origin.v);
}

void InvalWindowRect(GrafPtr port, const Rect* r) {
    if (port) port->invalid = region_combine(port->invalid, region_of(*r), region_op::join);
}

void ValidWindowRect(GrafPtr port, const Rect* r) {
    if (port) port->invalid = region_combine(port->invalid, region_of(*r), region_op::diff);
}

void GetClip(RgnHandle rgn) {
    if (toolbox_thePort) *rgn = toolbox_thePort->clip;
}

void SetClip(RgnHandle rgn) {
    if (!toolbox_thePort) return;
    toolbox_thePort->clip = *rgn;
    port_reclip(*toolbox_thePort);
}

void ClipRect(const Rect* r) {
    if (!toolbox_thePort) return;
    toolbox_thePort->clip = region_of(*r);
    port_reclip(*toolbox_thePort);
}

GrafPtr toolbox_port_new(int width, int height) {
    GrafPtr port = new GrafPort;
    set_size(*port, width, height);
    port->changed = true;
    port_reclip(*port);
    return port;
}

void toolbox_port_free(GrafPtr port) {
    if (port && toolbox_thePort == port) toolbox_thePort = nullptr;
    delete port;
}

void toolbox_port_resize(GrafPtr port, int width, int height) {
    int old_width = port->width, old_height = port->height;
    std::vector<uint32_t> old = std::move(port->pixels);
    set_size(*port, width, height);
    port->pixels.clear();
    if (!old.empty()) port_lay_out(*port);
    int columns = std::min(old_width, port->width);
    for (int v = 0; !old.empty() && v < std::min(old_height, port->height); v++) {
        auto from = old.begin() + static_cast<ptrdiff_t>(v) * old_width;
        std::copy(from, from + columns, port->pixels.begin() + static_cast<ptrdiff_t>(v) * port->width);
    }
    port->changed = true;
    port_reclip(*port);
}

void toolbox_port_setorigin(GrafPtr port, int h, int v) {
    SetPt(&port->origin, h, v);
}

uint32_t* toolbox_port_pixels(GrafPtr port) {
    port_lay_out(*port);
    return port->pixels.data();
}
int toolbox_port_width(GrafPtr port) {
    return port->width;
}
int toolbox_port_height(GrafPtr port) {
    return port->height;
}
int toolbox_port_rowpixels(GrafPtr port) {
    return port->width;
}
bool toolbox_port_takechanged(GrafPtr port) {
    return std::exchange(port->changed, false);
}

void toolbox_port_invalidate(GrafPtr port) {
    Rect whole = bitmap_bounds(*port);
    InvalWindowRect(port, &whole);
}

bool toolbox_port_isinvalid(GrafPtr port) {
    Rect whole = bitmap_bounds(*port);
    return RectInRgn(&whole, &port->invalid);
}

bool toolbox_port_takeinvalid(GrafPtr port, RgnHandle rgn) {
    toolbox_region all = std::exchange(port->invalid, {});
    toolbox_region inside = region_combine(all, region_of(bitmap_bounds(*port)), region_op::sect);
    bool any = !inside.empty();
    if (rgn) *rgn = std::move(inside);
    return any;
}

void toolbox_port_setvisible(GrafPtr port, RgnHandle rgn) {
    port->has_visible = rgn != nullptr;
    port->visible = rgn ? *rgn : toolbox_region{};
    port_reclip(*port);
}

void toolbox_port_resetstate(GrafPtr port) {
    port->clip = region_of(EVERYWHERE);
    port->pen = {0, 0};
    port->pen_width = port->pen_height = 1;
    port->pen_ink = {};
    port->fore = {0, 0, 0};
    port->back = {0xFFFF, 0xFFFF, 0xFFFF};
    port->font = port->size = 0;
    port->face = kFacePlain;
    port->text_mode = srcOr;
    port_reclip(*port);
}
