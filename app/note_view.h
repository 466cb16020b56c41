// app/note_view.h: what plays, on a terminal: a line that is written over, or plain lines where there is no terminal.
// Layer: program. A MIDI device among others; called by the commands that play.
#pragma once

#include <array>
#include <atomic>
#include <bitset>
#include <cstdint>
#include <string>

#include "host/boxes/midi_device.h"

// How the notes are shown.
enum class note_style {
    nothing,
    progress, // one line: position, total time, the notes that sound
    lines     // a line for each moment at which notes begin: its position and their names
};

// The style for standard error: a progress line where that is a terminal that can write over a line. [main]
note_style note_style_here(bool quiet);

// Shows on standard error what leaves through the note-out boxes between its making and its end.
class note_view {
public:
    explicit note_view(note_style style);
    ~note_view();
    note_view(const note_view&) = delete;
    note_view& operator=(const note_view&) = delete;

    // From now on position is counted: `from` milliseconds now, at `speed`, up to `length`. [main]
    void begin(std::int64_t from, double speed, std::int64_t length);

    // Shows what has been played since it was called last. [main]
    void draw();

    // Takes the progress line away, so that other lines can be written. [main]
    void clear();

private:
    struct played {
        std::int64_t at; // nanoseconds
        std::uint8_t channel;
        std::uint8_t pitch;
        bool on;
    };
    static constexpr std::size_t RING = 8192; // notes between two drawings; further ones are not shown

    static void hear(void* view, int port, int channel, int pitch, int velocity);
    void take();
    void print_moment();
    void draw_progress();
    std::int64_t position(std::int64_t at) const;

    note_style style;
    midi_device device;
    std::array<played, RING> ring{};
    std::atomic<std::size_t> in{0};
    std::atomic<std::size_t> out{0};

    // Main level.
    std::array<std::bitset<16>, 128> sounding{}; // by pitch, the channels
    std::int64_t moment = -1;                    // whose notes are gathered for a line, nanoseconds
    std::string moment_notes;
    std::string shown; // the progress line on the screen
    std::int64_t began = 0;
    std::int64_t from_ms = 0;
    std::int64_t length_ms = 0;
    double speed_now = 1;
};
