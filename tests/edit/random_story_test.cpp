// tests/edit/random_story_test.cpp: long random stories of editing, with what always holds checked after every step.
// Test layer.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <sstream>

#include "core/check.h"
#include "host/kernel/windows.h"
#include "host/toolbox/toolbox_host.h"
#include "tests/support/host_test.h"
#include "view/geometry.h"

namespace {

constexpr int STEPS = 1000;
constexpr unsigned STORIES = 12;   // unless BRISOLAN_STORIES tells how many
constexpr int LOOKED_AT_EVERY = 5; // steps
constexpr int EVENT_LIMIT = 400;   // a story that has grown beyond this is thinned out

using values = std::array<std::int32_t, NPARAMS>;

values values_of(const event& e) {
    values v{};
    for (int i = 0; i < NPARAMS; ++i) v[static_cast<std::size_t>(i)] = event_param(e, i);
    return v;
}

// Draws the lines of a story; knows the instance only to aim at what is on screen.
class storyteller {
public:
    explicit storyteller(unsigned seed) : dice(seed) {}

    std::string next(const brisolan* x) {
        if (x->nevents > EVENT_LIMIT) return chance(2) ? ":edit selectall" : ":key 8";
        switch (number(0, 19)) {
        case 0:
        case 1:
        case 2:
        case 3: return press_on_event(x);
        case 4:
        case 5: return press_anywhere(x);
        case 6:
        case 7:
        case 8:
        case 9:
        case 10:
            if (chance(12)) return under_a_drag();
            return chance(6) ? drag_a_little() : text(":drag", anywhere(x));
        case 11:
        case 12: return chance(2) ? ":release" : text(":release", anywhere(x));
        case 13:
        case 14: return text(":key", one_of({8, 13, 28, 28, 29, 29, 30, 30, 31, 31, 48, 57, 7, 65544}));
        case 15:
        case 16: return edit_command();
        case 17: return window_matter(x);
        case 18: return press_on_panel(x);
        default: return message();
        }
    }

private:
    int number(int least, int most) {
        if (most < least) return least; // a window too small for what is aimed at
        return std::uniform_int_distribution<int>(least, most)(dice);
    }
    bool chance(int in) { return number(1, in) == 1; }
    template <class T> T one_of(std::initializer_list<T> of) {
        return of.begin()[number(0, static_cast<int>(of.size()) - 1)];
    }
    template <class... A> static std::string text(const A&... parts) {
        std::ostringstream out;
        const char* blank = "";
        ((out << blank << parts, blank = " "), ...);
        return out.str();
    }

