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

// How many events there are of each track number that the Track parameter admits; and of those below and
// above, which count as the nearest.
struct track_counts {
    std::vector<std::size_t> of; // of[t] events of Track t; of[0] is unused
    std::size_t below = 0;
    std::size_t above = 0;
    std::int32_t used = 0;    // track numbers, as they count
    std::int32_t highest = 0; // of them

    explicit track_counts(const brisolan* x) {
        const auto max = static_cast<std::int16_t>(x->params[PARAM_TRACK].max.get());
        const std::int32_t slots = std::max<std::int32_t>(max, 1);
        of.resize(static_cast<std::size_t>(slots) + 1);
        for (const event* e = x->events; e; e = e->next) {
            const std::int32_t t = e->track;
            if (t < 1)
                below += 1;
            else if (t > slots)
                above += 1;
            else
                of[static_cast<std::size_t>(t)] += 1;
        }
        for (std::int32_t t = 1; t <= slots; ++t) {
            const bool any = of[static_cast<std::size_t>(t)] || (t == 1 && below) || (t == slots && above);
            used += any;
            if (any) highest = t;
        }
    }
};

// What is written of an event.
struct written_note {
    std::int32_t time;
    std::int32_t end;
    std::uint8_t status;
    std::uint8_t pitch;
    std::uint8_t vel;
};

// `first_channel` is the Chan that is MIDI channel 0.
written_note note_of(const event& e, std::int32_t first_channel) {
    const std::int32_t time = e.time;
    return {time, wrapped(std::int64_t{time} + e.dur),
            static_cast<std::uint8_t>(NOTE_ON + (std::int64_t{e.chan.get()} - first_channel)),
            static_cast<std::uint8_t>(e.pitch.get()), static_cast<std::uint8_t>(e.vel.get())};
}

std::int32_t first_channel_of(const brisolan* x) {
    return x->params[PARAM_CHAN].min == 1 ? 1 : 0;
}

// The notes of each track in sequence order.
class notes_by_track {
public:
    // Kept: only a Track of exactly 1 to the highest has a chunk; others count as the nearest track, yet are not written.
    notes_by_track(const brisolan* x, const track_counts& counts)
        : begin(static_cast<std::size_t>(counts.highest) + 2) {
        for (std::size_t t = 1; t + 1 < begin.size(); ++t) begin[t + 1] = begin[t] + counts.of[t];
        notes.resize(begin.back());
        std::vector<std::size_t> at(begin.begin(), begin.end() - 1);
        const std::int32_t first_channel = first_channel_of(x);
        for (const event* e = x->events; e; e = e->next) {
            const std::int32_t t = e->track;
            if (t < 1 || t > counts.highest) continue;
            // What was recorded meanwhile has no place.
            const auto i = static_cast<std::size_t>(t);
            if (at[i] < begin[i + 1]) notes[at[i]++] = note_of(*e, first_channel);
        }
    }

    std::span<const written_note> of(std::int32_t track) const {
        const auto i = static_cast<std::size_t>(track);
        if (i + 1 >= begin.size()) return {};
        return {notes.data() + begin[i], notes.data() + begin[i + 1]};
    }

private:
    std::vector<written_note> notes;
    std::vector<std::size_t> begin; // those of track t are from begin[t] to begin[t + 1]
};

// ---------------------------------------------------------------------------------------------------------------------
// Notes that sound

// Note-offs to come, the earliest on top; of equal times that of the note that began last.
class pending_notes {
public:
    void push(const written_note& n) {
        // 32 bits of time, lowest first, and below them the newest first.
        const std::uint64_t rank = static_cast<std::uint64_t>(static_cast<std::uint32_t>(n.end) ^ 0x80000000U)
                                       << 32 |
                                   (0xFFFFFFFFU - ++pushed);
        heap.push_back({rank, n});
        std::push_heap(heap.begin(), heap.end(), later);
    }
    bool ends_before(std::int32_t time) const { return !heap.empty() && heap.front().note.end < time; }
    written_note pop() {
        std::pop_heap(heap.begin(), heap.end(), later);
        const written_note n = heap.back().note;
        heap.pop_back();
        return n;
    }

private:
    struct entry {
        std::uint64_t rank;
        written_note note;
    };
    static bool later(const entry& a, const entry& b) { return a.rank > b.rank; }

    std::vector<entry> heap;
    std::uint32_t pushed = 0;
};

// ---------------------------------------------------------------------------------------------------------------------
// Writing

