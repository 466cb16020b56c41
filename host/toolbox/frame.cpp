// FrameRect: an outline inside its rectangle.
// Toolbox: a drawing verb of host/toolbox.h.
// Called by the view.
#include "host/toolbox/pin.h"
#include "host/toolbox/port.h"

#include <algorithm>

void FrameRect(const Rect* r) {
    GrafPtr port = toolbox_thePort;
    if (!port || EmptyRect(r) || port->pen_width < 1 || port->pen_height < 1) return;
    if (port->pen_width == 1 && port->pen_height == 1 && raster_outline(*port, *r, port->pen_ink)) return;
    // The four bars share no pixel, or a frame in patXor would cancel its own corners.
    int16_t upper = pin16(std::min(r->top + port->pen_height, +r->bottom));
    int16_t lower = pin16(std::max(r->bottom - port->pen_height, +upper));
    int16_t inner = pin16(std::min(r->left + port->pen_width, +r->right));
    int16_t outer = pin16(std::max(r->right - port->pen_width, +inner));
    raster_rect(*port, {r->left, r->top, r->right, upper}, port->pen_ink);
    raster_rect(*port, {r->left, lower, r->right, r->bottom}, port->pen_ink);
    raster_rect(*port, {r->left, upper, inner, lower}, port->pen_ink);
    raster_rect(*port, {outer, upper, r->right, lower}, port->pen_ink);
}
