// Pictures and cursors: sizes and what their users rely on.
// Tests of host/toolbox/resources.cpp, picture.cpp and the art.
// Run by ctest.
#include "host/toolbox/art.h"
#include "host/toolbox/resources.h"

#include "tests/toolbox/canvas.h"

#include <bit>
#include <set>

namespace {

using pictures_test = canvas_test;

Rect bounds_of(int id) {
    Rect r;
    QDGetPictureBounds(GetPicture(id), &r);
    return r;
}

void draw_at(int id, int h, int v) {
    Rect r = bounds_of(id);
    OffsetRect(&r, h, v);
    DrawPicture(GetPicture(id), &r);
}

// Pixels left..right-1 of the picture 3158, row after row.
std::vector<uint32_t> part_of(PicHandle picture, int left, int right) {
    std::vector<uint32_t> out;
    int width = picture->bounds.right;
    for (size_t i = 0; i < picture->pixels.size(); i++) {
        int h = static_cast<int>(i) % width;
        if (h >= left && h < right) out.push_back(picture->pixels[i]);
    }
    return out;
}

} // namespace

TEST_F(pictures_test, are_ten_and_all_different) {
    std::set<std::vector<uint32_t>> seen;
    for (int id = 3155; id <= 3164; id++) {
        PicHandle p = GetPicture(id);
        ASSERT_NE(p, nullptr) << id;
        EXPECT_GE(std::set(p->pixels.begin(), p->pixels.end()).size(), 2u) << id;
        seen.insert(p->pixels);
    }
    EXPECT_EQ(seen.size(), 10u);
    EXPECT_EQ(GetPicture(3154), nullptr);
    EXPECT_EQ(GetPicture(3165), nullptr);
}

TEST_F(pictures_test, fit_the_places_where_they_are_drawn) {
    auto size = [](int id) { return std::pair<int, int>{bounds_of(id).right, bounds_of(id).bottom}; };
    EXPECT_EQ(size(3155), (std::pair{48, 40})) << "four cells of 24 by 20";
    EXPECT_LE(size(3156).first, 86 - 55);
    EXPECT_LE(size(3156).second, 39 - 23);
    EXPECT_LE(size(3157).first, 139 - 130);
    EXPECT_LE(size(3157).second, 39 - 23);
    EXPECT_EQ(size(3158), (std::pair{61, 15})) << "drawn a pixel to the left of the window";
    for (int id = 3159; id <= 3164; id++) EXPECT_EQ(size(id), (std::pair{13, 13})) << id;
}

TEST_F(pictures_test, the_zoom_box_has_four_different_segments_of_fifteen_pixels) {
    PicHandle p = GetPicture(3158);
    std::set<std::vector<uint32_t>> segments;
    for (int i = 0; i < 4; i++) segments.insert(part_of(p, 1 + 15 * i, 15 + 15 * i));
    EXPECT_EQ(segments.size(), 4u);
    for (int i = 1; i <= 4; i++) {
        std::vector<uint32_t> line = part_of(p, 15 * i, 15 * i + 1);
        EXPECT_EQ(std::set(line.begin(), line.end()).size(), 1u) << "a line ends segment " << i;
    }
}

TEST_F(pictures_test, stay_when_detached_and_load_anew) {
    PicHandle first = GetPicture(3164);
    EXPECT_EQ(GetPicture(3164), first);
    DetachResource(first);
    PicHandle second = GetPicture(3164);
    EXPECT_NE(second, first);
    EXPECT_EQ(second->pixels, first->pixels);
    KillPicture(second); // still the resource's
    EXPECT_EQ(GetPicture(3164), second);
    KillPicture(first);
    KillPicture(nullptr);
    DetachResource(nullptr);
}

TEST_F(pictures_test, leave_what_lies_below_their_transparent_pixels) {
    open(13, 16);
    foreground(0x00FF00);
    Rect all = rect(0, 0, 13, 16);
    PaintRect(&all);
    draw_at(3157, 0, 0);
    EXPECT_EQ(at(0, 0), 0xFF00FF00u);
    EXPECT_EQ(at(4, 0), BLACK);
    EXPECT_EQ(at(12, 15), 0xFF00FF00u);
}

