// Random drawing, fast and slow, pixel by pixel the same.
// Tests of the whole rasteriser against its slow twin.
// Run by ctest.
#include "tests/toolbox/canvas.h"
#include "tests/toolbox/slow_twin.h"

#include <random>

namespace {

constexpr int WIDTH = 61, HEIGHT = 43;

class random_drawing_test : public canvas_test {
protected:
    random_drawing_test() { open(WIDTH, HEIGHT); }

    void start(unsigned seed) {
        std::printf("seed %u\n", seed);
        rng.seed(seed);
    }

    int from_to(int a, int b) { return a + static_cast<int>(rng() % static_cast<unsigned>(b - a + 1)); }
    Rect any_rect() {
        int l = from_to(-20, WIDTH + 10), t = from_to(-20, HEIGHT + 10);
        return rect(l, t, l + from_to(-3, 40), t + from_to(-3, 30));
    }
    Point any_point() { return point(from_to(-40, WIDTH + 40), from_to(-40, HEIGHT + 40)); }

    void any_clip() {
        RgnHandle clip = NewRgn(), more = NewRgn();
        int parts = from_to(0, 4);
        if (parts == 0) SetRectRgn(clip, -9999, -9999, 9999, 9999);
        for (int i = 0; i < parts; i++) {
            Rect r = any_rect();
            RectRgn(more, &r);
            if (i == 2)
                DiffRgn(clip, more, clip);
            else
                UnionRgn(clip, more, clip);
        }
        SetClip(clip);
        for (int v = 0; v < HEIGHT; v++) {
            for (int h = 0; h < WIDTH; h++) twin.clip[twin.index(h, v)] = PtInRgn(point(h, v), clip);
        }
        DisposeRgn(clip);
        DisposeRgn(more);
    }

    void any_state() {
        constexpr int MODES[] = {patCopy, patOr, patXor, patBic, adMin, 12, patCopy, patCopy};
        constexpr int TEXT_MODES[] = {srcCopy, srcOr, srcXor, srcBic, adMin, srcOr, srcOr};
        PenMode(twin.mode = MODES[from_to(0, 7)]);
        TextMode(twin.text_mode = TEXT_MODES[from_to(0, 6)]);
        TextFace(twin.face = from_to(0, 1) ? kFaceBold : kFacePlain);
        twin.pen_width = from_to(0, 5) ? 1 : from_to(0, 4);
        twin.pen_height = from_to(0, 5) ? 1 : from_to(0, 4);
        PenSize(twin.pen_width, twin.pen_height);
        GetIndPattern(&twin.pattern, 0, from_to(0, 1) ? 1 : from_to(1, 6));
        PenPat(&twin.pattern);
        uint32_t colour = static_cast<uint32_t>(rng()) & 0xFFFFFF;
        foreground(colour);
        twin.fore = 0xFF000000u | colour;
        if (from_to(0, 3) == 0) any_clip();
    }

    void any_text() {
        std::string s;
        for (int i = from_to(0, 6); i > 0; i--) s += static_cast<char>(from_to(1, 255));
        Point at = point(from_to(-30, WIDTH), from_to(-5, HEIGHT + 12));
        draw_string(s, at.h, at.v);
        twin.text(s, at.h, at.v);
    }

    void any_picture() {
        PicHandle picture = GetPicture(from_to(3155, 3164));
        Rect r;
        QDGetPictureBounds(picture, &r);
        OffsetRect(&r, from_to(-30, WIDTH), from_to(-30, HEIGHT));
        if (from_to(0, 2) == 0) r.right = pin_right(r.right + from_to(0, 20));
        DrawPicture(picture, &r);
        twin.picture(picture, r);
    }
    static int16_t pin_right(int x) { return static_cast<int16_t>(x); }

    void any_verb() {
        Rect r = any_rect();
        Point a = any_point(), b = any_point();
        switch (from_to(0, 5)) {
        case 0: PaintRect(&r), twin.paint(r); break;
        case 1: EraseRect(&r), twin.erase(r); break;
        case 2: FrameRect(&r), twin.frame(r); break;
        case 3: any_text(); break;
        case 4: any_picture(); break;
        default: MoveTo(a.h, a.v), LineTo(b.h, b.v), twin.line(a, b);
        }
    }

    ::testing::AssertionResult same() const {
        for (int v = 0; v < HEIGHT; v++) {
            for (int h = 0; h < WIDTH; h++) {
                if (at(h, v) != twin.pixels[twin.index(h, v)]) {
                    return ::testing::AssertionFailure() << "pixel (" << h << ", " << v << ")";
                }
            }
        }
        return ::testing::AssertionSuccess();
    }

    slow_twin twin{WIDTH, HEIGHT};
    std::mt19937 rng;
};

} // namespace

TEST_F(random_drawing_test, is_the_same_as_one_pixel_at_a_time) {
    start(71);
    for (int step = 0; step < 20000; step++) {
        any_state();
        any_verb();
        ASSERT_TRUE(same()) << "step " << step;
    }
}

TEST_F(random_drawing_test, a_visible_region_cuts_like_a_clip) {
    start(72);
    for (int round = 0; round < 200; round++) {
        any_clip();
        RgnHandle visible = NewRgn(), clip = NewRgn();
        Rect r = any_rect(), s = any_rect();
        RectRgn(visible, &r);
        RectRgn(clip, &s);
        XorRgn(visible, clip, visible);
        toolbox_port_setvisible(port, visible);
        for (int v = 0; v < HEIGHT; v++) {
            for (int h = 0; h < WIDTH; h++) {
                if (!PtInRgn(point(h, v), visible)) twin.clip[twin.index(h, v)] = false;
            }
        }
        any_verb();
        ASSERT_TRUE(same()) << "round " << round;
        DisposeRgn(visible);
        DisposeRgn(clip);
    }
}
