// tests/desktop/editor_on_screen.cpp: the editor on a screen that nobody sees.
// Test layer.
#include "tests/desktop/editor_on_screen.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

constexpr int WIDTH = 1400;
constexpr int HEIGHT = 950;
constexpr int SETTLE_MS = 300;

} // namespace

editor_on_screen::editor_on_screen(const std::filesystem::path& in)
    : screen(std::make_unique<x_screen>(in, WIDTH, HEIGHT)), folder(in) {
    for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "HOME"})
        setenv(place, folder.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    for (const char* variable : {"QT_SCALE_FACTOR", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE"})
        unsetenv(variable);
}

std::string editor_on_screen::why_not() {
    if (!BRISOLAN_HAVE_QT) return "this build has no Qt";
    return x_screen::why_not();
}

void editor_on_screen::open(const std::vector<std::string>& files, const std::string& title) {
    if (!screen->runs()) {
        ASSERT_TRUE(screen->start()) << "Xvfb does not answer";
    }
    std::vector<std::string> words{BRISOLAN_PROGRAM, "edit"};
    words.insert(words.end(), files.begin(), files.end());
    program = std::make_unique<process>(folder, "editor", words);
    ASSERT_TRUE(screen->focus(title)) << program->err();
    sleep_ms(SETTLE_MS);
}

void editor_on_screen::quit() {
    screen->key("ctrl+q");
    EXPECT_EQ(program->wait(PATIENCE_MS), 0) << program->err();
}

void editor_on_screen::save_as(const std::string& name, const std::string& key) {
    screen->key(key);
    ASSERT_TRUE(screen->focus("Save as"));
    screen->key("ctrl+a");
    screen->type(file(name));
    screen->key("Return");
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return std::filesystem::exists(file(name)); }));
    ASSERT_TRUE(screen->focus(name));
    saved = file(name);
}

void editor_on_screen::save() {
    const auto before = std::filesystem::last_write_time(saved);
    screen->key("ctrl+s");
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] {
        std::error_code replaced; // at this very moment
        return std::filesystem::last_write_time(saved, replaced) != before && !replaced;
    })) << "not saved";
}

std::vector<note_row> editor_on_screen::list(const std::string& name) const {
    process p(folder, "list", {BRISOLAN_PROGRAM, "list", file(name)});
    EXPECT_EQ(p.wait(PATIENCE_MS), 0) << p.err();
    std::istringstream lines(p.out());
    std::vector<note_row> rows;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream numbers(line);
        rows.emplace_back();
        for (int n = 0; numbers >> n;) rows.back().push_back(n);
    }
    return rows;
}

void editor_on_screen::set(const std::string& group, const std::string& lines) const {
    std::filesystem::create_directories(folder / "brisolan");
    std::ofstream out(folder / "brisolan" / "brisolan.conf", std::ios::app);
    out << "[" << group << "]\n" << lines << "\n";
}

void editor_on_screen::wait_for_menu() const {
    EXPECT_TRUE(holds_within(PATIENCE_MS, [this] { return screen->has_menu(); }));
}

void skip_editor_test(const std::string& why) {
    const char* const ci = std::getenv("CI");
    if (BRISOLAN_HAVE_QT && ci && std::string(ci) == "true") FAIL() << why;
    std::printf("the editor was not tested: %s\n", why.c_str());
    GTEST_SKIP();
}

void editor_test::SetUp() {
    if (const std::string why = editor_on_screen::why_not(); !why.empty()) return skip_editor_test(why);
    std::string name = (std::filesystem::temp_directory_path() / "brisolan-editor-XXXXXX").string();
    folder = mkdtemp(name.data());
    editor = std::make_unique<editor_on_screen>(folder);
}

void editor_test::TearDown() {
    editor.reset();
    if (!folder.empty()) std::filesystem::remove_all(folder);
}
