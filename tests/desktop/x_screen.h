// tests/desktop/x_screen.h: a screen that nobody sees, with a real pointer and real keys: Xvfb and xdotool.
// Test layer. Used by the tests of the desktop editor.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/process.h"

// An X server of its own for the scope's life, which this process and the programs that it starts take for the display.
class x_screen {
public:
    x_screen(const std::filesystem::path& folder, int width, int height);
    ~x_screen();
    x_screen(const x_screen&) = delete;
    x_screen& operator=(const x_screen&) = delete;

    // Why there cannot be one here; empty when there can.
    static std::string why_not();

    // Starts it; false when it does not answer.
    bool start();
    void stop() { server.reset(); }
    bool runs() const { return server != nullptr; }

    // Runs xdotool with these words, to its end: true when it succeeded.
    bool tool(const std::vector<std::string>& words);

    // Waits for a window whose title matches and gives it the keys. False when none comes.
    bool focus(const std::string& title, int ms = PATIENCE_MS);
    bool has_window(const std::string& title);
    // Whether a menu is open: a window without a title beside the screen itself.
    bool has_menu();

    void key(const std::string& keys); // as xdotool names them, "ctrl+s"
    void type(const std::string& text);
    void move(int x, int y);
    // Where the pointer is, as xdotool tells it: "x:100 y:200 …".
    std::string pointer();
    void click(int x, int y, int button = 1);
    // Presses at the first point, goes to each other one and releases there.
    struct place {
        int x, y;
    };
    void drag(std::initializer_list<place> places, int button = 1);

private:
    std::filesystem::path folder;
    int width;
    int height;
    int calls = 0;
    std::unique_ptr<process> server;
};
