// app/note_view.cpp: what plays, on a terminal.
// Layer: program.
#include "app/note_view.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

#include "host/kernel/kernel.h"
#include "view/format.h"

namespace {

std::string note_name(int pitch) {
    std::array<char, 32> name{};
    cnote2str(pitch, name.data());
    return name.data();
}

// 1:02.345, or 1:02 when it need not be exact.
std::string clock_text(std::int64_t ms, bool exact) {
    std::array<char, 48> text{};
    const auto minutes = static_cast<long long>(ms / 60'000);
    const auto seconds = static_cast<int>(ms / 1000 % 60);
    const int used = std::snprintf(text.data(), text.size(), "%lld:%02d", minutes, seconds);
    const auto at = static_cast<std::size_t>(used);
    if (exact) std::snprintf(text.data() + at, text.size() - at, ".%03d", static_cast<int>(ms % 1000));
    return text.data();
}

std::size_t columns() {
    winsize w{};
    constexpr std::size_t USUAL = 80;
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &w) == 0 && w.ws_col > 0 ? w.ws_col : USUAL;
}

void write_out(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

bool has_colour() {
    const char* const no = std::getenv("NO_COLOR");
    return !no || !*no;
}

} // namespace

note_style note_style_here(bool quiet) {
    if (quiet) return note_style::nothing;
    const char* const kind = std::getenv("TERM");
    const bool writes_over = kind && *kind && std::string_view(kind) != "dumb";
    return isatty(STDERR_FILENO) && writes_over ? note_style::progress : note_style::lines;
}

note_view::note_view(note_style how) : style(how), device{this, hear} {
    if (style != note_style::nothing) midi_device_add(&device);
}

note_view::~note_view() {
    midi_device_remove(&device);
    clear();
}

void note_view::begin(std::int64_t from, double speed, std::int64_t length) {
    began = kel_now();
    from_ms = from;
    speed_now = speed;
    length_ms = length;
}

void note_view::hear(void* view, int, int channel, int pitch, int velocity) {
    auto& v = *static_cast<note_view*>(view);
    const std::size_t at = v.in.load(std::memory_order_relaxed);
    if (at - v.out.load(std::memory_order_acquire) == RING) return;
    v.ring[at % RING] = {kel_now(), static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(pitch),
                         velocity > 0};
    v.in.store(at + 1, std::memory_order_release);
}

void note_view::draw() {
    if (style == note_style::nothing) return;
    take();
    if (style == note_style::progress)
        draw_progress();
    else if (moment >= 0 && kel_now() > moment + NS_PER_MS)
        print_moment();
}

void note_view::take() {
    for (std::size_t at = out.load(std::memory_order_relaxed); at != in.load(std::memory_order_acquire);
         ++at) {
        const played n = ring[at % RING];
        out.store(at + 1, std::memory_order_release);
        sounding[n.pitch].set(n.channel - 1U, n.on);
        if (style != note_style::lines || !n.on) continue;
        if (n.at != moment) print_moment();
        moment = n.at;
        moment_notes += " " + note_name(n.pitch);
    }
}

void note_view::print_moment() {
    if (moment >= 0) write_out(clock_text(position(moment), true) + " " + moment_notes + "\n");
    moment = -1;
    moment_notes.clear();
}

std::int64_t note_view::position(std::int64_t at) const {
    const double played_ms =
        static_cast<double>(std::max<std::int64_t>(at - began, 0)) / NS_PER_MS * speed_now;
    return from_ms + std::llround(played_ms);
}

// Written only when it has changed. Where the terminal has colour, the notes stand out from the times.
void note_view::draw_progress() {
    const std::int64_t at = std::min(position(kel_now()), length_ms);
    const std::string times = clock_text(at, false) + " / " + clock_text(length_ms, false);
    std::string notes;
    const std::size_t room = std::max<std::size_t>(columns(), times.size() + 8) - times.size() - 4;
    for (int pitch = 0; pitch < 128; ++pitch) {
        if (sounding[static_cast<std::size_t>(pitch)].none()) continue;
        const std::string name = note_name(pitch);
        if (notes.size() + name.size() + 1 > room) break;
        notes += " " + name;
    }
    const bool colour = has_colour();
    const std::string line = times + "  " + (colour ? "\033[1m" : "") + notes + (colour ? "\033[0m" : "");
    if (line == shown) return;
    shown = line;
    write_out("\r" + line + "\033[K");
}

void note_view::clear() {
    if (style == note_style::lines) {
        take();
        print_moment();
    }
    if (!shown.empty()) write_out("\r\033[K");
    shown.clear();
}
