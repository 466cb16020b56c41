// Ports: size, place, what must be drawn anew.
// Tests of host/toolbox/port.cpp.
// Run by ctest.
#include "tests/toolbox/canvas.h"

namespace {

using ports_test = canvas_test;

} // namespace

TEST_F(ports_test, a_new_one_is_white_and_as_large_as_asked) {
    Rect r;
    EXPECT_EQ(GetPortBounds(port, &r), &r);
    Rect wanted = rect(0, 0, 16, 12);
    EXPECT_TRUE(EqualRect(&r, &wanted));
    EXPECT_EQ(count(WHITE), 16 * 12);
    EXPECT_TRUE(EmptyRect(GetPortBounds(nullptr, &r)));
}

TEST_F(ports_test, resizing_keeps_the_top_left_and_whitens_the_rest) {
    open(4, 3);
    Rect all = rect(0, 0, 4, 3);
    PaintRect(&all);
    toolbox_port_resize(port, 6, 2);
    EXPECT_EQ(art(), "####..\n####..\n");
    toolbox_port_resize(port, 2, 4);
    EXPECT_EQ(art(), "##\n##\n..\n..\n");
    all = rect(0, 0, 100, 100);
    PaintRect(&all);
    EXPECT_EQ(count(BLACK), 8) << "drawing reaches the new size";
    toolbox_port_resize(port, -3, 5);
    PaintRect(&all);
    EXPECT_EQ(toolbox_port_width(port), 0);
}

TEST_F(ports_test, clip_survives_a_resize) {
    Rect clip = rect(1, 0, 30, 1);
    ClipRect(&clip);
    toolbox_port_resize(port, 4, 2);
    Rect all = rect(0, 0, 99, 99);
    PaintRect(&all);
    EXPECT_EQ(art(), ".###\n....\n");
}

TEST_F(ports_test, points_go_to_the_screen_and_back) {
    toolbox_port_setorigin(port, 100, 40);
    Point p = point(3, 4);
    LocalToGlobal(&p);
    EXPECT_TRUE(EqualPt(p, point(103, 44)));
    GlobalToLocal(&p);
    EXPECT_TRUE(EqualPt(p, point(3, 4)));
    SetPort(nullptr);
    LocalToGlobal(&p);
    EXPECT_TRUE(EqualPt(p, point(3, 4)));
}

TEST_F(ports_test, gather_what_must_be_drawn_anew) {
    EXPECT_FALSE(toolbox_port_isinvalid(port));
    Rect a = rect(1, 1, 3, 3), b = rect(8, 8, 99, 99), c = rect(2, 2, 3, 3);
    InvalWindowRect(port, &a);
    InvalWindowRect(port, &b);
    ValidWindowRect(port, &c);
    EXPECT_TRUE(toolbox_port_isinvalid(port));
    RgnHandle rgn = NewRgn();
    EXPECT_TRUE(toolbox_port_takeinvalid(port, rgn));
    EXPECT_TRUE(PtInRgn(point(1, 1), rgn));
    EXPECT_FALSE(PtInRgn(point(2, 2), rgn));
    EXPECT_TRUE(PtInRgn(point(15, 11), rgn));
    EXPECT_FALSE(PtInRgn(point(16, 11), rgn)) << "cut to the port";
    EXPECT_FALSE(toolbox_port_takeinvalid(port, rgn));
    EXPECT_TRUE(EmptyRgn(rgn));
    toolbox_port_invalidate(port);
    EXPECT_TRUE(toolbox_port_takeinvalid(port, nullptr));
    EXPECT_EQ(count(WHITE), 16 * 12) << "nothing is drawn";
    DisposeRgn(rgn);
}

TEST_F(ports_test, outside_the_bitmap_nothing_needs_drawing) {
    Rect away = rect(50, 50, 60, 60);
    InvalWindowRect(port, &away);
    EXPECT_FALSE(toolbox_port_isinvalid(port));
    EXPECT_FALSE(toolbox_port_takeinvalid(port, nullptr));
}

TEST_F(ports_test, tell_whether_anything_was_drawn) {
    EXPECT_TRUE(toolbox_port_takechanged(port)) << "a new port has not been shown";
    EXPECT_FALSE(toolbox_port_takechanged(port));
    Rect away = rect(50, 50, 60, 60), here = rect(0, 0, 1, 1);
    PaintRect(&away);
    EXPECT_FALSE(toolbox_port_takechanged(port));
    PaintRect(&here);
    EXPECT_TRUE(toolbox_port_takechanged(port));
    draw_string("1", 2, 11);
    EXPECT_TRUE(toolbox_port_takechanged(port));
}

TEST_F(ports_test, a_freed_port_is_no_longer_current) {
    GrafPtr other = toolbox_port_new(3, 3), now = port;
    SetPort(other);
    toolbox_port_free(other);
    GetPort(&now);
    EXPECT_EQ(now, nullptr);
    toolbox_port_free(nullptr);
}

TEST_F(ports_test, reset_state_is_as_new) {
    foreground(0xFF0000);
    PenSize(3, 3);
    PenMode(patXor);
    TextFace(kFaceBold);
    Rect none = rect(0, 0, 0, 0);
    ClipRect(&none);
    toolbox_port_resetstate(port);
    MoveTo(0, 0);
    LineTo(0, 0);
    EXPECT_EQ(count(BLACK), 1);
    EXPECT_EQ(CharWidth('e'), 5);
}
