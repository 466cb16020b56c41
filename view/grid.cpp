// view/grid.cpp: the grid of the data area.
// Layer: view.
// Called by the drawing of the background and the erasing of events.
#include "view/grid.h"

#include <algorithm>
#include <numeric>

#include "view/draw.h"
#include "view/events.h"
#include "view/geometry.h"

namespace {

constexpr std::int64_t LINES_IN_INTERVAL = 4;
// Rows have 16 bits: values so many pixels apart lie on the same one.
constexpr std::int64_t ROWS = 65536;
// So many lines are drawn one by one; of more, each row looks for its own.
constexpr std::int64_t FEW_LINES = 4096;

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

std::int64_t step_of(const row_key& k) {
    return std::max<std::int64_t>(k.interval / LINES_IN_INTERVAL, 1);
}
// Beyond the last value that may have a line.
std::int64_t last_of(const row_key& k) {
    return k.max + k.interval;
}
std::int16_t bottom_of(const row_key& k) {
    const auto min = static_cast<std::int32_t>(k.min);
    const auto max = static_cast<std::int32_t>(k.max);
    return brisolan_contentbottom(brisolan_dataheight(min, max, static_cast<std::int32_t>(k.zoom)));
}

std::uint8_t line_colour(const row_key& k, std::int64_t value) {
    return static_cast<std::uint8_t>(value % k.interval == 0 ? COLOR_INTERVAL : COLOR_GRID);
}

void draw_each_line(const row_key& k, std::vector<std::uint8_t>* rows) {
    for (std::int64_t value = k.min; value <= last_of(k); value += step_of(k)) {
        const std::int64_t v = brisolan_contentrow(bottom_of(k), value * UNIT / k.zoom) - k.scroll;
        if (v >= 0 && v < static_cast<std::int64_t>(rows->size()))
            (*rows)[static_cast<std::size_t>(v)] = line_colour(k, value);
    }
}

// The colour of the line on content row y: that of the highest line value on it, which is drawn last.
std::uint8_t row_colour(const row_key& k, std::int64_t y) {
    if (y > INT16_MAX) return 0;
    const std::int64_t step = step_of(k);
    // From one height on the row to the next, values go on by a whole number: beyond so many nothing new comes, counted
    // once above 0 and once below.
    std::int64_t heights = 2 * (step / std::gcd(step, ROWS / UNIT * k.zoom) + 1);
    const std::int64_t highest = last_of(k) * UNIT / k.zoom;
    const std::int64_t beyond = (highest - (bottom_of(k) - y)) & (ROWS - 1);
    for (std::int64_t d = highest - beyond; heights > 0; d -= ROWS, --heights) {
        const value_range on = values_at(d, k.zoom);
        const std::int64_t high = std::min(on.high, last_of(k));
        if (high < k.min) return 0;
        const std::int64_t value = high - (high - k.min) % step;
        if (value >= on.low) return line_colour(k, value);
    }
    return 0;
}

void fill_rows(const row_key& k, std::vector<std::uint8_t>* rows) {
    if ((last_of(k) - k.min) / step_of(k) < FEW_LINES) {
        draw_each_line(k, rows);
        return;
    }
    for (std::size_t v = 0; v < rows->size(); ++v)
        (*rows)[v] = row_colour(k, static_cast<std::int64_t>(v) + k.scroll);
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
    fill_rows(key, &rows);
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