    std::string anywhere(const brisolan* x) {
        return text(number(-20, x->window->width + 20), number(-20, x->window->height + 20));
    }
    std::string keys() {
        std::string all;
        for (const char* name : {" shift", " command", " option", " control"}) {
            if (chance(6)) all += name;
        }
        return all;
    }
    std::string press_on_event(const brisolan* x) {
        if (x->nevents == 0) return text(":click", number(48, 500), number(62, 320)) + keys();
        const event* e = x->events;
        for (int n = number(0, x->nevents - 1); n > 0; --n) e = e->next;
        const std::int64_t zoom = std::max(x->xzoom, 1);
        const std::int64_t h = 48 + std::int64_t{e->time} * 8 / zoom - x->window->hscroll_value * 16;
        const std::int64_t yzoom = std::max(x->yzoom, 1);
        const param_record& p = x->params[static_cast<std::size_t>(x->yparam)];
        const std::int64_t height = (std::int64_t{p.max} - p.min + 1) * 8 / yzoom;
        const std::int64_t v =
            height + 64 - event_param(*e, x->yparam) * std::int64_t{8} / yzoom - x->window->vscroll_value;
        if (h < 0 || h > 2000 || v < 0 || v > 2000) return press_anywhere(x);
        return text(":click", h + number(0, 20), v) + keys();
    }
    std::string press_anywhere(const brisolan* x) { return text(":click", anywhere(x)) + keys(); }
    std::string drag_a_little() { return text(":drag", number(40, 600), number(55, 390)); }
    // What a person does not do with the button down, but a patch may.
    std::string under_a_drag() {
        return one_of({"wclose", "wclose", "open", ":update", "clear", ":edit cut", ":edit selectall"});
    }
    // Legend values and names, roles, palette, zoom box, track buttons, scroll bars.
    std::string press_on_panel(const brisolan* x) {
        const int w = x->window->width;
        const int h = x->window->height;
        switch (number(0, 7)) {
        case 0: return text(":hold", number(48, w), number(-200, 200), number(48, w), number(-200, 200));
        case 1: return text(":choose", number(0, 8));
        case 2:
        case 3: return text(":click", number(48, w), number(0, 19));
        case 4: return text(":click", number(0, 47), number(0, 39));
        case 5: return text(":click", number(0, 60), number(h - 15, h));
        case 6: return text(":click", number(34, w), number(h - 30, h - 15)) + keys();
        default: return text(":click", number(w - 15, w), number(0, h));
        }
    }
    std::string edit_command() {
        if (chance(3)) return text(":clipboard", clipboard_text());
        return text(":edit", one_of({"cut", "copy", "paste", "paste", "paste", "clr", "selectall"}));
    }
    std::string clipboard_text() {
        std::string lines = "\"";
        for (int n = number(0, 12); n > 0; --n) {
            lines += text(number(0, chance(4) ? 200000 : 6000), number(0, 127));
            for (int more = number(0, 6); more > 0; --more) {
                lines += chance(20) ? " -2147483648" : text("", number(-5, 800));
            }
            lines += chance(20) ? "\\n" : "\\r";
        }
        return lines + "\"";
    }
    std::string window_matter(const brisolan* x) {
        switch (number(0, 6)) {
        case 0: return text(":resize", number(1, 900), number(1, 700));
        case 1: return ":resize 600 400";
        case 2: return ":update";
        case 3: return text(":pointer", anywhere(x)) + keys();
        case 4: return ":pointer out";
        case 5: return chance(3) ? "wclose" : "open";
        default: return "open";
        }
    }
    std::string message() {
        switch (number(0, 15)) {
        case 0: return chance(4) ? "clear" : "stop";
        case 1: return "start";
        case 2: return chance(3) ? "record" : "next";
        case 3: return text("follow", number(0, 10));
        case 4: return text(":in 2", number(0, 1) * 64);
        case 5: return text(":in 1", number(50, 70));
        case 6:
        case 7: return text(number(0, 100), number(50, 70), number(0, 1) * 64);
        case 8: return text(":wait", number(0, 50));
        case 9: return text("delay", number(0, 5000));
        case 10: return text("mute 1", number(50, 70), 1);
        case 11:
        case 12: return setparam();
        default: return text("nth", number(0, 10));
        }
    }
    // Mostly roles and bounds that make sense, sometimes ones that do not.
    std::string setparam() {
        static const std::array<const char*, NPARAMS> usual{
            "0 999999 0 1000 200", "0 127 60 12 4", "0 127 64 12 4", "1 99999 200 800 200",
            "1 16 1 8 1",          "1 32 1 8 1",    "0 999 0 80 20", "0 999 0 80 20"};
        static const std::array<const char*, 4> odd{"100 20 300 0 0", "-2147483648 2147483647 0 1 1",
                                                    "-50 50 0 -7 -4", "5 5 5 2147483647 2147483647"};
        const int index = number(0, NPARAMS - 1);
        const char* bounds =
            chance(4) ? odd[static_cast<std::size_t>(number(0, 3))] : usual[static_cast<std::size_t>(index)];
        const int display = number(0, 5) + (chance(8) ? 256 * number(-2, 2) : 0); // counts by its low 8 bits
        return text("setparam", index, "P", display, bounds, number(0, 1));
    }

