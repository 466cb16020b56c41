// The rasteriser's slow twin: every verb drawn one pixel at a time, each pixel asking whether it is wanted.
// Tests: leans on the toolbox's headers for glyphs and pictures, on none of its drawing code.
// Called by the random comparison.
#pragma once

#include "host/toolbox/font.h"
#include "host/toolbox/resources.h"
#include "host/toolbox/toolbox_host.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

struct slow_twin {
    int width, height;
    std::vector<uint32_t> pixels;
    std::vector<bool> clip; // a bit for each pixel
    uint32_t fore = 0xFF000000u, back = 0xFFFFFFFFu;
    int mode = patCopy, text_mode = srcOr, face = kFacePlain;
    int pen_width = 1, pen_height = 1;
    Pattern pattern{{255, 255, 255, 255, 255, 255, 255, 255}};

    slow_twin(int w, int h)
        : width(w), height(h), pixels(static_cast<size_t>(w * h), 0xFFFFFFFFu),
          clip(static_cast<size_t>(w * h), true) {}

    size_t index(int h, int v) const { return static_cast<size_t>(v * width + h); }
    bool open(int h, int v) const { return h >= 0 && v >= 0 && h < width && v < height && clip[index(h, v)]; }

    static uint32_t least(uint32_t a, uint32_t b) {
        uint32_t out = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            out |= std::min(a >> shift & 0xFF, b >> shift & 0xFF) << shift;
        }
        return out;
    }

    static uint32_t mixed(int m, bool set, uint32_t f, uint32_t b, uint32_t was) {
        if (m == patOr) return set ? f : was;
        if (m == patBic) return set ? b : was;
        if (m == patXor) return set ? (was ^ ~f) | 0xFF000000u : was;
        if (m == adMin) return least(set ? f : b, was);
        return set ? f : b;
    }

    void pen_pixel(int h, int v) {
        if (!open(h, v)) return;
        bool set = (pattern.pat[v % 8] & (128 >> h % 8)) != 0;
        uint32_t& p = pixels[index(h, v)];
        p = mixed(mode, set, fore, back, p);
    }

    template <class Wanted> void sweep(Wanted wanted) {
        for (int v = 0; v < height; v++) {
            for (int h = 0; h < width; h++) {
                if (wanted(h, v)) pen_pixel(h, v);
            }
        }
    }

    static bool in(const Rect& r, int h, int v) {
        return h >= r.left && h < r.right && v >= r.top && v < r.bottom;
    }

    void paint(const Rect& r) {
        sweep([&](int h, int v) { return in(r, h, v); });
    }

    void erase(const Rect& r) {
        for (int v = 0; v < height; v++) {
            for (int h = 0; h < width; h++) {
                if (in(r, h, v) && open(h, v)) pixels[index(h, v)] = back;
            }
        }
    }

    // A pixel of the rectangle from which the pen's size reaches out of it.
    void frame(const Rect& r) {
        if (pen_width < 1 || pen_height < 1) return;
        sweep([&](int h, int v) {
            bool deep = h >= r.left + pen_width && h < r.right - pen_width && v >= r.top + pen_height &&
                        v < r.bottom - pen_height;
            return in(r, h, v) && !deep;
        });
    }

    // Every place of the pen along the line, upper end first.
    void line(Point a, Point b) {
        if (pen_width < 1 || pen_height < 1) return;
        if (a.v > b.v) std::swap(a, b);
        int dh = b.h - a.h, dv = b.v - a.v, steps = std::max(std::abs(dh), dv);
        std::vector<bool> wanted(pixels.size());
        for (int i = 0; i <= steps; i++) {
            auto part = [&](int d) {
                return steps == 0 ? 0 : static_cast<int>(std::lround(1.0 * i * d / steps));
            };
            int h = a.h + part(dh), v = a.v + part(dv);
            for (int y = v; y < v + pen_height; y++) {
                for (int x = h; x < h + pen_width; x++) {
                    if (x >= 0 && y >= 0 && x < width && y < height) wanted[index(x, y)] = true;
                }
            }
        }
        sweep([&](int h, int v) { return wanted[index(h, v)]; });
    }

    void text(const std::string& s, int left, int baseline) {
        const font_strike& strike = font_get(face & kFaceBold);
        int total = 0;
        for (unsigned char c : s) total += strike.glyphs[c].advance;
        int m = text_mode == srcXor   ? patXor
                : text_mode == srcBic ? patBic
                : text_mode == adMin  ? adMin
                                      : patCopy;
        if (m == patCopy && text_mode != srcOr) {
            Rect box;
            SetRect(&box, left, baseline - FONT_ASCENT, left + total, baseline + FONT_DESCENT);
            erase(box);
        }
        for (unsigned char c : s) {
            const font_glyph& g = strike.glyphs[c];
            for (int row = 0; row < FONT_HEIGHT; row++) {
                for (int column = 0; column < 16; column++) {
                    if (!(g.rows[static_cast<size_t>(row)] & (0x8000 >> column))) continue;
                    int h = left + column, v = baseline - FONT_ASCENT + row;
                    if (open(h, v)) pixels[index(h, v)] = mixed(m, true, fore, back, pixels[index(h, v)]);
                }
            }
            left += g.advance;
        }
    }

    void picture(PicHandle picture, const Rect& dst) {
        int w = picture->bounds.right, h = picture->bounds.bottom;
        for (int y = std::max<int>(dst.top, 0); y < std::min<int>(dst.bottom, height); y++) {
            for (int x = std::max<int>(dst.left, 0); x < std::min<int>(dst.right, width); x++) {
                int from_x = (x - dst.left) * w / (dst.right - dst.left);
                int from_y = (y - dst.top) * h / (dst.bottom - dst.top);
                uint32_t colour = picture->pixels[static_cast<size_t>(from_y * w + from_x)];
                if (colour != 0 && open(x, y)) pixels[index(x, y)] = colour;
            }
        }
    }
};
