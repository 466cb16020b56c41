// tests/view/draw_test.cpp: the small drawing operations.
// Tests of the view.
#include "tests/view/editor.h"

#include <utility>

#include "core/class.h"
#include "view/draw.h"

namespace {

class view_draw : public editor_test {
protected:
    void SetUp() override {
        editor_test::SetUp();
        open();
        SetPort(x->window->port);
        t_clipit(0, 0, 600, 400);
        t_eraserect(0, 0, 600, 400);
    }
};

TEST_F(view_draw, shading_leaves_colour_and_pen_as_they_were) {
    const RGBColor odd{1234, 40000, 7};
    RGBForeColor(&odd);
    t_invertrect(10, 10, 20, 20);
    t_darkenrect(Rect{30, 10, 40, 20});
    RGBColor after{};
    GetForeColor(&after);
    EXPECT_EQ(after.red, odd.red);
    EXPECT_EQ(after.green, odd.green);
    EXPECT_EQ(after.blue, odd.blue);
    t_drawline(50, 50, 60, 50); // one pixel thick, copying
    EXPECT_EQ(now().at(55, 50), 0xFF049C00u);
    EXPECT_EQ(now().at(55, 51), 0xFFFFFFFFu);
    EXPECT_EQ(now().at(15, 15), 0xFF808080u);
    EXPECT_EQ(now().at(35, 15), 0xFF6D6D6Du);
}

TEST_F(view_draw, shading_twice_is_shading_once) {
    t_color(COLOR_FOREGROUND);
    t_drawline(0, 12, 30, 12);
    t_invertrect(10, 10, 20, 20);
    const picture once = now();
    t_invertrect(10, 10, 20, 20);
    EXPECT_EQ(now(), once);
    EXPECT_EQ(once.at(15, 12), 0xFF000000u); // what is darker stays
}

TEST_F(view_draw, nested_clips_come_back_in_reverse_order) {
    const RgnHandle outer = t_cliprect(10, 10, 50, 50);
    const RgnHandle inner = t_cliprect(20, 20, 30, 30);
    t_paintrect(0, 0, 100, 100);
    EXPECT_EQ(now().at(25, 25), 0xFF000000u);
    EXPECT_EQ(now().at(15, 15), 0xFFFFFFFFu);
    t_restoreclip(inner);
    t_paintrect(0, 0, 100, 100);
    EXPECT_EQ(now().at(15, 15), 0xFF000000u);
    EXPECT_EQ(now().at(55, 55), 0xFFFFFFFFu);
    t_restoreclip(outer);
    t_paintrect(0, 0, 100, 100);
    EXPECT_EQ(now().at(55, 55), 0xFF000000u);
}

TEST_F(view_draw, numbers_and_strings_measure_and_draw_alike) {
    t_textface(FACE_PLAIN);
    EXPECT_EQ(t_numwidth(-2147483647 - 1), t_stringwidth("-2147483648"));
    t_drawlong(-17, 10, 30);
    const picture number = now();
    t_eraserect(0, 0, 600, 400);
    t_drawstring("-17", 10, 30);
    EXPECT_EQ(now(), number);
    t_textface(FACE_BOLD);
    EXPECT_EQ(t_stringwidth("10"), t_charwidth('1') + t_charwidth('0'));
}

TEST_F(view_draw, strings_beyond_255_characters_are_cut) {
    t_textface(FACE_PLAIN);
    EXPECT_EQ(t_stringwidth(std::string(300, 'i').c_str()), t_stringwidth(std::string(255, 'i').c_str()));
}

TEST_F(view_draw, system_font_comes_back_after_the_second_exchange) {
    const std::int16_t family_before = LMGetSysFontFam();
    std::int16_t family = TEXT_FONT;
    std::int16_t size = TEXT_SIZE;
    t_setsysfont(&family, &size);
    EXPECT_EQ(LMGetSysFontFam(), TEXT_FONT);
    EXPECT_EQ(LMGetSysFontSize(), TEXT_SIZE);
    t_setsysfont(&family, &size);
    EXPECT_EQ(LMGetSysFontFam(), family_before);
    EXPECT_EQ(family, TEXT_FONT);
}

TEST_F(view_draw, pictures_outside_the_table_draw_nothing) {
    const picture before = now();
    brisolan_drawpic(x, -1, 100, 100);
    brisolan_drawpic(x, 10, 100, 100);
    brisolan_drawpic(x, 259, 100, 100);
    EXPECT_EQ(now(), before);
    const PicHandle missing = std::exchange(em_pic[PIC_ZOOM], nullptr);
    brisolan_drawpic(x, PIC_ZOOM, 100, 100);
    EXPECT_EQ(now(), before) << "nor does one that could not be loaded";
    em_pic[PIC_ZOOM] = missing;
    brisolan_drawpic(x, PIC_ZOOM, 100, 100);
    EXPECT_NE(now(), before);
}

TEST_F(view_draw, normal_clip_leaves_the_scroll_bars_out) {
    brisolan_normalclip(x);
    t_paintrect(0, 0, 600, 400);
    const picture p = now();
    EXPECT_EQ(p.at(584, 384), 0xFF000000u);
    EXPECT_NE(p.at(585, 100), 0xFF000000u);
    EXPECT_NE(p.at(100, 385), 0xFF000000u);
    brisolan_unclip(x);
    t_paintrect(0, 0, 600, 400);
    EXPECT_EQ(now().at(599, 399), 0xFF000000u);
}

} // namespace
