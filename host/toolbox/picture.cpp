// DrawPicture: copies a picture, leaving what lies below its transparent pixels.
// Toolbox: a drawing verb of host/toolbox.h.
// Called by the view.
#include "host/toolbox/pin.h"
#include "host/toolbox/port.h"
#include "host/toolbox/resources.h"

#include <algorithm>

namespace {

// The source row or column of pixel i of `to` pixels that show `from`.
int source(int i, int from, int to) {
    return static_cast<int>(static_cast<int64_t>(i) * from / to);
}

} // namespace

Rect* QDGetPictureBounds(PicHandle picture, Rect* r) {
    *r = picture ? picture->bounds : Rect{0, 0, 0, 0};
    return r;
}

void DrawPicture(PicHandle picture, const Rect* dst) {
    GrafPtr port = toolbox_thePort;
    if (!port || !picture || EmptyRect(dst)) return;
    const Rect& clip = port->drawable.bounds;
    int columns = picture->bounds.right - picture->bounds.left,
        rows = picture->bounds.bottom - picture->bounds.top;
    int left = std::max(dst->left, clip.left), right = std::min(dst->right, clip.right);
    for (int v = std::max(dst->top, clip.top); v < std::min(dst->bottom, clip.bottom); v++) {
        int line = source(v - dst->top, rows, dst->bottom - dst->top) * columns;
        auto pixel = [&](int h) {
            return picture
                ->pixels[static_cast<size_t>(line + source(h - dst->left, columns, dst->right - dst->left))];
        };
        for (int h = left, end = left; h < right; h = end) {
            uint32_t colour = pixel(h);
            for (end = h + 1; end < right && pixel(end) == colour; end++) {
            }
            if (colour)
                raster_rect(*port, {pin16(h), pin16(v), pin16(end), pin16(v + 1)}, raster_plain(colour));
        }
    }
}
