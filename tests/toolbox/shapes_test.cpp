// Lines, frames and fills to the pixel.
// Tests of the drawing verbs of host/toolbox/.
// Run by ctest.
#include "tests/toolbox/canvas.h"

namespace {

using shapes_test = canvas_test;

void grey_pattern() {
    Pattern p{};
    GetIndPattern(&p, 0, 4);
    PenPat(&p);
}

} // namespace

TEST_F(shapes_test, a_line_paints_both_its_ends) {
    open(8, 3);
    MoveTo(1, 1);
    LineTo(5, 1);
    EXPECT_EQ(art(), "........\n"
                     ".#####..\n"
                     "........\n");
    Point pen;
    GetPen(&pen);
    EXPECT_TRUE(EqualPt(pen, point(5, 1)));
}

TEST_F(shapes_test, a_line_to_its_own_start_is_one_pixel) {
    open(3, 3);
    MoveTo(1, 1);
    LineTo(1, 1);
    EXPECT_EQ(art(), "...\n.#.\n...\n");
}

TEST_F(shapes_test, the_pen_hangs_right_of_and_below_the_line) {
    open(8, 5);
    PenSize(1, 2);
    MoveTo(1, 1);
    LineTo(4, 1);
    PenSize(2, 1);
    MoveTo(6, 1);
    LineTo(6, 3);
    EXPECT_EQ(art(), "........\n"
                     ".####.##\n"
                     ".####.##\n"
                     "......##\n"
                     "........\n");
}

TEST_F(shapes_test, a_slanted_line_steps_once_per_pixel_of_its_longer_side) {
    open(7, 4);
    MoveTo(0, 0);
    LineTo(6, 3);
    EXPECT_EQ(art(), "#......\n"
                     ".##....\n"
                     "...##..\n"
                     ".....##\n");
}

TEST_F(shapes_test, a_line_is_the_same_from_either_end) {
    for (int h = -6; h <= 6; h++) {
        for (int v = -6; v <= 6; v++) {
            open(16, 16);
            MoveTo(8, 8);
            LineTo(8 + h, 8 + v);
            std::string there = art();
            open(16, 16);
            MoveTo(8 + h, 8 + v);
            LineTo(8, 8);
            EXPECT_EQ(art(), there) << h << ", " << v;
        }
    }
}

TEST_F(shapes_test, a_pen_without_size_draws_nothing_but_moves) {
    PenSize(0, 1);
    MoveTo(1, 1);
    LineTo(9, 1);
    Rect r = rect(1, 1, 5, 5);
    FrameRect(&r);
    EXPECT_EQ(count(WHITE), 16 * 12);
    Point pen;
    GetPen(&pen);
    EXPECT_TRUE(EqualPt(pen, point(9, 1)));
}

TEST_F(shapes_test, a_frame_stays_inside_its_rectangle) {
    open(8, 6);
    Rect r = rect(1, 1, 7, 5);
    FrameRect(&r);
    EXPECT_EQ(art(), "........\n"
                     ".######.\n"
                     ".#....#.\n"
                     ".#....#.\n"
                     ".######.\n"
                     "........\n");
}

TEST_F(shapes_test, a_thick_frame_grows_inward_until_it_is_full) {
    open(8, 6);
    Rect r = rect(1, 1, 7, 5);
    PenSize(2, 1);
    FrameRect(&r);
    EXPECT_EQ(art(), "........\n"
                     ".######.\n"
                     ".##..##.\n"
                     ".##..##.\n"
                     ".######.\n"
                     "........\n");
    PenSize(4, 4);
    PenMode(patXor);
    FrameRect(&r);
    FrameRect(&r);
    EXPECT_EQ(art().substr(9, 9), ".######.\n")
        << "each pixel once, or the second frame would not undo the first";
}

TEST_F(shapes_test, an_empty_rectangle_draws_nothing) {
    for (Rect r : {rect(3, 3, 3, 9), rect(3, 3, 9, 3), rect(9, 9, 3, 3)}) {
        PaintRect(&r);
        FrameRect(&r);
    }
    EXPECT_EQ(count(WHITE), 16 * 12);
}

TEST_F(shapes_test, paint_fills_and_erase_takes_the_background) {
    open(6, 4);
    Rect all = rect(0, 0, 6, 4), hole = rect(1, 1, 3, 3);
    PaintRect(&all);
    PenMode(patXor);
    EraseRect(&hole);
    EXPECT_EQ(art(), "######\n"
                     "#..###\n"
                     "#..###\n"
                     "######\n");
    RGBColor ground{0x1111, 0x2222, 0x3333};
    RGBBackColor(&ground);
    EraseRect(&hole);
    EXPECT_EQ(at(1, 1), 0xFF112233u);
}

