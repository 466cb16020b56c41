// tests/app/pictures_test.cpp: lists of script lines draw the picture that is kept beside them: those of tests/pictures, and
// the scripts anywhere below tests/ that have one, whose printed lines are held against their expectation elsewhere.
// Test layer. With RENEW_PICTURE set to a script's name, that one picture is written anew instead: tests/renew-picture.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/script.h"
#include "tests/support/picture.h"
#include "tests/support/scratch_folder.h"
#include "view/events.h"

namespace {

namespace fs = std::filesystem;

const fs::path tests = fs::path(BRISOLAN_SOURCE_DIR) / "tests";

std::string renewed() {
    const char* name = std::getenv("RENEW_PICTURE");
    return name ? name : "";
}

fs::path beside(fs::path script, const char* ending) {
    return script.replace_extension(ending);
}

std::vector<fs::path> drawing_scripts() {
    std::vector<fs::path> all;
    for (const auto& entry : fs::recursive_directory_iterator(tests)) {
        const fs::path& file = entry.path();
        const bool kept =
            file.extension() == ".script" && (fs::exists(beside(file, ".png")) || file.stem() == renewed());
        if (kept || file.extension() == ".lines") all.push_back(file);
    }
    std::sort(all.begin(), all.end());
    return all;
}

class pictures : public testing::TestWithParam<fs::path> {};

// Runs the script in a fresh folder, with the files that it is to find there, and then has the window drawn into the file.
// "examples/" in a line stands for the example pieces, and ":sharps" for the marks on black keys, which no message turns on.
void draw(const fs::path& script, const fs::path& png) {
    const scratch_folder here;
    const fs::path files = beside(script, ".files");
    if (fs::exists(files)) fs::copy(files, here.path(), fs::copy_options::recursive);
    script_runner runner("", [](const std::string&) {});
    std::ifstream in(script);
    for (std::string line; std::getline(in, line);) {
        const std::size_t example = line.find("examples/");
        if (example != std::string::npos) line.insert(example, std::string(BRISOLAN_SOURCE_DIR) + "/");
        if (line == ":sharps") {
            brisolan_drawsharps(runner.addressed(), 1);
            line = ":update";
        }
        ASSERT_EQ(runner.run(line), "") << line;
    }
    ASSERT_EQ(runner.run(":png " + png.string()), "");
}

TEST_P(pictures, are_drawn_as_they_are_kept) {
    const std::string name = GetParam().stem();
    const fs::path kept = beside(GetParam(), ".png");
    if (name == renewed()) {
        draw(GetParam(), kept);
        return;
    }
    const fs::path made =
        fs::temp_directory_path() / ("brisolan-" + name + "-" + std::to_string(getpid()) + ".png");
    draw(GetParam(), made);
    const picture before = read_picture(kept.string());
    const picture now = read_picture(made.string());
    fs::remove(made);
    ASSERT_GT(now.width, 0);
    if (now == before) return;
    const fs::path shown = fs::path(BRISOLAN_SOURCE_DIR) / "build" / ("difference-" + name + ".png");
    write_picture(difference(before, now), shown.string());
    FAIL() << differing_pixels(before, now) << " pixels differ; kept, made and difference are in " << shown
           << "; tests/renew-picture " << name << " takes the new one";
}

INSTANTIATE_TEST_SUITE_P(kept, pictures, testing::ValuesIn(drawing_scripts()),
                         [](const testing::TestParamInfo<fs::path>& drawn) {
                             std::string name = drawn.param.stem();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(kept_pictures, have_scripts_that_draw_them) {
    for (const auto& entry : fs::recursive_directory_iterator(tests)) {
        const fs::path& file = entry.path();
        if (file.extension() != ".png") continue;
        EXPECT_TRUE(fs::exists(beside(file, ".lines")) || fs::exists(beside(file, ".script"))) << file;
    }
}

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
