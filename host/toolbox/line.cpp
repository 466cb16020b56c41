// LineTo: the pen swept along a line.
// Toolbox: a drawing verb of host/toolbox.h.
// Called by the view.
#include "host/toolbox/pin.h"
#include "host/toolbox/port.h"

#include <algorithm>
#include <vector>

namespace {

// n * d / of rounded to the nearest, halves away from 0; of > 0.
int scaled(int64_t n, int64_t d, int64_t of) {
    int64_t twice = 2 * n * d;
    return static_cast<int>(twice >= 0 ? (twice + of) / (2 * of) : -((-twice + of) / (2 * of)));
}

// The pen's union of positions, row by row, so that no pixel is drawn twice. a lies above b, or level with it; the same
// pixels come out from either end.
void slanted(GrafPort& port, Point a, Point b) {
    int dh = b.h - a.h, dv = b.v - a.v;
    int steps = std::max(dv, std::abs(dh));
    int top = std::max<int>(a.v, port.drawable.bounds.top);
    int bottom = std::min<int>(b.v + port.pen_height, port.drawable.bounds.bottom);
    if (top >= bottom) return;
    struct extent {
        int left = INT32_MAX, right = INT32_MIN;
    };
    std::vector<extent> rows(static_cast<size_t>(bottom - top));
    for (int i = 0; i <= steps; i++) {
        int h = a.h + scaled(i, dh, steps), v = a.v + scaled(i, dv, steps);
        for (int row = std::max(v, top); row < std::min(v + port.pen_height, bottom); row++) {
            extent& e = rows[static_cast<size_t>(row - top)];
            e.left = std::min(e.left, h);
            e.right = std::max(e.right, h + port.pen_width);
        }
    }
    for (int row = top; row < bottom; row++) {
        const extent& e = rows[static_cast<size_t>(row - top)];
        raster_rect(port, {pin16(e.left), pin16(row), pin16(e.right), pin16(row + 1)}, port.pen_ink);
    }
}

} // namespace

void LineTo(int h, int v) {
    GrafPtr port = toolbox_thePort;
    if (!port) return;
    Point from = port->pen, to;
    SetPt(&to, h, v);
    port->pen = to;
    if (port->pen_width < 1 || port->pen_height < 1) return;
    if (from.h == to.h || from.v == to.v) {
        Rect swept;
        SetRect(&swept, std::min(from.h, to.h), std::min(from.v, to.v),
                std::max(from.h, to.h) + port->pen_width, std::max(from.v, to.v) + port->pen_height);
        raster_rect(*port, swept, port->pen_ink);
    } else if (from.v < to.v) {
        slanted(*port, from, to);
    } else {
        slanted(*port, to, from);
    }
}
