// tests/app/pictures_test.cpp: each list of script lines in tests/pictures draws the picture that is kept beside it.
// Test layer. With RENEW_PICTURE set to a script's name, that one picture is written anew instead: tests/renew-picture.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/script.h"
#include "tests/support/picture.h"

namespace {

namespace fs = std::filesystem;

const fs::path kept_pictures = fs::path(BRISOLAN_SOURCE_DIR) / "tests" / "pictures";

std::vector<std::string> script_names() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(kept_pictures)) {
        if (entry.path().extension() == ".lines") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class pictures : public testing::TestWithParam<std::string> {};

// Runs the script and then has the window drawn into the file. "examples/" in a line stands for the example pieces.
void draw(const fs::path& script, const fs::path& png) {
    script_runner runner("", [](const std::string&) {});
    std::ifstream in(script);
    for (std::string line; std::getline(in, line);) {
        const std::size_t example = line.find("examples/");
        if (example != std::string::npos) line.insert(example, std::string(BRISOLAN_SOURCE_DIR) + "/");
        ASSERT_EQ(runner.run(line), "") << line;
    }
    ASSERT_EQ(runner.run(":png " + png.string()), "");
}

TEST_P(pictures, are_drawn_as_they_are_kept) {
    const fs::path script = kept_pictures / (GetParam() + ".lines");
    const fs::path kept = kept_pictures / (GetParam() + ".png");
    const char* renew = std::getenv("RENEW_PICTURE");
    if (renew && GetParam() == renew) {
        draw(script, kept);
        return;
    }
    const fs::path made =
        fs::temp_directory_path() / ("brisolan-" + GetParam() + "-" + std::to_string(getpid()) + ".png");
    draw(script, made);
    const picture before = read_picture(kept.string());
    const picture now = read_picture(made.string());
    fs::remove(made);
    ASSERT_GT(now.width, 0);
    if (now == before) return;
    const fs::path shown = fs::path(BRISOLAN_SOURCE_DIR) / "build" / ("difference-" + GetParam() + ".png");
    write_picture(difference(before, now), shown.string());
    FAIL() << differing_pixels(before, now) << " pixels differ; kept, made and difference are in " << shown
           << "; tests/renew-picture " << GetParam() << " takes the new one";
}

INSTANTIATE_TEST_SUITE_P(kept, pictures, testing::ValuesIn(script_names()),
                         [](const testing::TestParamInfo<std::string>& drawn) {
                             std::string name = drawn.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

// The comparison itself: it must see one pixel.
TEST(picture_comparison, sees_one_pixel_and_a_size) {
    picture a{3, 2, {1, 2, 3, 4, 5, 6}};
    picture b = a;
    EXPECT_EQ(differing_pixels(a, b), 0U);
    b.pixels[4] = 9;
    EXPECT_EQ(differing_pixels(a, b), 1U);
    EXPECT_FALSE(a == b);
    EXPECT_EQ(differing_pixels(a, picture{3, 3, std::vector<std::uint32_t>(9, 1)}), 5U + 3U);
    const picture d = difference(a, b);
    EXPECT_EQ(d.height, 2 * 3 + 8);
    EXPECT_EQ(std::count(d.pixels.begin(), d.pixels.end(), 0xE00000U), 1);
}

} // namespace
