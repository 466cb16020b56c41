// io/midiwrite.cpp: writing the sequence as a Standard MIDI File, format 0 or 1.
// Layer: io. Called by the messages "export" and "write".
#include "io/midiwrite.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/locked.h"
#include "core/output.h"
#include "io/bufferedfile.h"
#include "io/embedding.h"

std::int32_t wbytes = 0;

namespace {

constexpr int TEMPLATE_SIZE = 22; // file header and first track header
constexpr int FILE_HEADER_SIZE = 14;
constexpr std::int32_t LENGTH_AT = 18; // of the first track's length, in the file
using header_template = std::array<unsigned char, TEMPLATE_SIZE>;
constexpr header_template header{'M', 'T', 'h', 'd', 0,   0,   0,   6, 0, 0, 0,
                                 1,   0,   0,   'M', 'T', 'r', 'k', 0, 0, 0, 0};
constexpr std::array<unsigned char, 7> tempo_event{0x00, 0xFF, 0x51, 0x03, 0x07, 0xA1, 0x20}; // 120 a minute
constexpr std::array<unsigned char, 3> end_of_track{0xFF, 0x2F, 0x00};

constexpr int NOTE_ON = 0x90;
constexpr std::int32_t NEVER = 0x7FFFFFFF; // the time of the note-on that does not come

std::int32_t wrapped(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

// ---------------------------------------------------------------------------------------------------------------------
// Tracks

// One for each track number that the Track parameter admits, true where events use it.
std::vector<bool> used_tracks(const brisolan* x) {
    const auto max = static_cast<std::int16_t>(x->params[PARAM_TRACK].max.get());
    const std::int32_t slots = std::max<std::int32_t>(max, 1);
    std::vector<bool> used(static_cast<std::size_t>(slots));
    for (const event* e = x->events; e; e = e->next)
        used[static_cast<std::size_t>(std::clamp<std::int32_t>(e->track, 1, slots) - 1)] = true;
    return used;
}

// The events of each track in sequence order, those of track t from begin[t - 1] to begin[t].
struct bucketed_events {
    std::vector<const event*> events;
    std::vector<std::size_t> begin;

    std::span<const event* const> of_track(std::int32_t t) const {
        const auto i = static_cast<std::size_t>(t - 1);
        return {events.data() + begin[i], events.data() + begin[i + 1]};
    }
};

// Every event, as one track.
bucketed_events all_events(const brisolan* x) {
    bucketed_events all;
    all.events.reserve(static_cast<std::size_t>(std::max(x->nevents.get(), 0)));
    for (const event* e = x->events; e; e = e->next) all.events.push_back(e);
    all.begin = {0, all.events.size()};
    return all;
}

// Kept: only a Track of exactly 1 to `highest` has a chunk; others count as the nearest track, yet are not written.
bucketed_events by_track(const brisolan* x, std::int32_t highest) {
    const std::int32_t tracks = std::max(highest, 1);
    bucketed_events all = all_events(x);
    bucketed_events sorted;
    // A counting sort; a Track read twice may have been edited between, so it is read once.
    std::vector<std::int32_t> track_of(all.events.size());
    sorted.begin.assign(static_cast<std::size_t>(tracks) + 1, 0);
    for (std::size_t i = 0; i < all.events.size(); ++i) {
        const std::int32_t t = all.events[i]->track;
        if (t < 1 || t > highest) continue;
        track_of[i] = t;
        sorted.begin[static_cast<std::size_t>(t)] += 1;
    }
    for (std::size_t t = 1; t < sorted.begin.size(); ++t) sorted.begin[t] += sorted.begin[t - 1];
    sorted.events.resize(sorted.begin.back());
    std::vector<std::size_t> at(sorted.begin.begin(), sorted.begin.end() - 1);
    for (std::size_t i = 0; i < all.events.size(); ++i) {
        if (track_of[i] != 0) sorted.events[at[static_cast<std::size_t>(track_of[i] - 1)]++] = all.events[i];
    }
    return sorted;
}

// ---------------------------------------------------------------------------------------------------------------------
// Notes that sound

// Note-offs to come, the earliest on top; of equal times that of the note that began last.
class pending_notes {
public:
    void push(const event* e, std::int32_t end) {
        // 32 bits of time, lowest first, and below them the newest first.
        const std::uint64_t rank = static_cast<std::uint64_t>(static_cast<std::uint32_t>(end) ^ 0x80000000U)
                                       << 32 |
                                   (0xFFFFFFFFU - ++pushed);
        heap.push_back({rank, e});
        std::push_heap(heap.begin(), heap.end(), later);
    }
    bool ends_before(std::int32_t time) const { return !heap.empty() && end_of(heap.front()) < time; }
    std::int32_t first_end() const { return end_of(heap.front()); }
    const event* pop() {
        std::pop_heap(heap.begin(), heap.end(), later);
        const event* e = heap.back().note;
        heap.pop_back();
        return e;
    }

private:
    struct entry {
        std::uint64_t rank;
        const event* note;
    };
    static bool later(const entry& a, const entry& b) { return a.rank > b.rank; }
    static std::int32_t end_of(const entry& n) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(n.rank >> 32) ^ 0x80000000U);
    }