    std::mt19937 dice;
};

class random_story : public script_test, public testing::WithParamInterface<unsigned> {
protected:
    // Whether what the step changes in an event is held in its parameter's range: by a drag or a key, and by a number
    // field, which a press in the legend strip drags at once.
    static bool by_offset(const std::string& line) {
        return line.starts_with(":drag") || line.starts_with(":key");
    }
    static bool by_number_field(const std::string& line) {
        int h = 0;
        int v = 0;
        return std::sscanf(line.c_str(), ":click %d %d", &h, &v) == 2 && v >= 0 && v < 20;
    }
    std::map<const event*, values> snapshot() {
        std::map<const event*, values> all;
        for (const event* e = x()->events; e; e = e->next) all[e] = values_of(*e);
        return all;
    }
    void expect_changes_in_range(const std::map<const event*, values>& before, bool time_too) {
        for (const event* e = x()->events; e; e = e->next) {
            const auto was = before.find(e);
            if (was == before.end()) continue;
            for (int i = 0; i < NPARAMS; ++i) {
                const std::int32_t now = event_param(*e, i);
                const param_record& p = x()->params[static_cast<std::size_t>(i)];
                if (now == was->second[static_cast<std::size_t>(i)] || p.min > p.max) continue;
                if (i == PARAM_TIME && !time_too) {
                    EXPECT_GE(now, 0);
                } else {
                    EXPECT_GE(now, p.min) << "parameter " << i;
                    EXPECT_LE(now, p.max) << "parameter " << i;
                }
            }
        }
    }
    std::vector<std::uint32_t> pixels() {
        const GrafPtr port = x()->window->port;
        std::vector<std::uint32_t> all;
        for (int v = 0; v < toolbox_port_height(port); ++v) {
            const std::uint32_t* row = toolbox_port_pixels(port) + v * toolbox_port_rowpixels(port);
            all.insert(all.end(), row, row + toolbox_port_width(port));
        }
        return all;
    }
    // Left of the data area and below it the window always looks as if it were drawn on white just now. Elsewhere it need
    // not: lines of the grid that an erasing draws reach over its neighbours, and texts follow what moves under them late.
    void expect_drawn_around_the_data() {
        host_window* w = x()->window;
        // In a tiny window one thing lies over another.
        if (!w->visible || kel_drag_window() || w->width < 100 || w->height < 100) return;
        const std::vector<std::uint32_t> before = pixels();
        toolbox_port_resize(w->port, 0, 0);
        toolbox_port_resize(w->port, w->width, w->height);
        run(":update");
        const std::vector<std::uint32_t> after = pixels();
        Rect data;
        brisolan_getdatarect(x(), &data);
        const int below = std::max(data.bottom, data.top);
        for (std::size_t i = 0; i < after.size(); ++i) {
            const int h = static_cast<int>(i) % w->width;
            const int v = static_cast<int>(i) / w->width;
            // The name in front of the buttons follows "setparam" late, and a press on the zoom box that was cut off by
            // another one leaves it dark.
            const bool elsewhere = (h >= data.left && v < below) || (h < 60 && v >= w->height - 30);
            ASSERT_TRUE(before[i] == after[i] || elsewhere) << h << ", " << v;
        }
    }
};

TEST_P(random_story, keeps_what_always_holds) {
    std::printf("seed %u\n", GetParam());
    storyteller teller(GetParam());
    std::string story;
    int ordered = 0;
    run("open\n:clipboard \"0 60 64 500\\r500 64 64 500\\r1000 67 64 500\\r\"\n:edit paste");
    for (int step = 0; step < STEPS; ++step) {
        const std::string line = teller.next(x());
        story += line + "\n";
        const auto before = snapshot();
        run(line);
        const char* broken = brisolan_brokeninvariant(x());
        if (by_offset(line) || by_number_field(line)) expect_changes_in_range(before, by_number_field(line));
        const bool tweaks = x()->dragkind >= 1 && x()->dragkind <= 3;
        if (step % LOOKED_AT_EVERY == 0) expect_drawn_around_the_data();
        EXPECT_TRUE(tweaks || !toolbox_cursor_hidden()) << "the pointer is hidden and no tweak drag runs";
        ordered += x()->unordered == 0;
        ASSERT_FALSE(broken || HasFailure()) << (broken ? broken : "") << "\nafter the story\n" << story;
    }
    EXPECT_GT(ordered, 0) << "the order of the list was never looked at";
}

unsigned wanted_stories() {
    const char* wanted = std::getenv("BRISOLAN_STORIES");
    return wanted ? static_cast<unsigned>(std::atoi(wanted)) : STORIES;
}

INSTANTIATE_TEST_SUITE_P(seeds, random_story, testing::Range(1U, wanted_stories() + 1));

} // namespace
