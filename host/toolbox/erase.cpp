// EraseRect: fills with the background colour, whatever the pen.
// Toolbox: a drawing verb of host/toolbox.h.
// Called by the view.
#include "host/toolbox/port.h"

void EraseRect(const Rect* r) {
    if (toolbox_thePort) raster_rect(*toolbox_thePort, *r, raster_plain(toolbox_thePort->pen_ink.back));
}
