// app/target.h: writing an instance's sequence to a file for a command.
// Layer: program. Called by the commands that write one.
#pragma once

#include <functional>
#include <string>

#include "core/instance.h"

// A file to write, and how.
struct write_target {
    std::string file;
    file_type type = 0;    // TYPE_MIDI, TYPE_TEXT or TYPE_KELB
    bool timecode = false; // MIDI: 2 ticks a millisecond in place of 96 a quarter
    int format = -1;       // MIDI: 0 or 1; -1: 1 when a track above the first is in use
};

// Has the instance write the file, in place of any of that name. An empty string, or why it could not be. `console` is
// where the platform puts its console lines; it hears them itself meanwhile. [main]
std::string write_from(std::function<void(const std::string&)>& console, brisolan* x, const write_target& to);