TEST_F(pictures_test, outside_the_table_draw_nothing) {
    Rect r;
    EXPECT_TRUE(EmptyRect(QDGetPictureBounds(nullptr, &r)));
    r = rect(0, 0, 10, 10);
    DrawPicture(nullptr, &r);
    EXPECT_EQ(count(WHITE), 16 * 12);
}

TEST_F(pictures_test, scale_with_their_rectangle) {
    open(26, 26);
    Rect twice = rect(0, 0, 26, 26);
    DrawPicture(GetPicture(3159), &twice);
    std::vector<uint32_t> large(toolbox_port_pixels(port), toolbox_port_pixels(port) + 26 * 26);
    open(13, 13);
    draw_at(3159, 0, 0);
    for (int v = 0; v < 26; v++) {
        for (int h = 0; h < 26; h++) EXPECT_EQ(large[static_cast<size_t>(v * 26 + h)], at(h / 2, v / 2));
    }
}

TEST(cursors, are_there_for_every_tool) {
    std::set<std::string> seen;
    for (int id : {3155, 3156, 3157, 3158, 3159, 3160, 3161, 2}) {
        CursHandle handle = GetCursor(id);
        ASSERT_NE(handle, nullptr) << id;
        const Cursor& c = **handle;
        seen.insert(std::string(reinterpret_cast<const char*>(c.data), sizeof c.data));
        EXPECT_TRUE(c.hotSpot.h >= 0 && c.hotSpot.h < 16 && c.hotSpot.v >= 0 && c.hotSpot.v < 16) << id;
        for (int v = 0; v < 16; v++)
            EXPECT_EQ(c.data[v] & ~c.mask[v], 0) << "ink lies inside the mask: " << id;
        EXPECT_TRUE(c.mask[c.hotSpot.v] & (0x8000 >> c.hotSpot.h)) << "the hot spot is on the image: " << id;
    }
    EXPECT_EQ(seen.size(), 8u);
    EXPECT_EQ(GetCursor(1), nullptr);
    EXPECT_EQ(GetCursor(3162), nullptr);
}

TEST(cursors, have_a_white_edge_so_that_they_show_on_black) {
    for (int id : {3155, 3156, 3157, 3158, 3159, 3160, 3161, 2}) {
        const Cursor& c = **GetCursor(id);
        int white = 0, black = 0;
        for (int v = 0; v < 16; v++) {
            black += std::popcount(c.data[v]);
            white += std::popcount(static_cast<uint16_t>(c.mask[v] & ~c.data[v]));
        }
        EXPECT_GT(white, 20) << id;
        EXPECT_GT(black, 10) << id;
    }
}

TEST(cursors, start_and_end_of_an_event_mirror_each_other) {
    const Cursor &start = **GetCursor(3156), &end = **GetCursor(3157);
    int left = 0, right = 0;
    for (int v = 0; v < 16; v++) {
        left += std::popcount(static_cast<uint16_t>(start.data[v] & 0xFF00));
        right += std::popcount(static_cast<uint16_t>(end.data[v] & 0x00FF));
    }
    EXPECT_EQ(left, right);
    EXPECT_GT(left, 20) << "the edge that is dragged";
}

TEST(art, a_strip_is_read_cell_by_cell) {
    auto cells = art_cells("\na bb\n#. .#\n.. ##\n\na\n#\n");
    EXPECT_EQ(cells.at("bb"), (art_rows{".#", "##"}));
    EXPECT_EQ(cells.at("a"), (art_rows{"#"})) << "the later one";
    EXPECT_EQ(art_picture("\n#\n.##\n"), (art_rows{"#..", ".##"}));
}

TEST(art, every_picture_and_cursor_is_a_rectangle_of_known_letters) {
    for (const char* text : PICTURE_ART) {
        art_rows rows = art_picture(text);
        for (const std::string& row : rows) {
            EXPECT_EQ(row.size(), rows[0].size());
            EXPECT_EQ(row.find_first_not_of("#DGLPWBOYR."), std::string::npos) << row;
        }
    }
    for (const cursor_art& c : CURSOR_ART) {
        art_rows rows = art_picture(c.art);
        EXPECT_EQ(rows.size(), 16u) << c.id;
        for (const std::string& row : rows) {
            EXPECT_EQ(row.size(), 16u);
            EXPECT_EQ(row.find_first_not_of("#o."), std::string::npos) << row;
        }
    }
}
