// tests/view/editor.h: an instance in a patcher with its editor window open, driven through the kernel.
// Tests of the view.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/class.h"
#include "core/instance.h"
#include "core/sequence.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "host/kernel/patcher.h"
#include "host/kernel/windows.h"
#include "host/toolbox/toolbox_host.h"

// The pixels of a window's content.
struct picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    bool operator==(const picture&) const = default;
    std::uint32_t at(int h, int v) const {
        return pixels[static_cast<std::size_t>(v) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(h)];
    }
};

picture picture_of(const brisolan* x);
// How many pixels differ, and where the first one lies; for a message.
std::string difference(const picture& a, const picture& b);

// What the tests play the machine with.
struct played_machine {
    std::vector<std::string> console;
    std::vector<std::string> sent; // notices and "dirty"
    int choice = 0;
    // The menu popped up last, an item a letter: '*' marked, '.' not, and '-' behind it where disabled; and where it was,
    // in the screen's coordinates.
    std::string menu;
    Point menu_at{};
    std::vector<Point> held; // where the pointer is found while a press is followed
    std::size_t held_at = 0;
    Point moved_to{-1, -1};
    bool button = false;
    bool inspected = false;
};

class editor_test : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Links an event with these values; the window is not told.
    event* add(std::int32_t time, std::int32_t pitch, std::int32_t vel = 64, std::int32_t dur = 200,
               std::int32_t chan = 1, std::int32_t track = 1);
    // Opens the window and draws what is queued.
    void open();
    // Draws the whole window anew, and gives the picture.
    picture full();
    picture now() const { return picture_of(x); }
    void send(const char* selector, std::vector<atom> arguments = {});

    played_machine machine;
    host_patcher* patcher = nullptr;
    brisolan* x = nullptr;
};
