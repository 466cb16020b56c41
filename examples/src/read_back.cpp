// Reads an example file as the program will read it, with its rounding of tempi and its short memory for held notes.
// Developer tool that makes the example files; no part of the program.
// Called by make_examples before anything is written, and by the tests.
#include "examples/src/read_back.h"

#include "examples/src/midi_bytes.h"

#include <algorithm>
#include <cmath>

namespace examples {

// Onset and end may each be off by a tick of stretching and by a millisecond of truncation.
constexpr double TIME_TOLERANCE = 3.0;

constexpr int UNENDED = 10; // duration of a note whose note-off was not found, in milliseconds

// Notes that wait for their note-offs: a chain whose new links are always tied to its first one, so that of three notes
// the second is forgotten, and once the first is gone, nothing is added until the chain is empty.
struct held_notes {
    std::vector<size_t> chain; // indices of notes
    bool first_ended = false;

    void add(size_t index) {
        if (chain.empty()) {
            chain = {index};
            first_ended = false;
        } else if (!first_ended) {
            chain = {chain.front(), index};
        }
    }

    void remove(size_t place) {
        if (place == 0 && !first_ended) first_ended = true;
        chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(place));
    }
};

struct state {
    const std::vector<std::uint8_t>& file;
    size_t at = 14;
    int bpm = 120;
    int tpq = 0;
    int ticks_per_second = 0;
    int track = 0;
    int time = 0;
    double carry = 0;
    held_notes held = {};
    std::vector<read_note> notes = {};

    int byte() { return file.at(at++); }
    int number(int size) {
        int value = 0;
        for (; size > 0; --size) value = value << 8 | byte();
        return value;
    }
    int varlen() {
        int value = 0, next = 0;
        do {
            next = byte();
            value = value << 7 | (next & 0x7F);
        } while (next & 0x80);
        return value;
    }
};

static void advance(state& s, int ticks) {
    const double exact = s.carry + ticks * 1000.0 / s.ticks_per_second;
    const int step = static_cast<int>(exact);
    s.carry = exact - step;
    s.time += step;
}

// False at the end of the track.
static bool read_meta(state& s) {
    const int type = s.byte();
    const int length = s.varlen();
    const size_t end = s.at + static_cast<size_t>(length);
    if (type == 0x51) {
        s.bpm = 60000000 / s.number(3);
        s.ticks_per_second = s.tpq * s.bpm / 60;
    }
    s.at = end;
    return type != 0x2F;
}

static void end_note(state& s, int pitch) {
    for (size_t i = 0; i < s.held.chain.size(); ++i) {
        read_note& n = s.notes[s.held.chain[i]];
        if (n.pitch != pitch || n.track != s.track) continue;
        n.duration = s.time - n.time;
        s.held.remove(i);
        return;
    }
}

static void read_message(state& s, int status) {
    const int pitch = s.byte();
    if ((status & 0xE0) == 0xC0) return;
    const int velocity = s.byte();
    if ((status & 0xF0) == 0x90 && velocity > 0) {
        s.notes.push_back({s.time, pitch, velocity, UNENDED, (status & 0x0F) + 1, s.track});
        s.held.add(s.notes.size() - 1);
    } else if ((status & 0xE0) == 0x80) {
        end_note(s, pitch);
    }
}

static void read_track(state& s) {
    s.at += 8;
    ++s.track;
    s.time = 0;
    s.carry = 0;
    for (bool more = true; more;) {
        advance(s, s.varlen());
        const int status = s.byte();
        if (status == 0xFF)
            more = read_meta(s);
        else
            read_message(s, status);
    }
}

std::vector<read_note> read_as_program(const std::vector<std::uint8_t>& file) {
    state s{file};
    s.tpq = file.at(12) << 8 | file.at(13);
    s.ticks_per_second = 120 * s.tpq / 60;
    while (s.at < file.size()) read_track(s);
    return s.notes;
}

static std::string described(const read_note& n) {
    std::string text;
    for (const int value : {n.time, n.pitch, n.velocity, n.duration, n.channel, n.track})
        text += (text.empty() ? "" : " ") + std::to_string(value);
    return text;
}

static bool same(const read_note& a, const read_note& b) {
    return a.pitch == b.pitch && a.velocity == b.velocity && a.channel == b.channel && a.track == b.track &&
           std::abs(a.time - b.time) <= TIME_TOLERANCE && std::abs(a.duration - b.duration) <= TIME_TOLERANCE;
}

// The notes as p means them, in file order.
static std::vector<read_note> meant(const piece& p) {
    std::vector<read_note> notes;
    const std::vector<std::vector<placed_note>> tracks = placed_notes(p);
    for (size_t i = 0; i < tracks.size(); ++i)
        for (const placed_note& n : tracks[i]) {
            const double on = heard_ms(p, n.written->start);
            const double off = heard_ms(p, n.written->start + n.written->length);
            notes.push_back({static_cast<int>(on), n.written->pitch, n.written->velocity,
                             static_cast<int>(off - on), n.from->channel, static_cast<int>(i) + 1});
        }
    return notes;
}

std::vector<std::string> differences(const piece& p, const std::vector<std::uint8_t>& file) {
    const std::vector<read_note> want = meant(p);
    const std::vector<read_note> got = read_as_program(file);
    std::vector<std::string> lines;
    if (want.size() != got.size())
        lines.push_back(std::to_string(want.size()) + " notes written, " + std::to_string(got.size()) +
                        " read");
    for (size_t i = 0; i < std::min(want.size(), got.size()); ++i)
        if (!same(want[i], got[i]))
            lines.push_back("meant " + described(want[i]) + ", read " + described(got[i]));
    return lines;
}

} // namespace examples
