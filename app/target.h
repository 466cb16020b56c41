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
    int format = -1;       // MIDI: 0 or 1; -1: 1 when a track above the first is in use and tracks_hold_all
};

// What a file's name should end in, for whoever gave another one.
constexpr const char* WANTED_ENDINGS = "the name should end in .mid, .midi, .smf, .kar, .kel, .txt or .kelb";

// Why a command may not write a file of this name: it is there, and `force` is not given. Empty: it may. [main]
std::string why_kept(const std::string& file, bool force);

// Whether a MIDI file with tracks would hold every note, each on its own track. [main]
bool tracks_hold_all(const brisolan* x);

// Has the instance write the file, in place of any of that name. An empty string, or why it could not be. `console` is
// where the platform puts its console lines; it hears them itself meanwhile. [main]
std::string write_from(std::function<void(const std::string&)>& console, brisolan* x, const write_target& to);
