// host/headless/headless.h: the machine played by a script: virtual time, one thread, dialogs and pointer as told.
// Layer: platform; leans on host/platform.h, host/kernel/, host/toolbox/.
// Called by `brisolan script`, the commands that need no display, the tests and the fuzzers.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "host/kernel/kernel.h"
#include "host/toolbox/toolbox_host.h"

// What the next file dialog returns, as it stands: a save dialog returns the type also where it did not offer it.
struct headless_answer {
    bool cancelled = false;
    std::string path;
    file_type type = 0; // 0: by the name's ending
};

// A file dialog that was shown.
struct headless_dialog {
    bool saving = false;
    std::string proposed; // the name; empty when opening
    std::vector<file_type> types;
};

// The state of the played machine; whoever plays it fills the queues and takes the lines.
struct headless {
    // Every observable line in the order in which it happens, without line end: "post …", "error …", "notice …",
    // "dirty". Unset: dropped.
    std::function<void(const std::string&)> print;

    std::deque<int> choices;             // items for the next pop-up menus; none left: no choice
    std::deque<headless_answer> answers; // for the next file dialogs; none left: cancelled
    std::vector<headless_dialog> asked;  // the file dialogs up to now, for whoever wants to know
    std::vector<Point> held;             // window points that the next press which tracks by itself sees
    std::size_t held_at = 0;
    Point pointer{}; // window coordinates, as last moved
    bool button = false;
    int modifiers = 0;
    std::string clipboard; // Latin-1
    bool has_clipboard = false;
    Rect screen{0, 0, 8192, 8192};
};

// Starts the host in virtual time on the played machine; one at a time. Ends it: false when blocks were left. [main]
void headless_start(headless* machine);
bool headless_end();

// Lets virtual milliseconds pass, clocks and low-priority calls carried out on the way. [main]
void headless_wait(std::int64_t ms, const std::function<void()>& after = {});
