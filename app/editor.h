// app/editor.h: the program behind the desktop's windows: the running host, its documents, its devices.
// Layer: program. Made by the editor's main; called by the desktop's windows.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "app/devices.h"
#include "app/live.h"
#include "host/desktop/desk.h"

class editor : public desk_program {
public:
    // Starts the host in real time on a machine with these windows and dialogs. One at a time. [main]
    explicit editor(const host_platform& machine);
    ~editor() override;
    editor(const editor&) = delete;
    editor& operator=(const editor&) = delete;

    int wake_fd() const override { return live_session::wake_fd(); }
    void turn() override { session.wait(0); }
    int signal() const override { return session.signal(); }
    std::vector<std::string> console() override;

    std::unique_ptr<desk_document> make(std::string& why) override;
    std::unique_ptr<desk_document> open(const std::string& file, std::string& why) override;

    bool is_patch(const std::string& file) override;
    std::unique_ptr<desk_patch> open_patch(const std::string& file, std::string& why) override;
    std::string state_of(host_object* score) override;
    void set_tool(host_object* score, int tool) override;
    void zoom(host_object* score, desk_zoom way) override;

    std::vector<desk_port> inputs() override;
    std::vector<desk_port> outputs() override;
    std::string why_no_input() override;
    std::string choose_input(const std::string& name) override;
    std::string choose_output(const std::string& name) override;
    bool synth() const override { return sound != nullptr; }
    std::string set_synth(bool on) override;
    bool hears_input() const override { return hearing; }
    void set_hears_input(bool on) override { hearing = on; }
    std::string why_no_midi() override;
    void panic() override;
    void poll() override;

private:
    static void came_in(void* editor, std::int32_t place, std::int32_t key);

    live_session session;
    std::atomic<bool> hearing{false};
    std::vector<std::string> lines;
    int made = 0;
    std::string input_name;
    std::string output_name;
    std::unique_ptr<note_outputs> port;
    std::unique_ptr<note_outputs> sound;
    std::unique_ptr<note_input> input;
};
