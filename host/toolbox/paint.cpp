// PaintRect: fills with the pen.
// Toolbox: a drawing verb of host/toolbox.h.
// Called by the view.
#include "host/toolbox/port.h"

void PaintRect(const Rect* r) {
    if (toolbox_thePort) raster_rect(*toolbox_thePort, *r, toolbox_thePort->pen_ink);
}
