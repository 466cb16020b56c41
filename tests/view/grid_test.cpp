// tests/view/grid_test.cpp: on which rows of the data area horizontal lines are drawn.
// Tests of the view.
#include "view/grid.h"

#include <random>

#include "tests/view/editor.h"
#include "view/draw.h"
#include "view/geometry.h"

namespace {

class view_grid : public editor_test {
protected:
    // Line after line, from the least value on, so that the highest of a row counts.
    std::vector<std::uint8_t> line_by_line() const {
        const param_record& p = x->params[static_cast<std::size_t>(x->yparam)];
        const std::int64_t interval = brisolan_factor(p.interval);
        std::vector<std::uint8_t> rows(static_cast<std::size_t>(x->window->height), 0);
        for (std::int64_t value = p.min; value <= p.max + interval;
             value += std::max<std::int64_t>(interval / 4, 1)) {
            const int v = YLOC(x, static_cast<std::int32_t>(value)) - x->window->vscroll_value;
            if (v >= 0 && v < x->window->height)
                rows[static_cast<std::size_t>(v)] = value % interval == 0 ? COLOR_INTERVAL : COLOR_GRID;
        }
        return rows;
    }
    std::vector<std::uint8_t> drawn() const { return brisolan_gridrows(brisolan_framesettings(x)); }
};

TEST_F(view_grid, a_line_every_three_pitches_and_a_strong_one_every_octave) {
    const std::vector<std::uint8_t> rows = drawn();
    EXPECT_EQ(rows[200], COLOR_INTERVAL); // 60
    EXPECT_EQ(rows[194], COLOR_GRID);     // 63
    EXPECT_EQ(rows[198], 0);              // 61
    EXPECT_EQ(rows, line_by_line());
}

// 100,000 milliseconds at 12 units per 8 pixels are more rows than there are numbers for: the upper ones come around.
TEST_F(view_grid, lines_come_around_where_heights_leave_sixteen_bits) {
    x->yparam = PARAM_DUR;
    x->yzoom = 12;
    const std::vector<std::uint8_t> rows = drawn();
    EXPECT_EQ(rows, line_by_line());
    for (const std::size_t v : {63U, 127U, 196U, 260U, 330U}) EXPECT_NE(rows[v], 0) << "row " << v;
}

TEST_F(view_grid, every_range_zoom_interval_and_scroll_shows_the_lines_of_its_values) {
    std::mt19937 random{20};
    const auto below = [&random](std::int64_t n) { return static_cast<std::int64_t>(random()) % n; };
    for (int i = 0; i < 400; ++i) {
        param_record& p = x->params[PARAM_PITCH];
        const std::int64_t range = std::int64_t{1} << below(21);
        p.min = static_cast<std::int32_t>(below(2 * range) - range);
        p.max = static_cast<std::int32_t>(p.min + below(range));
        p.interval = static_cast<std::int32_t>(below(std::int64_t{1} << below(20)));
        x->yzoom = static_cast<std::int32_t>(below(std::int64_t{1} << below(12)));
        x->window->vscroll_value = static_cast<std::int16_t>(below(std::int64_t{1} << below(15)));
        ASSERT_EQ(drawn(), line_by_line())
            << "min " << p.min << " max " << p.max << " interval " << p.interval << " zoom " << x->yzoom
            << " scroll " << x->window->vscroll_value;
    }
}

// The whole of 32 bits, a line a value: nobody walks over all of them.
TEST_F(view_grid, the_greatest_range_is_drawn_at_once) {
    param_record& p = x->params[PARAM_PITCH];
    p.min = INT32_MIN;
    p.max = INT32_MAX;
    for (const std::int32_t interval : {1, 7, 4099, 262144, INT32_MAX}) {
        p.interval = interval;
        for (const std::int32_t zoom : {1, 8, 4096, INT32_MAX}) {
            x->yzoom = zoom;
            EXPECT_EQ(drawn().size(), static_cast<std::size_t>(x->window->height));
        }
    }
}

} // namespace
