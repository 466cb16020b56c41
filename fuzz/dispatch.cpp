// fuzz/dispatch.cpp: any message with any atoms, in any state: the bytes choose selectors, mostly the score's own, atoms of
// every type, inlets, presses, keys and waits.
// Fuzz layer; leans on the headless host.
#include <array>
#include <bit>
#include <string>
#include <vector>

#include "app/session.h"
#include "fuzz/support/drive.h"
#include "host/kernel/windows.h"

namespace {

constexpr std::size_t LARGEST = 1024;

constexpr auto selectors = std::to_array<const char*>(
    {"bang",     "int",       "float",   "list",       "symbol", "start",    "startat", "stop",  "next",
     "record",   "follow",    "next",    "followat",   "record", "clear",    "delay",   "nth",   "mute",
     "unmute",   "unmuteall", "restore", "read",       "params", "setparam", "import",  "write", "export",
     "writekel", "open",      "wclose",  "whichparam", "nosuch", ""});

// The bytes, taken one by one; zeros behind the end.
class supply {
public:
    supply(const std::uint8_t* data, std::size_t size) : at(data), end(data + size) {}
    bool more() const { return at < end; }
    int byte() { return at < end ? *at++ : 0; }
    std::int32_t number() {
        switch (byte() % 6) {
        case 0: return byte();
        case 1: return -byte();
        case 2: return byte() << 8 | byte();
        case 3: return INT32_MAX - byte();
        case 4: return INT32_MIN + byte();
        default: {
            std::uint32_t n = 0;
            for (int i = 0; i < 4; ++i) n = n << 8 | static_cast<std::uint32_t>(byte());
            return static_cast<std::int32_t>(n);
        }
        }
    }
    symbol* name() {
        const int which = byte();
        if (which < 200) return host_symbol(selectors[static_cast<std::size_t>(which) % selectors.size()]);
        std::string text;
        for (int n = byte() % 40; n > 0; --n) text += static_cast<char>(byte() % 255 + 1);
        return host_symbol(text.c_str());
    }
    atom any() {
        switch (byte() % 4) {
        case 0: return atom(name());
        case 1: return atom(std::bit_cast<float>(number()));
        default: return atom(number());
        }
    }
    Point place() {
        Point p;
        p.v = static_cast<std::int16_t>(byte() * 2 - 20);
        p.h = static_cast<std::int16_t>(byte() * 3 - 20);
        return p;
    }

private:
    const std::uint8_t* at;
    const std::uint8_t* end;
};

void step(supply& in, headless& machine, brisolan* x) {
    constexpr int FEW_MS = 50;
    constexpr int CLOCKS = 200;
    host_window* const w = x->window;
    switch (in.byte() % 12) {
    case 0: {
        const int inlet = in.byte() % 9;
        kel_inlet(x, inlet, in.number());
        break;
    }
    case 1: kel_number(x, in.any()); break;
    case 2: wait_a_little(in.byte() % FEW_MS, CLOCKS); break;
    case 3: {
        machine.pointer = in.place();
        machine.button = true;
        kel_window_click(w, machine.pointer, in.byte() << 8);
        break;
    }
    case 4:
        machine.pointer = in.place();
        kel_drag_move(machine.pointer);
        break;
    case 5:
        machine.button = false;
        kel_drag_release(machine.pointer);
        break;
    case 6: kel_window_key(w, in.byte()); break;
    case 7:
        if (in.byte() % 4 == 0) kel_window_resize(w, in.byte() * 4, in.byte() * 3);
        break;
    case 8: {
        machine.choices.push_back(in.byte() % 12);
        machine.held.push_back(in.place());
        break;
    }
    default: {
        symbol* const selector = in.name();
        std::vector<atom> arguments;
        for (int n = in.byte() % 14; n > 0; --n) arguments.push_back(in.any());
        kel_send(x, selector, arguments);
        break;
    }
    }
    kel_run_queue();
    brisolan_checkinvariants(x);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > LARGEST) return 0;
    headless_session session;
    fence_in();
    brisolan* const x = session.make("fuzzed");
    supply in(data, size);
    while (in.more()) step(in, session.machine, x);
    return 0;
}