    std::vector<entry> heap;
    std::uint32_t pushed = 0;
};

// ---------------------------------------------------------------------------------------------------------------------
// Writing

struct track_writer {
    bool timecode;
    std::int32_t first_channel; // the Chan that is MIDI channel 0
    std::int32_t last_time = 0; // of the message written last
    double carry = 0.0;         // the part of a tick left over from the deltas before
};

std::int32_t ticks_since_last(track_writer& w, std::int32_t time) {
    const std::int32_t delta = wrapped(std::int64_t{time} - w.last_time);
    w.last_time = time;
    if (w.timecode) return wrapped(std::int64_t{delta} * 2);
    const double f = delta / 125.0 * 24.0 + w.carry;
    const auto ticks = static_cast<std::int32_t>(f);
    w.carry = f - ticks;
    return ticks;
}

void write_message(track_writer& w, const event* e, std::int32_t time, std::int32_t vel) {
    writevar(ticks_since_last(w, time));
    const std::int64_t channel = std::int64_t{e->chan.get()} - w.first_channel;
    t_putc(static_cast<unsigned char>(NOTE_ON + channel));
    t_putc(static_cast<unsigned char>(e->pitch.get()));
    t_putc(static_cast<unsigned char>(vel));
    wbytes += 3;
}

// Kept: a note-off at the time of the next note-on comes behind it, and one that falls on the very last millisecond that
// there is never comes. Files compare byte by byte with those written before.
void write_notes(track_writer& w, std::span<const event* const> notes) {
    pending_notes pending;
    for (auto next = notes.begin();;) {
        const std::int32_t time = next != notes.end() ? (*next)->time.get() : NEVER;
        if (pending.ends_before(time)) {
            const std::int32_t end = pending.first_end();
            write_message(w, pending.pop(), end, 0);
        } else if (next != notes.end()) {
            const event* e = *next++;
            write_message(w, e, time, e->vel);
            pending.push(e, wrapped(std::int64_t{time} + e->dur));
        } else {
            return;
        }
    }
}

void write_length() {
    std::array<unsigned char, 4> bytes;
    for (int i = 0; i < 4; ++i)
        bytes[static_cast<std::size_t>(i)] = static_cast<unsigned char>(wbytes >> (24 - 8 * i));
    t_fwrite(bytes.data(), bytes.size());
}

void stop_locked_out(brisolan* x) {
    locked_out now;
    brisolan_stop(x);
}

void write_header(bool multitrack, bool timecode, std::int32_t ntracks) {
    header_template h = header;
    h[9] = multitrack ? 1 : 0;
    h[10] = static_cast<unsigned char>(ntracks >> 8);
    h[11] = static_cast<unsigned char>(ntracks);
    h[12] = timecode ? 0xE7 : 0x00; // 25 frames a second of 40 ticks, or
    h[13] = timecode ? 0x28 : 0x60; // 96 ticks a quarter note
    t_fwrite(h.data(), multitrack ? FILE_HEADER_SIZE : TEMPLATE_SIZE);
}

