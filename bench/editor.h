// bench/editor.h: an open editor with many events, what it is asked to do, and the bare loops beside it.
// Bench layer; leans on the program's session. Included by the benchmarks of drawing and of editing.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "app/session.h"
#include "core/sequence.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"
#include "host/toolbox/font.h"
#include "host/toolbox/toolbox_host.h"
#include "view/format.h"
#include "view/geometry.h"
#include "view/scroll.h"
#include "view/selected.h"
#include "view/window.h"

namespace bench {

constexpr std::int32_t VIEW_MS = 13000;  // what the window shows at the first zoom
constexpr std::int32_t AWAY = 1'000'000; // milliseconds: far right of the window

// Values as music has them, times in order, from `from` on over so many milliseconds.
inline event* random_chain(std::int64_t n, std::int32_t from, std::int32_t over, unsigned seed = 7) {
    std::mt19937 dice(seed);
    std::uniform_int_distribution<std::int32_t> when(from, from + over);
    std::vector<std::int32_t> times(static_cast<std::size_t>(n));
    for (std::int32_t& t : times) t = when(dice);
    std::sort(times.begin(), times.end());
    event head;
    event* last = &head;
    for (const std::int32_t t : times) {
        const auto below = [&dice](unsigned m) { return static_cast<std::int32_t>(dice() % m); };
        event* e =
            brisolan_newevent({t, below(128), 1 + below(127), 50 + below(300), 1, 1 + below(32), 0, 0});
        last->next = e;
        last = e;
    }
    return head.next;
}

// An open editor with n events in its view, and others right of it.
class editor {
public:
    explicit editor(std::int64_t in_view, std::int64_t out_of_view = 0) {
        x = session.make();
        const atom open(host_symbol("open"));
        kel_message(x, std::array{open});
        kel_run_queue();
        if (in_view > 0) brisolan_linkchain(x, random_chain(in_view, 0, VIEW_MS));
        if (out_of_view > 0) brisolan_linkchain(x, random_chain(out_of_view, AWAY, AWAY, 8));
        x->editmode = 0;
        brisolan_remax(x);
        update();
    }
    void update() { kel_window_update(x->window); }
    // Whatever is queued is drawn with it.
    template <class Step> void edit(Step step) {
        SetPort(x->window->port);
        step();
        SetPort(nullptr);
        kel_run_queue();
    }
    void select_all() {
        edit([this] { brisolan_noselect(x); });
        edit([this] {
            for (event* e = x->events; e; e = e->next) brisolan_select(x, e);
        });
    }
    void unselect() {
        edit([this] { brisolan_noselect(x); });
    }

    headless_session session;
    brisolan* x = nullptr;
};

// The pixels of a bare bitmap as large as the window.
class bare_picture {
public:
    // Takes down the parts that the bars of the editor's events have, as they are now, in the data area: what is solid of
    // unselected ones, the outlines of selected ones, and the labels' glyphs.
    explicit bare_picture(const brisolan* x) : width(x->window->width), bitmap(pixels_of(x)) {
        brisolan_getdatarect(x, &data);
        for (const event* e = x->events; e; e = e->next) add_bar(x, *e);
    }
    void fill() {
        for (const part& p : parts) {
            for (int v = p.top; v < p.bottom; ++v) {
                std::uint32_t* row = bitmap.data() + v * width;
                for (int h = p.left; h < p.right; ++h) row[h] = p.colour;
            }
            for (std::uint8_t i = 0; i < p.glyphs; ++i) copy_glyph(p, i);
        }
    }
    std::size_t size() const { return parts.size(); }

private:
    struct part {
        std::int16_t left, top, right, bottom;
        std::uint32_t colour;
        std::array<std::uint8_t, 3> text; // drawn after the part, from text_left on
        std::uint8_t glyphs;
        std::int16_t text_left, text_top;
    };

    static std::size_t pixels_of(const brisolan* x) {
        return static_cast<std::size_t>(x->window->width) * static_cast<std::size_t>(x->window->height);
    }
    void add_part(int left, int top, int right, int bottom, std::uint32_t colour) {
        const auto in = [](int v, int low, int high) {
            return static_cast<std::int16_t>(std::clamp<int>(v, low, high));
        };
        parts.push_back({in(left, data.left, data.right),
                         in(top, data.top, data.bottom),
                         in(right, data.left, data.right),
                         in(bottom, data.top, data.bottom),
                         colour,
                         {},
                         0,
                         0,
                         0});
    }
    // Solid, or the four sides.
    void add(bool outline, int left, int top, int right, int bottom, std::uint32_t colour) {
        if (left >= right) return;
        if (!outline) {
            add_part(left, top, right, bottom, colour);
            return;
        }
        add_part(left, top, right, top + 1, colour);
        add_part(left, bottom - 1, right, bottom, colour);
        add_part(left, top + 1, left + 1, bottom - 1, colour);
        add_part(right - 1, top + 1, right, bottom - 1, colour);
    }
    void add_bar(const brisolan* x, const event& e) {
        const bool selected = e.selected != 0;
        const int half = YSIZE(x) + (selected ? 1 : 0);
        const int y = brisolan_valuetov(x, event_param(e, x->yparam));
        const int left = brisolan_timetoh(x, e.time);
        const int right = left + brisolan_barlength(x, &e);
        if (left > x->window->width) return;
        const auto colour = static_cast<std::uint32_t>(e.track.get());
        if (x->labelparam < 0) {
            add(selected, left, y - half, right, y + half, colour);
            return;
        }
        const std::int32_t value = event_param(e, x->labelparam);
        const int width_of_label = brisolan_labelwidth(false, value);
        const int box = std::min(left + 4 + width_of_label + 2, right);
        add(selected, left, y - half, left + 4, y + half, colour);
        add(selected, left + 4, y - half, box, y + half, 0xDDE2EAu);
        add(selected, box, y - half, right, y + half, colour);
        const std::string digits = std::to_string(value);
        part& last = parts.back();
        last.glyphs = static_cast<std::uint8_t>(std::min<std::size_t>(digits.size(), last.text.size()));
        std::copy_n(digits.begin(), last.glyphs, last.text.begin());
        last.text_left = static_cast<std::int16_t>(left + 5);
        last.text_top = static_cast<std::int16_t>(y + 4 - FONT_ASCENT);
        const bool inside = last.text_top >= 0 && last.text_top + FONT_HEIGHT <= x->window->height &&
                            last.text_left >= 0 && last.text_left + width_of_label <= x->window->width;
        if (!inside) last.glyphs = 0;
    }
    void copy_glyph(const part& p, std::uint8_t i) {
        const font_glyph& g = font_get(false).glyphs[p.text[i]];
        std::uint32_t* row = bitmap.data() + p.text_top * width + p.text_left + i * g.advance;
        for (const std::uint16_t bits : g.rows) {
            for (int h = 0; h < g.width; ++h) {
                if (bits & (0x8000u >> h)) row[h] = 0;
            }
            row += width;
        }
    }

    int width;
    Rect data{};
    std::vector<part> parts;
    std::vector<std::uint32_t> bitmap;
};

// The least that a walk over the list takes.
inline std::int64_t bare_walk(const brisolan* x) {
    std::int64_t sum = 0;
    for (const event* e = x->events; e; e = e->next) sum += e->time;
    return sum;
}

} // namespace bench
