// tests/desktop/x_screen.cpp: a screen that nobody sees, with a real pointer and real keys.
// Test layer.
#include "tests/desktop/x_screen.h"

#include <algorithm>
#include <cstdlib>

#include <unistd.h>

namespace {

bool is_installed(const std::string& program) {
    const char* const path = std::getenv("PATH");
    std::string folders = path ? path : "";
    folders += ':';
    for (std::size_t from = 0, to = 0; (to = folders.find(':', from)) != std::string::npos; from = to + 1) {
        const std::string file = folders.substr(from, to - from) + "/" + program;
        if (access(file.c_str(), X_OK) == 0) return true;
    }
    return false;
}

constexpr int SETTLE_MS = 30; // between two things that a hand does

} // namespace

x_screen::x_screen(const std::filesystem::path& in, int w, int h) : folder(in), width(w), height(h) {}

x_screen::~x_screen() {
    unsetenv("DISPLAY");
}

std::string x_screen::why_not() {
    for (const char* program : {"Xvfb", "xdotool"}) {
        if (!is_installed(program)) return std::string(program) + " is not installed";
    }
    return "";
}

bool x_screen::start() {
    const std::string size = std::to_string(width) + "x" + std::to_string(height) + "x24";
    server = std::make_unique<process>(folder, "xvfb",
                                       std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                                                                size, "-noreset", "-nolisten", "tcp", "-r"});
    // It writes its number once it answers. "-r": a key that is down while the machine stands still types one letter.
    if (!holds_within(PATIENCE_MS, [this] { return server->out().find('\n') != std::string::npos; }))
        return false;
    const std::string number = server->out();
    setenv("DISPLAY", (":" + number.substr(0, number.find('\n'))).c_str(), 1);
    return true;
}

bool x_screen::tool(const std::vector<std::string>& words) {
    std::vector<std::string> all{"xdotool"};
    all.insert(all.end(), words.begin(), words.end());
    process p(folder, "xdotool-" + std::to_string(++calls), all);
    const bool done = p.wait(PATIENCE_MS) == 0;
    sleep_ms(SETTLE_MS);
    return done;
}

bool x_screen::has_window(const std::string& title) {
    return tool({"search", "--onlyvisible", "--name", title});
}

bool x_screen::has_menu() {
    process p(folder, "menus", {"xdotool", "search", "--onlyvisible", "--name", "^$"});
    p.wait(PATIENCE_MS);
    const std::string windows = p.out(); // a line each
    return std::count(windows.begin(), windows.end(), '\n') > 1;
}

bool x_screen::focus(const std::string& title, int ms) {
    return holds_within(ms, [&] {
        return tool({"search", "--onlyvisible", "--name", title, "windowfocus", "--sync"});
    });
}

void x_screen::key(const std::string& keys) {
    tool({"key", keys});
}

void x_screen::type(const std::string& text) {
    tool({"type", text});
}

void x_screen::move(int x, int y) {
    tool({"mousemove", std::to_string(x), std::to_string(y)});
}

std::string x_screen::pointer() {
    process p(folder, "pointer", {"xdotool", "getmouselocation"});
    p.wait(PATIENCE_MS);
    return p.out();
}

void x_screen::click(int x, int y, int button) {
    move(x, y);
    tool({"click", std::to_string(button)});
}

void x_screen::drag(std::initializer_list<place> places, int button) {
    bool pressed = false;
    for (const place& p : places) {
        move(p.x, p.y);
        if (!pressed) tool({"mousedown", std::to_string(button)});
        pressed = true;
    }
    tool({"mouseup", std::to_string(button)});
}
