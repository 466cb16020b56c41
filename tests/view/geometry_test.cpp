// tests/view/geometry_test.cpp: values to pixels and back, bar lengths, the data area, black keys.
// Tests of the view.
#include "tests/view/editor.h"
#include "view/geometry.h"

namespace {

class view_geometry : public editor_test {};

TEST_F(view_geometry, default_vertical_mapping_of_pitch) {
    EXPECT_EQ(YDATAHEIGHT(x), 256);
    EXPECT_EQ(YLOC(x, 60), 200);
    EXPECT_EQ(YVAL(x, 200), 60);
    EXPECT_EQ(YSIZE(x), 2);
    EXPECT_EQ(YHEIGHT(x), 2);
}

TEST_F(view_geometry, value_and_place_are_inverse_over_the_range) {
    for (std::int32_t value = 0; value <= 127; ++value) EXPECT_EQ(YVAL(x, YLOC(x, value)), value);
}

TEST_F(view_geometry, place_is_not_offset_by_the_minimum) {
    x->params[PARAM_PITCH].min = 10;
    EXPECT_EQ(YDATAHEIGHT(x), 236);
    EXPECT_EQ(YLOC(x, 60), 236 + 64 - 120);
}

TEST_F(view_geometry, height_and_place_keep_sixteen_bits) {
    x->yzoom = 1;
    x->params[PARAM_PITCH].max = 8191; // 65536 pixels
    EXPECT_EQ(YDATAHEIGHT(x), 0);
    x->params[PARAM_PITCH].max = 4999; // 40000 pixels
    EXPECT_EQ(YDATAHEIGHT(x), static_cast<std::int16_t>(40000));
    EXPECT_EQ(YLOC(x, 100), static_cast<std::int16_t>(40000 + 64 - 800));
}

TEST_F(view_geometry, bars_are_a_pixel_high_from_a_factor_of_nine) {
    x->yzoom = 8;
    EXPECT_EQ(YSIZE(x), 1);
    x->yzoom = 9;
    EXPECT_EQ(YSIZE(x), 0);
}

TEST_F(view_geometry, factors_below_one_count_as_one) {
    for (const std::int32_t zoom : {0, -1, -2000000000}) {
        x->yzoom = x->xzoom = x->lenzoom = zoom;
        EXPECT_EQ(YSIZE(x), 8);
        EXPECT_EQ(YVAL(x, YLOC(x, 5)), 5);
        EXPECT_EQ(brisolan_timetoh(x, 3), DATA_LEFT + 24);
        EXPECT_EQ(brisolan_htotime(x, DATA_LEFT + 24), 3);
        EXPECT_EQ(brisolan_lengthtopixels(x, 7), 56);
    }
}

TEST_F(view_geometry, time_to_pixel_and_back_with_scroll) {
    EXPECT_EQ(brisolan_timetoh(x, 1000), 88);
    x->window->hscroll_value = std::int16_t{2};
    EXPECT_EQ(brisolan_timetoh(x, 1000), 56);
    EXPECT_EQ(brisolan_htotime(x, 56), 1000);
    EXPECT_EQ(brisolan_htotime(x, 57), 1025);
}

TEST_F(view_geometry, pixels_left_of_time_zero_are_shifted_not_divided) {
    EXPECT_EQ(brisolan_htotime(x, 47), -25);
    x->xzoom = 1;
    EXPECT_EQ(brisolan_htotime(x, 47), -1); // -1 >> 3
}

TEST_F(view_geometry, far_times_stay_far) {
    x->xzoom = 1;
    EXPECT_GT(brisolan_timetoh(x, INT32_MAX), 500000000);
    EXPECT_LT(brisolan_timetoh(x, INT32_MIN), -500000000);
}

TEST_F(view_geometry, lengths_of_up_to_three_pixels_become_four) {
    event e;
    e.dur = 99; // 3 pixels
    EXPECT_EQ(brisolan_barlength(x, &e), 4);
    e.dur = -5000;
    EXPECT_EQ(brisolan_barlength(x, &e), 4);
    e.dur = 125;
    EXPECT_EQ(brisolan_barlength(x, &e), 5);
}

TEST_F(view_geometry, data_area_ends_at_its_values_or_above_the_buttons) {
    Rect r;
    brisolan_getdatarect(x, &r);
    EXPECT_EQ(r.left, 48);
    EXPECT_EQ(r.top, 62);
    EXPECT_EQ(r.right, 585);
    EXPECT_EQ(r.bottom, 324); // 256 + 68
    x->yzoom = 1;
    brisolan_getdatarect(x, &r);
    EXPECT_EQ(r.bottom, 370);
}

TEST_F(view_geometry, black_keys_at_the_default_zoom) {
    x->show_sharps = 1;
    const auto black = [this](std::int32_t value) {
        YLOC(x, value);
        return sharp != 0;
    };
    EXPECT_TRUE(black(61));
    EXPECT_FALSE(black(60));
    EXPECT_TRUE(black(0)); // counted as one
    for (std::int32_t value = 12; value < 128; ++value) {
        const std::int32_t key = value % 12;
        EXPECT_EQ(black(value), key == 1 || key == 3 || key == 6 || key == 8 || key == 10) << value;
    }
}

TEST_F(view_geometry, black_keys_are_scaled_with_the_zoom) {
    x->show_sharps = 1;
    x->yzoom = 2; // 30 stands where 60 would
    YLOC(x, 30);
    EXPECT_EQ(sharp, 0);
    x->yzoom = 8; // 122 stands where 61 would
    YLOC(x, 122);
    EXPECT_EQ(sharp, 1);
}

TEST_F(view_geometry, black_keys_are_not_told_while_they_are_off) {
    sharp = 0;
    YLOC(x, 61);
    EXPECT_EQ(sharp, 0);
}

TEST_F(view_geometry, tracks_without_a_button_are_shown) {
    x->trackshown[0] = 0;
    EXPECT_FALSE(brisolan_trackisshown(x, 1));
    EXPECT_TRUE(brisolan_trackisshown(x, 2));
    EXPECT_TRUE(brisolan_trackisshown(x, 0));
    EXPECT_TRUE(brisolan_trackisshown(x, 33));
    EXPECT_TRUE(brisolan_trackisshown(x, INT32_MIN));
}

} // namespace
