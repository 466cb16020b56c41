// Writes a piece as a Standard MIDI File in memory: 480 ticks a quarter, one status byte for each message.
// Developer tool that makes the example files; no part of the program.
// Called by make_examples; read_back asks for the order of the notes.
#include "examples/src/midi_bytes.h"

#include <algorithm>
#include <bit>
#include <string>

namespace examples {

using bytes = std::vector<std::uint8_t>;

// Of what happens at the same tick: a note ends before the next begins, and a tempo counts for the notes under it.
enum rank { RANK_OFF, RANK_SETUP, RANK_ON, RANK_END };

struct event {
    int tick = 0;
    rank order = RANK_SETUP;
    bytes data; // status and all that follows, without the delta
};

static void put_number(bytes& out, unsigned value, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        out.push_back(static_cast<std::uint8_t>(value >> shift));
}

static void put_text(bytes& out, const std::string& text) {
    out.insert(out.end(), text.begin(), text.end());
}

// Seven bits a byte, the high bit on all but the last.
static void put_varlen(bytes& out, unsigned value) {
    for (int shift = 21; shift > 0; shift -= 7)
        if (value >> shift) out.push_back(static_cast<std::uint8_t>(0x80 | (value >> shift & 0x7F)));
    out.push_back(static_cast<std::uint8_t>(value & 0x7F));
}

static bytes meta(int type, const bytes& data) {
    bytes out = {0xFF, static_cast<std::uint8_t>(type)};
    put_varlen(out, static_cast<unsigned>(data.size()));
    out.insert(out.end(), data.begin(), data.end());
    return out;
}

static bytes meta_text(int type, const std::string& text) {
    bytes data;
    put_text(data, text);
    return meta(type, data);
}

// Rounded down, so that dividing again gives the same whole number of beats.
static bytes meta_tempo(int bpm) {
    bytes data;
    put_number(data, 60000000u / static_cast<unsigned>(bpm), 3);
    return meta(0x51, data);
}

static bytes message(int status, const voice& v, int data1, int data2) {
    return {static_cast<std::uint8_t>(status | (v.channel - 1)), static_cast<std::uint8_t>(data1),
            static_cast<std::uint8_t>(data2)};
}

static int file_tick(const piece& p, int at) {
    return p.format == 0 ? at : stretched_tick(p, at);
}

static void place_voice(const piece& p, const voice& v, std::vector<placed_note>& track) {
    for (const note& n : v.notes) {
        const int on = file_tick(p, n.start);
        track.push_back({on, std::max(on + 1, file_tick(p, n.start + n.length)), &v, &n});
    }
}

std::vector<std::vector<placed_note>> placed_notes(const piece& p) {
    std::vector<std::vector<placed_note>> tracks(p.format == 0 ? 1 : p.voices.size());
    for (size_t i = 0; i < p.voices.size(); ++i) place_voice(p, p.voices[i], tracks[p.format == 0 ? 0 : i]);
    for (std::vector<placed_note>& track : tracks)
        std::stable_sort(track.begin(), track.end(), [](const placed_note& a, const placed_note& b) {
            return a.on != b.on ? a.on < b.on : a.off > b.off;
        });
    return tracks;
}

// Title, composer, meter, key, tempo: at the head of the first track.
static void add_head(const piece& p, std::vector<event>& events) {
    if (p.format == 1) events.push_back({0, RANK_SETUP, meta_text(0x01, p.title)});
    events.push_back({0, RANK_SETUP, meta_text(0x01, p.composer)});
    const auto unit = static_cast<std::uint8_t>(std::bit_width(static_cast<unsigned>(p.beat_unit)) - 1);
    events.push_back({0, RANK_SETUP, meta(0x58, {static_cast<std::uint8_t>(p.beats), unit, 24, 8})});
    events.push_back({0, RANK_SETUP, meta(0x59, {static_cast<std::uint8_t>(p.sharps), 0})});
    for (const tempo_mark& mark : p.tempi) {
        events.push_back({mark.at, RANK_SETUP, meta_tempo(mark.bpm)});
        if (p.format == 1) break;
    }
}

static void add_program(const voice& v, std::vector<event>& events) {
    events.push_back(
        {0,
         RANK_SETUP,
         {static_cast<std::uint8_t>(0xC0 | (v.channel - 1)), static_cast<std::uint8_t>(v.program)}});
}

static void add_notes(const std::vector<placed_note>& track, std::vector<event>& events) {
    for (const placed_note& n : track) {
        events.push_back({n.on, RANK_ON, message(0x90, *n.from, n.written->pitch, n.written->velocity)});
        events.push_back({n.off, RANK_OFF, message(0x80, *n.from, n.written->pitch, 64)});
    }
}

static void put_track(bytes& out, std::vector<event>& events) {
    std::stable_sort(events.begin(), events.end(), [](const event& a, const event& b) {
        return a.tick != b.tick ? a.tick < b.tick : a.order < b.order;
    });
    bytes body;
    int last = 0;
    for (const event& e : events) {
        put_varlen(body, static_cast<unsigned>(e.tick - last));
        body.insert(body.end(), e.data.begin(), e.data.end());
        last = e.tick;
    }
    put_text(out, "MTrk");
    put_number(out, static_cast<unsigned>(body.size()), 4);
    out.insert(out.end(), body.begin(), body.end());
}

bytes midi_bytes(const piece& p) {
    const std::vector<std::vector<placed_note>> tracks = placed_notes(p);
    bytes out;
    put_text(out, "MThd");
    put_number(out, 6, 4);
    put_number(out, static_cast<unsigned>(p.format), 2);
    put_number(out, static_cast<unsigned>(tracks.size()), 2);
    put_number(out, TICKS_PER_QUARTER, 2);
    for (size_t i = 0; i < tracks.size(); ++i) {
        std::vector<event> events;
        events.push_back({0, RANK_SETUP, meta_text(0x03, p.format == 0 ? p.title : p.voices[i].name)});
        if (i == 0) add_head(p, events);
        for (size_t v = 0; v < p.voices.size(); ++v)
            if (p.format == 0 || v == i) add_program(p.voices[v], events);
        add_notes(tracks[i], events);
        int end = file_tick(p, p.end);
        for (const placed_note& n : tracks[i]) end = std::max(end, n.off);
        events.push_back({end, RANK_END, meta(0x2F, {})});
        put_track(out, events);
    }
    return out;
}

} // namespace examples