// One track behind its header, its length included; the file stands somewhere in front of its end afterwards.
void write_track(brisolan* x, std::span<const event* const> notes, bool timecode, bool with_tempo,
                 std::int32_t length_at) {
    wbytes = 0;
    if (with_tempo) wbytes = t_fwrite(tempo_event.data(), tempo_event.size());
    track_writer w{.timecode = timecode, .first_channel = x->params[PARAM_CHAN].min == 1 ? 1 : 0};
    write_notes(w, notes);
    writevar(0);
    t_fwrite(end_of_track.data(), end_of_track.size());
    wbytes += 3;
    const std::int32_t end = t_tell();
    t_seek(length_at);
    write_length();
    t_seek(end);
}

// Kept: tracks between used ones get a chunk too, so that there may be more chunks than the header says; and only the
// first track of such a file tells the tempo, which a file of one track never does.
void write_tracks(brisolan* x, const bucketed_events& events, std::int32_t highest, bool timecode) {
    for (std::int32_t t = 1;; ++t) {
        stop_locked_out(x);
        t_fwrite(header.data() + FILE_HEADER_SIZE, TEMPLATE_SIZE - FILE_HEADER_SIZE);
        write_track(x, events.of_track(t), timecode, t == 1 && !timecode, t_tell() - 4);
        if (highest <= t) return;
    }
}

} // namespace

void brisolan_counttracks(const brisolan* x, std::int32_t* count, std::int32_t* highest) {
    const std::vector<bool> used = used_tracks(x);
    *count = *highest = 0;
    for (std::size_t i = 0; i < used.size(); ++i) {
        if (!used[i]) continue;
        *count += 1;
        *highest = static_cast<std::int32_t>(i) + 1;
    }
}

void brisolan_exportfile(brisolan* x, const char* name, std::int16_t path, std::int32_t multitrack,
                         std::int32_t timecode) {
    if (const host_err e = t_open(name, path, MIDI_FILE)) {
        host_error("can't open %s, error %d", name, static_cast<int>(e));
        return;
    }
    if (multitrack != 0) {
        std::int32_t count = 0;
        std::int32_t highest = 0;
        brisolan_counttracks(x, &count, &highest);
        host_post("there are %d tracks", static_cast<int>(count));
        host_post("highest track numbered %d", static_cast<int>(highest));
        write_header(true, timecode != 0, count);
        write_tracks(x, by_track(x, highest), highest, timecode != 0);
        host_post("done with all tracks");
    } else {
        write_header(false, timecode != 0, 1);
        stop_locked_out(x);
        write_track(x, all_events(x).events, timecode != 0, false, LENGTH_AT);
    }
    t_close();
    stop_locked_out(x);
    host_post("finished");
}

void writevar(std::int32_t value) {
    const std::uint32_t v = static_cast<std::uint32_t>(value) & 0x0FFFFFFF;
    int shift = 21;
    while (shift > 0 && v >> shift == 0) shift -= 7;
    for (; shift >= 0; shift -= 7) {
        const auto group = static_cast<unsigned char>(v >> shift & 0x7F);
        t_putc(shift > 0 ? static_cast<unsigned char>(group | 0x80) : group);
        wbytes += 1;
    }
}

void brisolan_export(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv) {
    host_defer<brisolan_doexport>(x, selector, argc, argv);
}

void brisolan_doexport(brisolan* x, symbol*, std::int32_t argc, const atom* argv) {
    const auto integer = [argc, argv](std::int32_t i, std::int32_t otherwise) {
        return i < argc && argv[i].type == A_LONG ? argv[i].l : otherwise;
    };
    if (argc > 0 && argv[0].type == A_SYM) {
        brisolan_exportfile(x, argv[0].s->name, 0, integer(2, 1), integer(1, 0));
        return;
    }
    // A first atom that is neither gives no name and no choices.
    const bool chosen = argc > 0 && argv[0].type == A_LONG;
    std::array<char, HOST_NAME_SIZE> name{};
    std::int16_t path = 0;
    file_type type = MIDI_FILE;
    if (host_saveas_dialog(name.data(), &path, &type, {&MIDI_FILE, 1})) return;
    brisolan_exportfile(x, name.data(), path, chosen ? integer(1, 1) : 1, integer(0, 0));
}