TEST_F(shapes_test, nothing_leaves_the_bitmap) {
    Rect huge = rect(-40000, -40000, 40000, 40000);
    PaintRect(&huge);
    EXPECT_EQ(count(BLACK), 16 * 12);
    MoveTo(-32768, -32768);
    PenMode(patXor);
    PenSize(3, 3);
    LineTo(32767, 32767);
    EXPECT_GT(count(WHITE), 12);
}

TEST_F(shapes_test, grey_draws_every_other_pixel_in_the_foreground_the_rest_in_the_background) {
    open(4, 2);
    grey_pattern();
    Rect all = rect(0, 0, 4, 2);
    PaintRect(&all);
    EXPECT_EQ(art(), "#.#.\n.#.#\n");
}

TEST_F(shapes_test, patterns_are_aligned_to_the_port_not_to_the_shape) {
    open(8, 4);
    grey_pattern();
    Rect left = rect(0, 0, 3, 4), right = rect(3, 0, 8, 4);
    PaintRect(&left);
    PaintRect(&right);
    EXPECT_EQ(art(), "#.#.#.#.\n.#.#.#.#\n#.#.#.#.\n.#.#.#.#\n");
}

TEST_F(shapes_test, exclusive_or_twice_restores_the_picture) {
    open(16, 12);
    foreground(0x2A6CD0);
    Rect some = rect(2, 2, 9, 9), band = rect(1, 3, 12, 11);
    PaintRect(&some);
    foreground(0);
    std::vector<uint32_t> before(toolbox_port_pixels(port), toolbox_port_pixels(port) + 16 * 12);
    PenMode(patXor);
    grey_pattern();
    FrameRect(&band);
    EXPECT_EQ(at(1, 10), WHITE) << "a clear bit leaves what is below";
    EXPECT_EQ(at(2, 10), BLACK) << "a set bit inverts white to black";
    FrameRect(&band);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), toolbox_port_pixels(port)));
}

TEST_F(shapes_test, minimum_keeps_the_darker_of_each_component_and_is_idempotent) {
    foreground(0x10F0A0);
    Rect all = rect(0, 0, 16, 12);
    PaintRect(&all);
    RGBColor grey{0x8000, 0x8000, 0x8000};
    RGBForeColor(&grey);
    PenMode(adMin);
    PaintRect(&all);
    EXPECT_EQ(count(0xFF108080u), 16 * 12);
    PaintRect(&all);
    EXPECT_EQ(count(0xFF108080u), 16 * 12);
}

TEST_F(shapes_test, or_and_clear_modes_touch_only_set_bits) {
    open(4, 1);
    foreground(0x405060);
    grey_pattern();
    Rect all = rect(0, 0, 4, 1);
    PenMode(patOr);
    PaintRect(&all);
    EXPECT_EQ(at(0, 0), 0xFF405060u);
    EXPECT_EQ(at(1, 0), WHITE);
    PenMode(patBic);
    PaintRect(&all);
    EXPECT_EQ(count(WHITE), 4);
}

TEST_F(shapes_test, pen_normal_resets_size_mode_and_pattern_but_not_the_place_or_the_colour) {
    PenSize(5, 5);
    PenMode(patXor);
    grey_pattern();
    foreground(0x102030);
    MoveTo(3, 3);
    PenNormal();
    LineTo(3, 4);
    EXPECT_EQ(count(0xFF102030u), 2);
    EXPECT_EQ(at(3, 3), 0xFF102030u);
}

TEST_F(shapes_test, the_foreground_comes_back_with_all_sixteen_bits) {
    RGBColor given{0x6D60, 0x1234, 0xFFFE}, got{};
    RGBForeColor(&given);
    GetForeColor(&got);
    EXPECT_EQ(got.red, given.red);
    EXPECT_EQ(got.green, given.green);
    EXPECT_EQ(got.blue, given.blue);
}

TEST_F(shapes_test, without_a_port_nothing_is_drawn_and_nothing_fails) {
    SetPort(nullptr);
    Rect r = rect(0, 0, 5, 5);
    PaintRect(&r);
    EraseRect(&r);
    FrameRect(&r);
    MoveTo(1, 1);
    LineTo(4, 4);
    PenSize(2, 2);
    PenNormal();
    ClipRect(&r);
    draw_string("no", 1, 9);
    DrawPicture(GetPicture(3155), &r);
    EXPECT_EQ(StringWidth(pascal("no").data()), 0);
    EXPECT_EQ(count(WHITE), 16 * 12);
}

TEST_F(shapes_test, unknown_patterns_leave_the_callers_alone) {
    Pattern p{{1, 2, 3, 4, 5, 6, 7, 8}};
    GetIndPattern(&p, 0, 0);
    GetIndPattern(&p, 0, 7);
    GetIndPattern(&p, 1, 1);
    EXPECT_EQ(p.pat[0], 1);
    GetIndPattern(&p, 0, 1);
    for (uint8_t row : p.pat) EXPECT_EQ(row, 0xFF);
}
