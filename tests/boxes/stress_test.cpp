// tests/boxes/stress_test.cpp: everything at once, in real time: scores play, record and follow on the scheduler's thread
// while the main level edits by random gestures, clears, imports, saves, and opens and closes the windows.
// Test layer. BRISOLAN_STRESS_SECONDS tells how long; one second without it.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stop_token>
#include <thread>

#include <unistd.h>

#include "app/live.h"
#include "app/session.h"
#include "core/check.h"
#include "host/boxes/boxes.h"
#include "host/boxes/midi_device.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/patchfile.h"
#include "host/kernel/windows.h"
#include "tests/support/scratch_folder.h"

namespace {

// What plays is recorded by the second score and followed by the third.
constexpr const char* patch_text =
    "#N brisolan played; #N delay; #N message next; #N brisolan recorded; #N timer; #N brisolan followed;\n"
    "#N makenote 100 20; #N noteout;\n"
    "#P cord 0 0 1 0; #P cord 1 0 2 0; #P cord 2 0 0 0;\n"
    "#P cord 0 1 6 0; #P cord 0 2 6 1; #P cord 0 3 6 2; #P cord 6 0 7 0; #P cord 6 1 7 1;\n"
    "#P cord 6 0 3 1; #P cord 6 0 4 0; #P cord 6 1 3 2; #P cord 4 0 3 0;\n"
    "#P cord 6 0 5 1; #P cord 6 0 5 0; #P cord 6 1 5 2;\n";

constexpr std::int32_t MOST_EVENTS = 2000;

class stress {
public:
    explicit stress(unsigned seed) : dice(seed) {
        session.print = [](const std::string&) {};
        load_brisolan();
        boxes_load();
        patcher = kel_patcher_new();
        if (!kel_patch_parse(patcher, patch_text, "stress")) std::abort();
        const std::vector<kel_box>& boxes = kel_patcher_patch(patcher).boxes;
        scores = {static_cast<brisolan*>(boxes[0].object), static_cast<brisolan*>(boxes[3].object),
                  static_cast<brisolan*>(boxes[5].object)};
        for (brisolan* x : scores) send(x, "read", {atom(host_symbol(piece))});
        kel_run_queue();
        midi_device_add(&device);
    }
    ~stress() {
        midi_device_remove(&device);
        kel_patcher_free(patcher);
    }
    stress(const stress&) = delete;
    stress& operator=(const stress&) = delete;

    void step() {
        brisolan* const x = scores[static_cast<std::size_t>(number(0, 2))];
        if (x->nevents > MOST_EVENTS) send(x, "clear");
        switch (number(0, 15)) {
        case 0:
        case 1: send(scores[0], "start"); break;
        case 2: send(scores[1], chance(4) ? "stop" : "record"); break;
        case 3: send(scores[2], chance(4) ? "stop" : "follow"); break;
        case 4: send(x, chance(4) ? "wclose" : "open"); break;
        case 5: send(x, "read", {atom(host_symbol(piece))}); break;
        case 6: save(x); break;
        case 7: send(x, chance(4) ? "clear" : "delay", {atom(number(0, 500))}); break;
        case 8:
        case 9: edit(x); break;
        case 10:
            kel_window_key(x->window, std::array{8, 28, 29, 30, 31}[static_cast<std::size_t>(number(0, 4))]);
            break;
        case 11: kel_window_resize(x->window, number(100, 700), number(80, 500)); break;
        default: gesture(x); break;
        }
        session.wait(number(0, 2));
    }

    // Between two callbacks of the scheduler, everything that always holds does.
    void check() const {
        const host_locked_out now;
        for (const brisolan* x : scores) brisolan_checkinvariants(x);
    }

    std::int64_t heard() const { return notes.load(std::memory_order_relaxed); }

private:
    static constexpr const char* piece = BRISOLAN_SOURCE_DIR "/examples/prelude-in-c.mid";

    int number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(dice); }
    bool chance(int in) { return number(1, in) == 1; }

    static void send(brisolan* x, const char* selector, std::initializer_list<atom> arguments = {}) {
        kel_send(x, host_symbol(selector), {arguments.begin(), arguments.size()});
    }
    void save(brisolan* x) {
        if (chance(3))
            return send(x, "export", {atom(host_symbol("stress.mid")), atom(0), atom(number(0, 1))});
        x->window->save_format = static_cast<std::uint8_t>(number(0, 1));
        kel_private<"saveto">(x, "stress.kel", host_default_path());
    }
    void edit(brisolan* x) {
        const kel_in_port current(x->window);
        switch (number(0, 4)) {
        case 0: kel_private<"selectall">(x); break;
        case 1: kel_private<"copy">(x); break;
        case 2: kel_private<"paste">(x); break;
        case 3: kel_private<"cut">(x); break;
        default: kel_private<"clr">(x); break;
        }
    }
    Point anywhere() {
        Point p;
        p.h = static_cast<std::int16_t>(number(-10, 620));
        p.v = static_cast<std::int16_t>(number(-10, 420));
        return p;
    }
    void gesture(brisolan* x) {
        constexpr int SHIFT = 512;
        kel_window_click(x->window, anywhere(), chance(3) ? SHIFT : 0);
        for (int n = number(0, 5); n > 0; --n) {
            session.wait(0);
            kel_drag_move(anywhere());
        }
        kel_drag_release(anywhere());
    }

    static void hear(void* s, int, int, int, int) {
        static_cast<stress*>(s)->notes.fetch_add(1, std::memory_order_relaxed);
    }

    std::mt19937 dice;
    live_session session;
    host_patcher* patcher = nullptr;
    std::array<brisolan*, 3> scores{};
    std::atomic<std::int64_t> notes{0};
    midi_device device{this, hear};
};

// Ends the program, with its seed printed and a core to look at, before it takes the whole machine down.
class memory_watch {
public:
    memory_watch() = default;

private:
    static std::int64_t resident() {
        std::ifstream in("/proc/self/statm");
        std::int64_t all = 0;
        std::int64_t pages = 0;
        in >> all >> pages;
        return pages * sysconf(_SC_PAGESIZE);
    }
    static void watch(const std::stop_token& over) {
        constexpr std::int64_t MOST = std::int64_t{3} << 30;
        constexpr std::chrono::milliseconds EVERY{100};
        for (; !over.stop_requested(); std::this_thread::sleep_for(EVERY)) {
            if (resident() < MOST) continue;
            std::fprintf(stderr, "the stress takes more than 3 GB\n");
            std::abort();
        }
    }

    std::jthread watcher{watch};
};

TEST(real_time_stress, everything_at_once_keeps_what_always_holds) {
    const scratch_folder here(true);
    const char* const told = std::getenv("BRISOLAN_STRESS_SECONDS");
    const kel_time seconds = told ? std::atoi(told) : 1;
    std::random_device seeds;
    const unsigned seed = seeds();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::printf("seed %u\n", seed); // before anything can go wrong
    std::fflush(stdout);
    const memory_watch watch;
    stress s(seed);
    constexpr kel_time NS_PER_SECOND = 1000 * NS_PER_MS;
    constexpr int STEPS_BETWEEN = 20;
    int steps = 0;
    while (kel_now() < seconds * NS_PER_SECOND) {
        for (int i = 0; i < STEPS_BETWEEN; ++i, ++steps) s.step();
        s.check();
    }
    std::printf("%d steps, %lld notes heard\n", steps, static_cast<long long>(s.heard()));
    EXPECT_GT(steps, 0);
    EXPECT_GT(s.heard(), 0);
}

} // namespace
