// view/grid.cpp: the grid of the data area.
// Layer: view.
// Called by the drawing of the background and the erasing of events.
#include "view/grid.h"

#include <algorithm>
#include <array>

#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"

namespace {

constexpr std::int64_t LINES_IN_INTERVAL = 4;
constexpr std::int64_t CONTENT_TOP = 64; // content y of the vertical range's upper end

// What places the horizontal lines.
struct row_key {
    std::int64_t min, max, interval, zoom, scroll, height;
    bool operator==(const row_key&) const = default;
};

// Values whose distance from the content's bottom is d whole pixels.
struct value_range {
    std::int64_t low, high;
};

value_range values_at(std::int64_t d, std::int64_t zoom) {
    const auto reach = [zoom](std::int64_t n) { return (n * zoom + UNIT - 1) / UNIT; };
    if (d > 0) return {reach(d), reach(d + 1) - 1};
    if (d < 0) return {1 - reach(1 - d), -reach(-d)};
    return {1 - reach(1), reach(1) - 1};
}

// The colour of the line on content row y: that of the highest line value whose pixel it is, which is drawn last.
std::uint8_t row_colour(const row_key& k, std::int64_t y) {
    if (y > INT16_MAX) return 0;
    const std::int64_t height = (k.max - k.min + 1) * UNIT / k.zoom;
    const value_range on = values_at(height + CONTENT_TOP - y, k.zoom);
    const std::int64_t step = std::max<std::int64_t>(k.interval / LINES_IN_INTERVAL, 1);
    const std::int64_t high = std::min(on.high, k.max + k.interval);
    if (high < k.min) return 0;
    const std::int64_t value = high - (high - k.min) % step;
    if (value < on.low) return 0;
    return static_cast<std::uint8_t>(value % k.interval == 0 ? COLOR_INTERVAL : COLOR_GRID);
}

row_key key_of(const frame_settings& s) {
    return {s.ymin, s.ymax, brisolan_factor(s.yinterval), brisolan_factor(s.yzoom), s.vscroll, s.height};
}

// A bar may reach further than the window by any measure; its lines out there are not drawn.
void draw_columns(brisolan* x, int left, int top, int right, int bottom) {
    const int first = std::max(left, -1); // a line's pixel is right of its place
    const int last = std::min<int>(right, x->window->width);
    t_color(COLOR_GRID);
    for (int h = brisolan_gridcolumn(x->window->hscroll_value, first); h <= last; h += GRID_COLUMN)
        t_drawline(h, top, h, bottom);
}

void draw_rows(brisolan* x, int left, int top, int right, int bottom) {
    const std::vector<std::uint8_t>& rows = brisolan_gridrows(brisolan_framesettings(x));
    const int end = std::min(bottom, static_cast<int>(rows.size()) - 1);
    for (int v = top; v <= end; ++v) {
        const std::uint8_t colour = rows[static_cast<std::size_t>(v)];
        if (colour == 0) continue;
        t_color(colour);
        t_drawline(left, v, right, v);
    }
}

} // namespace

const std::vector<std::uint8_t>& brisolan_gridrows(const frame_settings& s) {
    static row_key kept{};
    static std::vector<std::uint8_t> rows;
    const row_key key = key_of(s);
    if (key == kept) return rows;
    kept = key;
    rows.assign(static_cast<std::size_t>(std::max<std::int64_t>(key.height, 0)), 0);
    for (std::size_t v = 0; v < rows.size(); ++v)
        rows[v] = row_colour(key, static_cast<std::int64_t>(v) + key.scroll);
    return rows;
}

std::int32_t brisolan_gridcolumn(std::int16_t hscroll, std::int32_t left) {
    const std::int32_t origin = DATA_LEFT - hscroll * SCROLL_STEP;
    const std::int32_t behind = left - origin;
    return behind <= 0 ? origin : origin + (behind + GRID_COLUMN - 1) / GRID_COLUMN * GRID_COLUMN;
}

// The lines reach the rectangle's right and bottom line, one pixel beyond what is erased.
void brisolan_drawpattern(brisolan* x, int left, int top, int right, int bottom) {
    const int below_top = std::max(top, GRID_TOP);
    ++g_datadrawings;
    t_eraserect(left, below_top, right, bottom);
    draw_columns(x, left, below_top, right, bottom);
    draw_rows(x, left, below_top, right, bottom);
    t_color(COLOR_FOREGROUND);
}
