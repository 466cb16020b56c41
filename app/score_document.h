// app/score_document.h: a score being edited on the desktop: its patch, its file, what was last saved of it.
// Layer: program. Made by the editor; called by the desktop's windows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/edit_patch.h"
#include "host/desktop/desk.h"

// A zoom step of any score's window. [main]
void zoom_score(brisolan* x, desk_zoom way);

class score_document : public desk_document {
public:
    // `console` is where the platform puts its console lines, and must outlive the document; `number` tells untitled
    // documents apart.
    score_document(std::function<void(const std::string&)>& console, int number);

    // Makes the patch; then reads the file unless it is empty. An empty string, or why it cannot. [main]
    std::string start(const std::string& file);

    host_patcher* patcher() override { return patch.patcher(); }
    host_object* score() override { return patch.score(); }
    host_window* editor() override { return patch.score()->window; }
    const std::string& file() const override { return path; }
    std::string title() const override;
    bool unsaved() override;
    void remember() override;
    std::string save(const std::string& to) override;
    std::string export_midi(const std::string& to, int format, bool timecode) override;
    std::vector<std::string> lost_in(const std::string& to) override;
    bool keep_copy(const std::string& to) override;
    std::string take_copy(const std::string& from) override;

    std::string play(std::int64_t from) override;
    std::string step() override;
    std::string record() override;
    std::string follow(std::int64_t from) override;
    bool has_part() const override;
    void give_part(int track) override;
    void stop() override { patch.stop(); }
    void go_to(std::int64_t position) override;
    void set_speed(double speed) override { patch.set_speed(speed); }
    desk_transport transport() override;
    bool empty() const override { return !patch.score()->events; }
    int nselected() const override;
    std::int64_t nnotes() const override { return patch.score()->nevents; }

    void zoom(desk_zoom way) override { zoom_score(patch.score(), way); }
    void frame_values() override;
    void show_all() override;
    void scroll_to(std::int64_t position) override;
    int tool() const override { return patch.score()->editmode; }
    void set_tool(int tool) override;
    int role(int parameter) const override;
    void set_role(int parameter, int role) override;
    std::string parameter_name(int parameter) const override;
    std::vector<desk_track> tracks() override;
    void show_track(int number, bool shown) override;
    bool note_names() const override { return patch.score()->params[PARAM_PITCH].notenames != 0; }
    void set_note_names(bool on) override;
    bool black_keys() const override { return patch.score()->show_sharps != 0; }
    void set_black_keys(bool on) override;

private:
    std::uint64_t state_now() const; // a digest of what its kind of file stands for
    bool is_midi() const;

    std::function<void(const std::string&)>& console;
    edit_patch patch;
    int number;
    std::string path;
    bool from_copy = false; // never saved since it was taken from a copy
    bool known = false;     // whether `saved` is
    std::uint64_t saved = 0;
    std::uint64_t copied = 0; // score_digest of the copy written last
    std::uint64_t fresh = 0;  // descriptions_digest of a new score
    std::vector<std::string>
        rest; // what the MIDI file that was opened holds beside notes, until another is written

    // The length as of these counts; for edits in place it is looked up anew every second as well.
    std::int64_t length = 0;
    std::int32_t length_events = -1;
    std::uint32_t length_relinked = 0;
    std::int64_t length_at = 0;
};
