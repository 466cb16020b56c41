// host/desktop/desk.h: what the desktop's windows ask of the program behind them: documents, playing, devices.
// Layer: interface of the desktop platform; knows no Qt.
// Implemented by the editor in app/; called by the windows of host/desktop/, all of it at main level.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/platform.h"

enum class desk_mode { idle, playing, recording, following };

// What a transport bar shows. Times in milliseconds of the score.
struct desk_transport {
    desk_mode mode = desk_mode::idle;
    std::int64_t position = 0;
    std::int64_t length = 0; // when the last note ends
    double speed = 1;
    std::int32_t line =
        -1; // where the position lies in the editor's picture, its pixel column; -1: out of sight
    std::int32_t line_top = 0;
    std::int32_t line_bottom = 0;
};

// A track that notes are on or that is hidden.
struct desk_track {
    int number = 1;
    bool shown = true;
};

enum class desk_zoom { time_out, time_in, value_out, value_in };

// One document: a score in a patch of its own, or a whole patch. What can fail gives one line that says why, else an
// empty string.
class desk_document {
public:
    virtual ~desk_document() = default;

    virtual host_patcher* patcher() = 0;
    virtual host_object* score() = 0; // null: a patch without one
    virtual host_window* editor() = 0;

    // Where it was read from or last saved; empty: nowhere yet.
    virtual const std::string& file() const = 0;
    // A short name for titles.
    virtual std::string title() const = 0;
    // Whether the score is another than the one last saved or read, by what its kind of file could hold or not.
    virtual bool unsaved() = 0;
    // To be called before anything may change the document, and when there is nothing else to do.
    virtual void remember() = 0;

    // Writes the document, its kind told by the name's ending, and is from then on that file's. The old file stands when
    // it fails.
    virtual std::string save(const std::string& to) = 0;
    // Writes a MIDI file beside, the document staying whose it is: format 0 or 1, times by the metre or (timecode) to the
    // millisecond.
    virtual std::string export_midi(const std::string& to, int format, bool timecode) = 0;
    // What of the document, and of the file that it was read from, a file of this name would not hold, each thing in a few
    // words; empty: it would hold everything.
    virtual std::vector<std::string> lost_in(const std::string& to) = 0;
    // Writes a copy that can be read again after a crash, unless the last one is still true. False when it failed.
    virtual bool keep_copy(const std::string& to) = 0;
    // Takes the notes of such a copy; the document is then unsaved.
    virtual std::string take_copy(const std::string& from) = 0;

    // Playing begins at a position in milliseconds; below 0: at the first selected note. Recording replaces what there is.
    virtual std::string play(std::int64_t from) = 0;
    virtual std::string step() = 0; // plays the note at the position and goes on to the next
    virtual std::string record() = 0;
    virtual std::string follow(std::int64_t from) = 0;
    // Whether notes are the player's, which are those on channel 1; makes those of a track it.
    virtual bool has_part() const = 0;
    virtual void give_part(int track) = 0;
    virtual void stop() = 0;
    virtual void go_to(std::int64_t position) = 0; // while idle
    virtual void set_speed(double speed) = 0;
    virtual desk_transport transport() = 0;
    virtual bool empty() const = 0;
    virtual int nselected() const = 0;
    virtual std::int64_t nnotes() const = 0;

    // The editor's own settings.
    virtual void zoom(desk_zoom way) = 0;
    // Rows as high as they can be with all of the notes' values in sight; the whole score in sight, in time as well.
    virtual void frame_values() = 0;
    virtual void show_all() = 0;
    // Scrolls so that a position, milliseconds, is at the picture's left.
    virtual void scroll_to(std::int64_t position) = 0;
    virtual int tool() const = 0; // 0 arrow, 1 magnifier, 2 tweak, 3 pencil
    virtual void set_tool(int tool) = 0;
    virtual int role(int parameter) const = 0; // 0 none, 1 time axis, 2 vertical axis, 3 label, 4 length
    virtual void set_role(int parameter, int role) = 0;
    virtual std::string parameter_name(int parameter) const = 0;
    virtual std::vector<desk_track> tracks() = 0;
    virtual void show_track(int number, bool shown) = 0;
    virtual bool note_names() const = 0; // pitches are written as names
    virtual void set_note_names(bool on) = 0;
    virtual bool black_keys() const = 0; // notes on black keys are marked
    virtual void set_black_keys(bool on) = 0;
};

// A MIDI port to choose.
struct desk_port {
    std::string name; // unique among its list
    bool chosen = false;
};

// A patch that is open by itself.
class desk_patch {
public:
    virtual ~desk_patch() = default;
    virtual host_patcher* patcher() = 0;
    // Where it was read from or last saved.
    virtual const std::string& file() const = 0;
    // Writes it, its form told by the name's ending, and is from then on that file's; why it could not.
    virtual std::string save(const std::string& to) = 0;
};

class desk_program {
public:
    virtual ~desk_program() = default;

    // Becomes readable when the main level has something to do; turn() then does it.
    virtual int wake_fd() const = 0;
    virtual void turn() = 0;
    // The signal that asks the program to end; 0: none came.
    virtual int signal() const = 0;
    // The console's lines since the last call, each with "post " or "error " in front.
    virtual std::vector<std::string> console() = 0;

    // A new, empty document; the one in a file. Null, and why in one line, when it cannot be.
    virtual std::unique_ptr<desk_document> make(std::string& why) = 0;
    virtual std::unique_ptr<desk_document> open(const std::string& file, std::string& why) = 0;

    // Whether a file holds a patch rather than a score; the patch in it, running.
    virtual bool is_patch(const std::string& file) = 0;
    virtual std::unique_ptr<desk_patch> open_patch(const std::string& file, std::string& why) = 0;
    // What a score has to tell of itself, in a few words.
    virtual std::string state_of(host_object* score) = 0;
    // A score in such a patch: its tool and its zoom, as of a document.
    virtual void set_tool(host_object* score, int tool) = 0;
    virtual void zoom(host_object* score, desk_zoom way) = 0;

    // Devices. choose_…: an empty name means none; gives why it cannot be.
    virtual std::vector<desk_port> inputs() = 0;
    virtual std::vector<desk_port> outputs() = 0;
    virtual std::string why_no_input() = 0; // why no note can come in, and what to do; empty: notes can
    virtual std::string choose_input(const std::string& name) = 0;
    virtual std::string choose_output(const std::string& name) = 0;
    virtual bool synth() const = 0;
    virtual std::string set_synth(bool on) = 0;
    // Whether notes that come in are heard at once.
    virtual bool hears_input() const = 0;
    virtual void set_hears_input(bool on) = 0;
    virtual std::string why_no_midi() = 0; // empty: there is a MIDI system
    virtual void panic() = 0;              // ends every note, on every channel
    virtual void poll() = 0;               // about once a second
};
