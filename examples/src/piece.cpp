// Where a written tick falls once the tempi are taken into account.
// Developer tool that makes the example files; no part of the program.
// Called by midi_bytes for files of one tempo and by read_back for what should be heard.
#include "examples/src/piece.h"

#include <algorithm>

namespace examples {

// Calls what(ticks, bpm) for every stretch of one tempo before `at`.
template <typename Function> static void for_each_tempo_before(const piece& p, int at, Function what) {
    for (size_t i = 0; i < p.tempi.size() && p.tempi[i].at < at; ++i) {
        const bool last = i + 1 == p.tempi.size();
        const int until = last ? at : std::min(at, p.tempi[i + 1].at);
        what(until - p.tempi[i].at, p.tempi[i].bpm);
    }
}

int bar_ticks(const piece& p) {
    return p.beats * TICKS_PER_QUARTER * 4 / p.beat_unit;
}

int stretched_tick(const piece& p, int at) {
    int tick = 0;
    const int base = p.tempi.front().bpm;
    for_each_tempo_before(p, at, [&](int ticks, int bpm) { tick += (ticks * base + bpm / 2) / bpm; });
    return tick;
}

double heard_ms(const piece& p, int at) {
    double ms = 0;
    for_each_tempo_before(
        p, at, [&](int ticks, int bpm) { ms += ticks * 60000.0 / (double(TICKS_PER_QUARTER) * bpm); });
    return ms;
}

} // namespace examples
