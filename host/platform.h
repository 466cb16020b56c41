// host/platform.h: what the embedded host asks of the machine it runs on, beside what the toolbox asks
// (host/toolbox/toolbox_host.h has the pointer, menus, cursors and the clipboard).
// Layer: interface between host/kernel/ and a platform; leans on host/kel.h.
// Filled by host/headless/ and host/desktop/; called by host/kernel/ alone.
#pragma once

#include <span>

#include "host/kel.h"

enum class console_kind { notice, error };

// A null function pointer stands for a machine without that thing: nothing is shown, every dialog is cancelled. All are
// called at main level, console and wake at both.
struct host_platform {
    void* user = nullptr; // handed to every function

    // One line for the console, without line end.
    void (*console)(void* user, console_kind kind, const char* text) = nullptr;

    // Low-priority calls wait, or something must be drawn anew: have the main level call kel_run_queue soon. Called
    // from the scheduler too, so it neither blocks nor allocates.
    void (*wake)(void* user) = nullptr;

    // The dialogs of host_open_dialog and host_saveas_dialog, as those tell.
    host_err (*open_dialog)(void* user, char* name, std::int16_t* path, file_type* type,
                            std::span<const file_type> types) = nullptr;
    host_err (*saveas_dialog)(void* user, char* name, std::int16_t* path, file_type* type,
                              std::span<const file_type> types) = nullptr;

    void (*inspector)(void* user, host_object* x) = nullptr;
    void (*window_shown)(void* user, host_window* w,
                         bool shown) = nullptr; // shown or brought to the front; hidden
    void (*window_title)(void* user, host_window* w, const char* title) = nullptr;
    void (*window_freed)(void* user, host_window* w) = nullptr;
    void (*window_drawn)(void* user, host_window* w) = nullptr; // the port's pixels may have changed
    void (*move_pointer)(void* user, Point global) = nullptr;
    void (*patcher_dirty)(void* user, host_patcher* p) = nullptr;
    void (*notice)(void* user, symbol* name,
                   symbol* selector) = nullptr; // left through a named connection point
};
