// The palette: colours that stay apart for all eyes, text that reads.
// Tests of host/toolbox/palette.cpp.
// Run by ctest.
#include "host/toolbox/palette.h"

#include "tests/toolbox/colour_science.h"

#include <gtest/gtest.h>

namespace {

colour::rgb shown(int index) {
    RGBColor c = palette_color(index);
    return colour::linear(c.red >> 8, c.green >> 8, c.blue >> 8);
}

int index_of_track(int track) {
    return track <= 16 ? 48 - track : track - 17 + 4;
}

double apart(const colour::rgb& a, const colour::rgb& b) {
    double least = 1000;
    for (colour::eyes who : colour::ALL_EYES) {
        auto seen = [who](const colour::rgb& c) { return colour::to_lab(colour::seen_by(who, c)); };
        least = std::min(least, colour::difference(seen(a), seen(b)));
    }
    return least;
}

double least_among_tracks(int count) {
    double least = 1000;
    for (int t = 1; t <= count; t++) {
        for (int u = 1; u < t; u++)
            least = std::min(least, apart(shown(index_of_track(t)), shown(index_of_track(u))));
    }
    return least;
}

} // namespace

TEST(colour_science, agrees_with_published_differences) {
    // Pairs of the data set that goes with the formula (Sharma, Wu, Dalal 2005).
    EXPECT_NEAR(colour::difference({50, 2.6772, -79.7751}, {50, 0, -82.7485}), 2.0425, 1e-4);
    EXPECT_NEAR(colour::difference({50, -1, 2}, {50, 0, 0}), 2.3669, 1e-4);
    EXPECT_NEAR(colour::difference({50, 2.5, 0}, {73, 25, -18}), 27.1492, 1e-4);
    EXPECT_NEAR(colour::difference({2.0776, 0.0795, -1.1350}, {0.9033, -0.0636, -0.5514}), 0.9082, 1e-4);
}

TEST(colour_science, contrast_runs_from_one_to_twenty_one) {
    EXPECT_NEAR(colour::contrast(colour::linear(0, 0, 0), colour::linear(255, 255, 255)), 21, 1e-9);
    EXPECT_NEAR(colour::contrast(colour::linear(9, 9, 9), colour::linear(9, 9, 9)), 1, 1e-9);
}

TEST(palette, all_thirty_two_track_colours_stay_eight_apart_for_all_eyes) {
    EXPECT_GE(least_among_tracks(32), 8.0);
}

TEST(palette, the_first_sixteen_tracks_stay_ten_apart_for_all_eyes) {
    EXPECT_GE(least_among_tracks(16), 10.0);
}

TEST(palette, track_colours_stay_eight_apart_from_what_they_are_drawn_on) {
    const colour::rgb white = colour::linear(255, 255, 255);
    for (int t = 1; t <= 32; t++) {
        colour::rgb c = shown(index_of_track(t));
        EXPECT_GE(apart(c, white), 8.0) << "track " << t;
        EXPECT_GE(apart(c, shown(22)), 8.0) << "track " << t;
        EXPECT_GE(apart(c, shown(25)), 8.0) << "track " << t;
        EXPECT_GE(apart(c, shown(1)), 8.0) << "track " << t;
        EXPECT_GE(colour::contrast(c, white), 1.5) << "track " << t;
    }
}

TEST(palette, text_reads_at_four_and_a_half) {
    EXPECT_GE(colour::contrast(shown(1), shown(22)), 4.5);
    EXPECT_GE(colour::contrast(shown(1), shown(0)), 4.5);
    EXPECT_GE(colour::contrast(shown(26), shown(0)), 4.5);
    EXPECT_GE(colour::contrast(shown(1), colour::linear(0x80, 0x80, 0x80)), 4.5) << "a shaded tool";
}

TEST(palette, foreground_is_black_and_stands_in_for_unknown_indices) {
    for (int i : {1, -1, 48, 1000}) {
        RGBColor c = palette_color(i);
        EXPECT_EQ(c.red, 0);
        EXPECT_EQ(c.green, 0);
        EXPECT_EQ(c.blue, 0);
    }
}
