// A port to draw in, and its pixels as text art.
// Tests: leans on the toolbox.
// Called by the tests of the drawing verbs.
#pragma once

#include "host/toolbox/toolbox_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

constexpr uint32_t BLACK = 0xFF000000u;
constexpr uint32_t WHITE = 0xFFFFFFFFu;

inline Rect rect(int left, int top, int right, int bottom) {
    Rect r;
    SetRect(&r, left, top, right, bottom);
    return r;
}

inline Point point(int h, int v) {
    Point p;
    SetPt(&p, h, v);
    return p;
}

inline std::vector<unsigned char> pascal(const std::string& s) {
    std::vector<unsigned char> p{static_cast<unsigned char>(s.size())};
    p.insert(p.end(), s.begin(), s.end());
    return p;
}

// A test with a current port of 16 by 12 pixels, and the toolbox as new around it.
class canvas_test : public testing::Test {
protected:
    canvas_test() { open(16, 12); }
    ~canvas_test() override {
        toolbox_reset();
        toolbox_port_free(port);
    }

    void open(int width, int height) {
        toolbox_port_free(port);
        port = toolbox_port_new(width, height);
        SetPort(port);
    }

    uint32_t at(int h, int v) const {
        return toolbox_port_pixels(port)[v * toolbox_port_rowpixels(port) + h];
    }

    // # black, . white, ? any other colour; one line a row.
    std::string art() const {
        std::string out;
        for (int v = 0; v < toolbox_port_height(port); v++) {
            for (int h = 0; h < toolbox_port_width(port); h++) {
                out += at(h, v) == BLACK ? '#' : at(h, v) == WHITE ? '.' : '?';
            }
            out += '\n';
        }
        return out;
    }

    int count(uint32_t colour) const {
        const uint32_t* p = toolbox_port_pixels(port);
        return static_cast<int>(
            std::count(p, p + toolbox_port_width(port) * toolbox_port_height(port), colour));
    }

    GrafPtr port = nullptr;
};

inline void draw_string(const std::string& s, int h, int v) {
    MoveTo(h, v);
    DrawString(pascal(s).data());
}

inline int string_width(const std::string& s) {
    return StringWidth(pascal(s).data());
}

inline void foreground(uint32_t rgb) {
    auto wide = [](uint32_t byte) { return static_cast<uint16_t>((byte & 0xFF) * 0x101); };
    RGBColor c{wide(rgb >> 16), wide(rgb >> 8), wide(rgb)};
    RGBForeColor(&c);
}
