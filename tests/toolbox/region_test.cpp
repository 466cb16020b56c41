// Regions against bitmaps that do the same one pixel at a time.
// Tests of host/toolbox/region.cpp.
// Run by ctest.
#include "host/toolbox/region.h"

#include "tests/toolbox/canvas.h"

#include <array>
#include <random>

namespace {

constexpr int SIDE = 24;
using bitmap = std::array<std::array<bool, SIDE>, SIDE>;

bitmap pixels_of(RgnHandle rgn) {
    bitmap b{};
    for (int v = 0; v < SIDE; v++) {
        for (int h = 0; h < SIDE; h++)
            b[static_cast<size_t>(v)][static_cast<size_t>(h)] = PtInRgn(point(h, v), rgn);
    }
    return b;
}

// What the header promises of the record.
void expect_sound(const toolbox_region& r) {
    if (r.empty()) {
        Rect zero = rect(0, 0, 0, 0);
        EXPECT_TRUE(EqualRect(&r.bounds, &zero));
        EXPECT_TRUE(r.bands.empty());
    }
    EXPECT_TRUE(r.bands.size() != 1 || r.bands[0].count > 1) << "one rectangle needs no bands";
    int left = INT16_MAX, right = INT16_MIN;
    for (size_t i = 0; i < r.bands.size(); i++) {
        const region_band& band = r.bands[i];
        EXPECT_LT(band.top, band.bottom);
        ASSERT_GT(band.count, 0u);
        EXPECT_TRUE(i == 0 || r.bands[i - 1].bottom <= band.top);
        for (uint32_t s = band.first; s < band.first + band.count; s++) {
            EXPECT_LT(r.spans[s].left, r.spans[s].right);
            EXPECT_TRUE(s == band.first || r.spans[s - 1].right < r.spans[s].left);
            left = std::min<int>(left, r.spans[s].left);
            right = std::max<int>(right, r.spans[s].right);
        }
    }
    if (!r.bands.empty()) {
        EXPECT_EQ(r.bounds.left, left);
        EXPECT_EQ(r.bounds.right, right);
        EXPECT_EQ(r.bounds.top, r.bands.front().top);
        EXPECT_EQ(r.bounds.bottom, r.bands.back().bottom);
    }
}

struct generator {
    std::mt19937 rng;
    explicit generator(unsigned seed) : rng(seed) {}
    int upto(int n) { return static_cast<int>(rng() % static_cast<unsigned>(n + 1)); }
    Rect any_rect() {
        int l = upto(SIDE), t = upto(SIDE);
        return rect(l, t, l + upto(SIDE - l), t + upto(SIDE - t));
    }
};

bool answer(region_op op, bool a, bool b) {
    switch (op) {
    case region_op::sect: return a && b;
    case region_op::join: return a || b;
    case region_op::diff: return a && !b;
    default: return a != b;
    }
}

void combine(region_op op, RgnHandle a, RgnHandle b, RgnHandle dst) {
    switch (op) {
    case region_op::sect: SectRgn(a, b, dst); break;
    case region_op::join: UnionRgn(a, b, dst); break;
    case region_op::diff: DiffRgn(a, b, dst); break;
    default: XorRgn(a, b, dst);
    }
}

} // namespace

TEST(regions, random_algebra_agrees_with_bitmaps) {
    const unsigned seed = 20240607;
    std::printf("seed %u\n", seed);
    generator g(seed);
    for (int round = 0; round < 300; round++) {
        toolbox_region a, b;
        for (int step = 0; step < 12; step++) {
            toolbox_region r = region_of(g.any_rect());
            auto op = std::array{region_op::join, region_op::join, region_op::diff,
                                 region_op::exclusive}[static_cast<size_t>(g.upto(3))];
            toolbox_region& target = g.upto(1) ? a : b;
            combine(op, &target, &r, &target);
        }
        bitmap pa = pixels_of(&a), pb = pixels_of(&b);
        for (region_op op : {region_op::sect, region_op::join, region_op::diff, region_op::exclusive}) {
            toolbox_region out;
            combine(op, &a, &b, &out);
            expect_sound(out);
            bitmap got = pixels_of(&out);
            for (size_t v = 0; v < SIDE; v++) {
                for (size_t h = 0; h < SIDE; h++) ASSERT_EQ(got[v][h], answer(op, pa[v][h], pb[v][h]));
            }
        }
    }
}

