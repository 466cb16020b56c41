// Rectangles and points.
// Tests of host/toolbox/geometry.cpp.
// Run by ctest.
#include "tests/toolbox/canvas.h"

#include <climits>

namespace {

bool same(const Rect& a, const Rect& b) {
    return EqualRect(&a, &b);
}

} // namespace

TEST(rectangles, are_stored_left_top_right_bottom) {
    Rect r = rect(1, 2, 3, 4);
    EXPECT_EQ(r.left, 1);
    EXPECT_EQ(r.top, 2);
    EXPECT_EQ(r.right, 3);
    EXPECT_EQ(r.bottom, 4);
}

TEST(rectangles, pin_what_does_not_fit_sixteen_bits) {
    Rect r = rect(-100000, -32769, 100000, INT_MAX);
    EXPECT_TRUE(same(r, Rect{INT16_MIN, INT16_MIN, INT16_MAX, INT16_MAX}));
    OffsetRect(&r, INT_MAX, INT_MIN);
    EXPECT_TRUE(same(r, Rect{INT16_MAX, INT16_MIN, INT16_MAX, INT16_MIN}));
}

TEST(rectangles, hold_their_left_and_top_but_not_their_right_and_bottom) {
    Rect r = rect(2, 3, 5, 7);
    EXPECT_TRUE(PtInRect(point(2, 3), &r));
    EXPECT_TRUE(PtInRect(point(4, 6), &r));
    EXPECT_FALSE(PtInRect(point(5, 6), &r));
    EXPECT_FALSE(PtInRect(point(4, 7), &r));
    EXPECT_FALSE(PtInRect(point(1, 3), &r));
}

TEST(rectangles, are_empty_when_right_is_not_beyond_left) {
    Rect flat = rect(2, 3, 2, 9), turned = rect(5, 3, 2, 9), one = rect(2, 3, 3, 4);
    EXPECT_TRUE(EmptyRect(&flat));
    EXPECT_TRUE(EmptyRect(&turned));
    EXPECT_FALSE(EmptyRect(&one));
}

TEST(rectangles, inset_moves_every_side_and_an_inside_out_one_vanishes) {
    Rect r = rect(0, 0, 10, 20);
    InsetRect(&r, 2, 3);
    EXPECT_TRUE(same(r, rect(2, 3, 8, 17)));
    InsetRect(&r, -2, -3);
    EXPECT_TRUE(same(r, rect(0, 0, 10, 20)));
    InsetRect(&r, 6, 0);
    EXPECT_TRUE(same(r, rect(0, 0, 0, 0)));
}

TEST(rectangles, meet_and_join) {
    Rect a = rect(0, 0, 10, 10), b = rect(5, 6, 20, 8), away = rect(10, 0, 12, 4), none = rect(3, 3, 3, 3), r;
    EXPECT_TRUE(SectRect(&a, &b, &r));
    EXPECT_TRUE(same(r, rect(5, 6, 10, 8)));
    EXPECT_FALSE(SectRect(&a, &away, &r));
    EXPECT_TRUE(same(r, rect(0, 0, 0, 0)));
    UnionRect(&a, &b, &r);
    EXPECT_TRUE(same(r, rect(0, 0, 20, 10)));
    UnionRect(&a, &none, &r);
    EXPECT_TRUE(same(r, a));
    UnionRect(&none, &a, &a);
    EXPECT_TRUE(same(a, rect(0, 0, 10, 10)));
}

TEST(points, are_equal_when_both_coordinates_are) {
    EXPECT_TRUE(EqualPt(point(1, 2), point(1, 2)));
    EXPECT_FALSE(EqualPt(point(1, 2), point(2, 1)));
    EXPECT_EQ(point(1, 2).h, 1);
    EXPECT_EQ(point(1, 2).v, 2);
}
