// view/frame.cpp: everything that places the bars of an instance's data area, in one record.
// Layer: view, internal to the data area.
// Called by whatever draws, erases or finds many events.
#include "view/frame.h"

#include "view/format.h"
#include "view/geometry.h"

namespace {

constexpr int LEAST_LABEL_HALF = 2; // bars of less half height carry no label
constexpr int WIDEST_LABEL = 256;   // pixels, more than any number or note name

} // namespace

view_frame brisolan_frame(const frame_settings& s) {
    view_frame f;
    f.set = s;
    f.xzoom = brisolan_factor(s.xzoom);
    f.lenzoom = brisolan_factor(s.lenzoom);
    f.time_scale = brisolan_scale(f.xzoom);
    f.value_scale = brisolan_scale(brisolan_factor(s.yzoom));
    f.extent_scale = brisolan_scale(f.lenzoom);
    f.left = DATA_LEFT - s.hscroll * SCROLL_STEP;
    const std::int16_t height = brisolan_dataheight(s.ymin, s.ymax, s.yzoom);
    f.content_bottom = brisolan_contentbottom(height);
    f.half = UNIT / brisolan_factor(s.yzoom);
    f.labels = s.labelparam >= 0 && f.half >= LEAST_LABEL_HALF;
    brisolan_dataarea(height, s.width, s.height, &f.data);
    const std::int64_t room = std::int64_t{s.width} - f.left; // pixels from Time 0 to the window's right edge
    if (room >= 0) f.time_behind = ((room + 1) * f.xzoom + UNIT - 1) / UNIT;
    // From this Time on the gap is at most WIDEST_LABEL, whichever way the division rounds.
    f.time_before = (std::int64_t{f.data.left} - f.left - WIDEST_LABEL) * f.xzoom / UNIT + f.xzoom;
    f.widths = brisolan_commonwidths(s.labelnotes != 0);
    return f;
}