TEST(regions, equal_pixels_are_equal_records_however_they_came_about) {
    generator g(5);
    for (int round = 0; round < 200; round++) {
        toolbox_region a, b, both, other_way;
        for (int step = 0; step < 6; step++) {
            toolbox_region r = region_of(g.any_rect()), s = region_of(g.any_rect());
            UnionRgn(&a, &r, &a);
            UnionRgn(&b, &s, &b);
        }
        UnionRgn(&a, &b, &both);
        DiffRgn(&b, &a, &other_way);
        UnionRgn(&other_way, &a, &other_way);
        EXPECT_TRUE(EqualRgn(&both, &other_way));
        XorRgn(&both, &other_way, &a);
        EXPECT_TRUE(EmptyRgn(&a));
    }
}

TEST(regions, of_one_rectangle_answer_for_its_pixels) {
    RgnHandle r = NewRgn();
    EXPECT_TRUE(EmptyRgn(r));
    SetRectRgn(r, 2, 3, 5, 7);
    EXPECT_FALSE(EmptyRgn(r));
    EXPECT_TRUE(PtInRgn(point(2, 3), r));
    EXPECT_FALSE(PtInRgn(point(5, 3), r));
    Rect b, touch = rect(5, 3, 9, 7), over = rect(4, 6, 9, 9);
    EXPECT_FALSE(RectInRgn(&touch, r));
    EXPECT_TRUE(RectInRgn(&over, r));
    EXPECT_EQ(GetRegionBounds(r, &b), &b);
    EXPECT_EQ(b.right, 5);
    SetRectRgn(r, 5, 5, 5, 9);
    EXPECT_TRUE(EmptyRgn(r));
    DisposeRgn(r);
    DisposeRgn(nullptr);
}

TEST(regions, have_holes_and_islands) {
    RgnHandle ring = NewRgn(), hole = NewRgn(), island = NewRgn();
    SetRectRgn(ring, 0, 0, 10, 10);
    SetRectRgn(hole, 2, 2, 8, 8);
    SetRectRgn(island, 4, 4, 6, 6);
    DiffRgn(ring, hole, ring);
    UnionRgn(ring, island, ring);
    EXPECT_TRUE(PtInRgn(point(1, 5), ring));
    EXPECT_FALSE(PtInRgn(point(3, 5), ring));
    EXPECT_TRUE(PtInRgn(point(5, 5), ring));
    EXPECT_TRUE(PtInRgn(point(9, 5), ring));
    OffsetRgn(ring, 100, -7);
    EXPECT_TRUE(PtInRgn(point(105, -2), ring));
    EXPECT_FALSE(PtInRgn(point(103, -2), ring));
    for (RgnHandle r : {ring, hole, island}) DisposeRgn(r);
}

TEST(regions, moved_beyond_sixteen_bits_lose_only_what_lies_outside) {
    toolbox_region r = region_of(rect(0, 0, 10, 10)), low = region_of(rect(0, 20, 40, 30));
    UnionRgn(&r, &low, &r);
    OffsetRgn(&r, INT16_MAX - 20, 0);
    Rect b;
    GetRegionBounds(&r, &b);
    EXPECT_EQ(b.left, INT16_MAX - 20);
    EXPECT_EQ(b.right, INT16_MAX);
    EXPECT_EQ(b.bottom, 30);
    expect_sound(r);
    OffsetRgn(&r, -200000, 0);
    EXPECT_TRUE(EmptyRgn(&r));
}

using clipping_test = canvas_test;

TEST_F(clipping_test, cuts_to_any_union_of_rectangles) {
    open(8, 4);
    RgnHandle clip = NewRgn(), more = NewRgn();
    SetRectRgn(clip, 0, 0, 3, 2);
    SetRectRgn(more, 5, 1, 8, 3);
    UnionRgn(clip, more, clip);
    SetClip(clip);
    Rect all = rect(0, 0, 8, 4);
    PaintRect(&all);
    EXPECT_EQ(art(), "###.....\n"
                     "###..###\n"
                     ".....###\n"
                     "........\n");
    DisposeRgn(clip);
    DisposeRgn(more);
}

TEST_F(clipping_test, is_copied_in_and_out) {
    Rect small = rect(1, 1, 3, 3);
    ClipRect(&small);
    RgnHandle saved = NewRgn(), now = NewRgn();
    GetClip(saved);
    Rect other = rect(5, 5, 6, 6);
    ClipRect(&other);
    GetClip(now);
    EXPECT_TRUE(PtInRgn(point(1, 1), saved));
    EXPECT_FALSE(PtInRgn(point(1, 1), now));
    SetClip(saved);
    SetEmptyRgn(saved);
    GetClip(now);
    EXPECT_TRUE(PtInRgn(point(1, 1), now));
    DisposeRgn(saved);
    DisposeRgn(now);
}