struct track_writer {
    bool timecode;
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

// The low 28 bits of a value as a variable-length quantity; gives the place behind it.
unsigned char* put_quantity(unsigned char* at, std::int32_t value) {
    const std::uint32_t v = static_cast<std::uint32_t>(value) & 0x0FFFFFFF;
    if (v >> 21) *at++ = static_cast<unsigned char>(v >> 21 | 0x80);
    if (v >> 14) *at++ = static_cast<unsigned char>(v >> 14 | 0x80);
    if (v >> 7) *at++ = static_cast<unsigned char>(v >> 7 | 0x80);
    *at++ = static_cast<unsigned char>(v & 0x7F);
    return at;
}

void write_counted(const unsigned char* bytes, const unsigned char* end) {
    wbytes += static_cast<std::int32_t>(end - bytes);
    t_fwrite(bytes, static_cast<int>(end - bytes));
}

void write_message(track_writer& w, const written_note& n, std::int32_t time, std::uint8_t vel) {
    std::array<unsigned char, 8> bytes;
    unsigned char* at = put_quantity(bytes.data(), ticks_since_last(w, time));
    *at++ = n.status;
    *at++ = n.pitch;
    *at++ = vel;
    write_counted(bytes.data(), at);
}

// Kept: a note-off at the time of the next note-on comes behind it, and one that falls on the very last millisecond that
// there is never comes. Files compare byte by byte with those written before. `next` fills in the next note, or gives
// false.
template <class Next> void write_notes(track_writer& w, Next next) {
    pending_notes pending;
    written_note coming{};
    for (bool more = next(&coming);;) {
        const std::int32_t time = more ? coming.time : NEVER;
        if (pending.ends_before(time)) {
            const written_note n = pending.pop();
            write_message(w, n, n.end, 0);
        } else if (more) {
            write_message(w, coming, time, coming.vel);
            pending.push(coming);
            more = next(&coming);
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

// One track behind its header, its length included; the file stands at its end afterwards.
template <class Next> void write_track(Next next, bool timecode, bool with_tempo, std::int32_t length_at) {
    wbytes = 0;
    if (with_tempo) wbytes = t_fwrite(tempo_event.data(), tempo_event.size());
    track_writer w{.timecode = timecode};
    write_notes(w, next);
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
void write_tracks(brisolan* x, const notes_by_track& notes, std::int32_t highest, bool timecode) {
    for (std::int32_t t = 1;; ++t) {
        stop_locked_out(x);
        t_fwrite(header.data() + FILE_HEADER_SIZE, TEMPLATE_SIZE - FILE_HEADER_SIZE);
        const std::span<const written_note> own = notes.of(t);
        std::size_t i = 0;
        const auto next = [own, &i](written_note* n) {
            if (i == own.size()) return false;
            *n = own[i++];
            return true;
        };
        write_track(next, timecode, t == 1 && !timecode, t_tell() - 4);
        if (highest <= t) return;
    }
}

// Every event, in one track.
void write_all(brisolan* x, bool timecode) {
    stop_locked_out(x);
    const event* e = x->events;
    const std::int32_t first_channel = first_channel_of(x);
    const auto next = [&e, first_channel](written_note* n) {
        if (!e) return false;
        *n = note_of(*e, first_channel);
        e = e->next;
        return true;
    };
    write_track(next, timecode, false, LENGTH_AT);
}

} // namespace

void brisolan_counttracks(const brisolan* x, std::int32_t* count, std::int32_t* highest) {
    const track_counts counts(x);
    *count = counts.used;
    *highest = counts.highest;
}

void brisolan_exportfile(brisolan* x, const char* name, std::int16_t path, std::int32_t multitrack,
                         std::int32_t timecode) {
    if (const host_err e = t_open(name, path, MIDI_FILE)) {
        host_error("can't open %s, error %d", name, static_cast<int>(e));
        return;
    }
    if (multitrack != 0) {
        const track_counts counts(x);
        host_post("there are %d tracks", static_cast<int>(counts.used));
        host_post("highest track numbered %d", static_cast<int>(counts.highest));
        write_header(true, timecode != 0, counts.used);
        write_tracks(x, notes_by_track(x, counts), counts.highest, timecode != 0);
        host_post("done with all tracks");
    } else {
        write_header(false, timecode != 0, 1);
        write_all(x, timecode != 0);
    }
    t_close();
    stop_locked_out(x);
    host_post("finished");
}

void writevar(std::int32_t value) {
    std::array<unsigned char, 4> bytes;
    write_counted(bytes.data(), put_quantity(bytes.data(), value));
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
