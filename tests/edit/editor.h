// tests/edit/editor.h: an open editor window driven as a platform drives it.
// Test layer. Used by the edit room's tests.
#pragma once

#include "core/sequence.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"
#include "tests/support/host_test.h"

class editor_test : public object_test {
protected:
    void SetUp() override {
        object_test::SetUp();
        send("open");
        x->editmode = 0;
    }

    void settle() { kel_run_queue(); }
    int click(int h, int v, int modifiers = 0) {
        const int used = kel_window_click(x->window, at(h, v), modifiers);
        settle();
        return used;
    }
    void drag(int h, int v) {
        kel_drag_move(at(h, v));
        settle();
    }
    void release(int h = 0, int v = 0) {
        kel_drag_release(at(h, v));
        settle();
    }
    // The positions that the next press which tracks by itself will see.
    void hold(std::vector<Point> positions) {
        machine.held = std::move(positions);
        machine.held_at = 0;
    }
    template <host_name Command> void edit() {
        GrafPtr before = nullptr;
        GetPort(&before);
        SetPort(x->window->port);
        kel_private<Command>(x);
        SetPort(before);
        settle();
    }
    void paste(const std::string& text) {
        machine.clipboard = text;
        machine.has_clipboard = true;
        edit<"paste">();
    }
    // Pastes and deselects.
    void fill(const std::string& text) {
        paste(text);
        machine.clipboard.clear();
        edit<"paste">();
        lines.clear();
    }

    event* nth(std::int32_t n) { return brisolan_eventat(x, n); }
    param_record& param(int index) { return x->params[static_cast<std::size_t>(index)]; }
    std::vector<std::uint32_t> picture() const {
        const GrafPtr port = x->window->port;
        const std::uint32_t* pixels = toolbox_port_pixels(port);
        std::vector<std::uint32_t> copy;
        for (int v = 0; v < toolbox_port_height(port); ++v) {
            const std::uint32_t* row = pixels + v * toolbox_port_rowpixels(port);
            copy.insert(copy.end(), row, row + toolbox_port_width(port));
        }
        return copy;
    }
    static Point at(int h, int v) { return {static_cast<std::int16_t>(v), static_cast<std::int16_t>(h)}; }
};
