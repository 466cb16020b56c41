// host/desktop/qt_patches.h: the patches that are open by themselves, each with its window and those of its scores.
// Layer: desktop platform, Qt.
// Called by the desktop.
#pragma once

#include <memory>
#include <vector>

#include <QString>

#include "host/desktop/desk.h"
#include "host/desktop/qt_asks.h"

class qt_patch_window;
class qt_score_window;

class qt_patches {
public:
    qt_patches(desk_program& program, qt_asks asks);
    ~qt_patches();
    qt_patches(const qt_patches&) = delete;
    qt_patches& operator=(const qt_patches&) = delete;

    // A window with the patch in this file; the one that shows it already. Null, and why, when it cannot be read.
    qt_patch_window* open(const QString& file, QString& why);

    bool none() const { return all.empty(); }

    // Asks each window and closes it; false when one objects.
    bool close_all();

    // What the kernel does with a window: of a score in one of these patches, or of none of them.
    void window_shown(host_window* w);
    void window_hidden(host_window* w);

    // Says something in every window's status line.
    void tell_all(const QString& text);

private:
    struct opened {
        std::unique_ptr<desk_patch> patch;
        qt_patch_window* window = nullptr;
        std::vector<std::unique_ptr<qt_score_window>> scores;
    };
    void end(opened* which);

    desk_program& behind;
    qt_asks desktop;
    std::vector<std::unique_ptr<opened>> all;
};
