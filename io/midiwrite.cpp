// io/midiwrite.cpp: writing the sequence as a Standard MIDI File, format 0 or 1.
// Layer: io. Called by the messages "export" and "write".
#include "io/midiwrite.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "core/output.h"
#include "core/saturated.h"
#include "core/sequence.h"
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

// ---------------------------------------------------------------------------------------------------------------------
// Tracks

// The track numbers in use, out of those that the Track parameter admits; one below or above them counts as the nearest.
class used_tracks {
public:
    explicit used_tracks(const brisolan* x) {
        const auto max = static_cast<std::int16_t>(x->params[PARAM_TRACK].max.get());
        marks.resize(static_cast<std::size_t>(std::max<std::int16_t>(max, 1)));
    }

    // The place of a Track among those admitted, from 0; not below their number when it counts as another.
    std::size_t mark(std::int32_t track) {
        const std::size_t place = static_cast<std::uint32_t>(track) - 1U; // a Track below 1 is far above all
        marks[place < marks.size() ? place : track < 1 ? 0 : marks.size() - 1] = true;
        return place;
    }
    std::size_t admitted() const { return marks.size(); }
    std::int32_t count() const {
        return static_cast<std::int32_t>(std::count(marks.begin(), marks.end(), true));
    }
    std::int32_t highest() const {
        const auto last = std::find(marks.rbegin(), marks.rend(), true);
        return static_cast<std::int32_t>(marks.rend() - last);
    }

private:
    std::vector<char> marks;
};

// ---------------------------------------------------------------------------------------------------------------------
// Notes that sound

// What comes of an event's end.
struct note_off {
    // The end in 32 bits, the lowest first, and below them the order in which the notes began, the newest first.
    std::uint64_t rank;
    std::uint8_t status;
    std::uint8_t pitch;

    // What lies below the rank of any note that ends at a time, and above those of earlier ones.
    static std::uint64_t floor_of(std::int32_t time) {
        return std::uint64_t{static_cast<std::uint32_t>(time) ^ 0x80000000U} << 32;
    }
    std::int32_t time() const {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(rank >> 32) ^ 0x80000000U);
    }
};

// Note-offs to come; of equal times that of the note that began last is the earliest. It stands apart, and a melody has no
// others. Those that come in the order of their ends, as notes of one length do, form a row; a heap has the rest.
class pending_notes {
public:
    void push(std::int32_t end, std::uint8_t status, std::uint8_t pitch) {
        note_off n{note_off::floor_of(end) | (0xFFFFFFFFU - ++pushed), status, pitch};
        if (n.rank < first.rank) std::swap(n, first);
        if (n.rank == NONE) return;
        if (row_is_empty() || n.rank > row.back().rank) {
            row.push_back(n);
        } else {
            heap.push_back(n);
            std::push_heap(heap.begin(), heap.end(), later);
        }
    }
    bool ends_before(std::int32_t time) const { return first.rank < note_off::floor_of(time); }
    note_off pop() {
        const note_off n = first;
        const std::uint64_t in_row = row_is_empty() ? NONE : row[row_begin].rank;
        const std::uint64_t in_heap = heap.empty() ? NONE : heap.front().rank;
        if (in_row < in_heap)
            first = take_from_row();
        else if (in_heap != NONE)
            first = take_from_heap();
        else
            first.rank = NONE;
        return n;
    }

private:
    static constexpr std::uint64_t NONE = UINT64_MAX; // above every note's
    static bool later(const note_off& a, const note_off& b) { return a.rank > b.rank; }

    bool row_is_empty() const { return row_begin == row.size(); }
    note_off take_from_row() {
        const note_off n = row[row_begin++];
        if (2 * row_begin >= row.size()) { // not more moves than notes
            row.erase(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(row_begin));
            row_begin = 0;
        }
        return n;
    }
    note_off take_from_heap() {
        std::pop_heap(heap.begin(), heap.end(), later);
        const note_off n = heap.back();
        heap.pop_back();
        return n;
    }

    note_off first{NONE, 0, 0};
    std::vector<note_off> row;
    std::size_t row_begin = 0; // what is in front has gone
    std::vector<note_off> heap;
    std::uint32_t pushed = 0;
};

// ---------------------------------------------------------------------------------------------------------------------
// Writing

// The low 28 bits of a value as a variable-length quantity; gives the place behind it. Two bytes of room are touched at
// least: whether a delta needs one byte or two changes from note to note, and no branch is to guess it.
unsigned char* put_quantity(unsigned char* at, std::int32_t value) {
    const std::uint32_t v = static_cast<std::uint32_t>(value) & 0x0FFFFFFF;
    if (v >> 21) *at++ = static_cast<unsigned char>(v >> 21 | 0x80);
    if (v >> 14) *at++ = static_cast<unsigned char>(v >> 14 | 0x80);
    const bool two = v >> 7 != 0;
    *at = static_cast<unsigned char>(v >> 7 | 0x80);
    at += two;
    at[0] = static_cast<unsigned char>(v & 0x7F);
    return at + 1;
}

// The bytes of a track: kept until they can be written, or written at once as those of the only track can be.
class track_bytes {
public:
    explicit track_bytes(bool written_at_once) : at_once(written_at_once) {}

    // Room for a message, to be taken in by advance_to.
    unsigned char* room() {
        if (end - at < LONGEST_MESSAGE) next_piece();
        return at;
    }
    void advance_to(unsigned char* behind) { at = behind; }

    // Writes what has not been; how many bytes the track has.
    std::int32_t write() {
        for (const piece& p : pieces) t_fwrite(p.bytes.get(), static_cast<int>(p.used));
        if (!last) return gone;
        t_fwrite(last.get(), static_cast<int>(at - last.get()));
        return gone + static_cast<std::int32_t>(at - last.get());
    }

private:
    static constexpr std::ptrdiff_t LONGEST_MESSAGE = 8;
    // Tracks begin small, since there may be thousands of them with a note each.
    static constexpr std::ptrdiff_t FIRST_PIECE = 256;
    static constexpr std::ptrdiff_t LARGEST_PIECE = 16384;
    struct piece {
        std::unique_ptr<unsigned char[]> bytes;
        std::ptrdiff_t used;
    };

    void next_piece() {
        std::ptrdiff_t size = FIRST_PIECE;
        if (last) {
            const std::ptrdiff_t used = at - last.get();
            size = std::min(2 * (end - last.get()), LARGEST_PIECE);
            gone += static_cast<std::int32_t>(used);
            if (at_once)
                t_fwrite(last.get(), static_cast<int>(used));
            else
                pieces.push_back({std::move(last), used});
        }
        if (!last || size != end - last.get()) last.reset(new unsigned char[static_cast<std::size_t>(size)]);
        at = last.get();
        end = at + size;
    }

    bool at_once;
    std::vector<piece> pieces; // full ones
    std::unique_ptr<unsigned char[]> last;
    unsigned char* at = nullptr; // in the last one
    unsigned char* end = nullptr;
    std::int32_t gone = 0; // bytes in front of the last piece
};

// Makes the messages of one track from its events, given in the order of the sequence.
class track_writer {
public:
    track_writer(bool with_timecode, bool written_at_once)
        : timecode(with_timecode), bytes(written_at_once) {}

    // `first_channel` is the Chan that is MIDI channel 0.
    void add(const event& e, std::int32_t first_channel) {
        const std::int32_t time = e.time;
        const auto status = static_cast<std::uint8_t>(NOTE_ON + (std::int64_t{e.chan.get()} - first_channel));
        const auto pitch = static_cast<std::uint8_t>(e.pitch.get());
        end_before(time);
        message(time, status, pitch, static_cast<std::uint8_t>(e.vel.get()));
        pending.push(wrapped(std::int64_t{time} + e.dur), status, pitch);
    }

    // Kept: a note-off at the time of the next note-on comes behind it, and one that falls on the very last millisecond
    // that there is never comes. Files compare byte by byte with those written before.
    void end_before(std::int32_t time) {
        while (pending.ends_before(time)) {
            const note_off n = pending.pop();
            message(n.time(), n.status, n.pitch, 0);
        }
    }

    // Behind the last event: writes what is left; how many bytes the track has.
    std::int32_t finish() {
        end_before(NEVER);
        return bytes.write();
    }

private:
    void message(std::int32_t time, std::uint8_t status, std::uint8_t pitch, std::uint8_t vel) {
        unsigned char* at = put_quantity(bytes.room(), ticks_since_last(time));
        *at++ = status;
        *at++ = pitch;
        *at++ = vel;
        bytes.advance_to(at);
    }
    std::int32_t ticks_since_last(std::int32_t time) {
        const std::int32_t delta = wrapped(std::int64_t{time} - last_time);
        last_time = time;
        if (timecode) return wrapped(std::int64_t{delta} * 2);
        const double f = delta / 125.0 * 24.0 + carry;
        // How many ticks that is nearly always follows from the time, without waiting for the carry of the message before.
        const std::int64_t at_tick = std::int64_t{time} * 24 / 125;
        auto ticks = static_cast<std::int32_t>(at_tick - last_tick);
        double rest = f - ticks;
        if (!(f >= 0.0 && rest >= 0.0 && rest < 1.0)) { // it does not, or times run backwards
            ticks = static_cast<std::int32_t>(f);
            rest = f - ticks;
        }
        carry = rest;
        last_tick += ticks;
        return ticks;
    }

    bool timecode;
    std::int32_t last_time = 0; // of the message made last
    double carry = 0.0;         // the part of a tick left over from the deltas before
    std::int64_t last_tick = 0; // ticks so far
    pending_notes pending;
    track_bytes bytes;
};

std::int32_t first_channel_of(const brisolan* x) {
    return x->params[PARAM_CHAN].min == 1 ? 1 : 0;
}

void write_counted(const unsigned char* bytes, const unsigned char* end) {
    wbytes += static_cast<std::int32_t>(end - bytes);
    t_fwrite(bytes, static_cast<int>(end - bytes));
}

void write_length() {
    std::array<unsigned char, 4> bytes;
    for (int i = 0; i < 4; ++i)
        bytes[static_cast<std::size_t>(i)] = static_cast<unsigned char>(wbytes >> (24 - 8 * i));
    t_fwrite(bytes.data(), bytes.size());
}

void stop_locked_out(brisolan* x) {
    host_locked_out now;
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

// One track behind its header, its length included; the file stands at its end afterwards. No writer: no notes.
void write_track(track_writer* notes, bool with_tempo, std::int32_t length_at) {
    wbytes = 0;
    if (with_tempo) wbytes = t_fwrite(tempo_event.data(), tempo_event.size());
    if (notes) wbytes += notes->finish();
    writevar(0);
    t_fwrite(end_of_track.data(), end_of_track.size());
    wbytes += 3;
    const std::int32_t end = t_tell();
    t_seek(length_at);
    write_length();
    t_seek(end);
}

// A chunk for each track. The events are walked once, in which all tracks grow side by side.
// Kept: only a Track of exactly 1 to the highest has a chunk; others count as the nearest track, yet are not written.
// Tracks between used ones get a chunk too, so that there may be more chunks than the header says; and only the first
// track of such a file tells the tempo, which a file of one track never does.
void write_tracks(brisolan* x, bool timecode) {
    used_tracks used(x);
    std::vector<std::unique_ptr<track_writer>> writers(used.admitted());
    const std::int32_t first_channel = first_channel_of(x);
    for (const event* e : brisolan_each(x)) {
        const std::size_t place = used.mark(e->track);
        if (place >= writers.size()) continue;
        std::unique_ptr<track_writer>& writer = writers[place];
        if (!writer) writer = std::make_unique<track_writer>(timecode, false);
        writer->add(*e, first_channel);
    }
    host_post("there are %d tracks", static_cast<int>(used.count()));
    host_post("highest track numbered %d", static_cast<int>(used.highest()));
    write_header(true, timecode, used.count());
    for (std::int32_t t = 1;; ++t) {
        stop_locked_out(x);
        t_fwrite(header.data() + FILE_HEADER_SIZE, TEMPLATE_SIZE - FILE_HEADER_SIZE);
        std::unique_ptr<track_writer>& writer = writers[static_cast<std::size_t>(t - 1)];
        write_track(writer.get(), t == 1 && !timecode, t_tell() - 4);
        writer.reset();
        if (used.highest() <= t) break;
    }
    host_post("done with all tracks");
}

// Every event, in one track.
void write_all(brisolan* x, bool timecode) {
    write_header(false, timecode, 1);
    stop_locked_out(x);
    track_writer writer(timecode, true);
    const std::int32_t first_channel = first_channel_of(x);
    for (const event* e : brisolan_each(x)) writer.add(*e, first_channel);
    write_track(&writer, false, LENGTH_AT);
}

} // namespace

void brisolan_counttracks(const brisolan* x, std::int32_t* count, std::int32_t* highest) {
    used_tracks used(x);
    for (const event* e : brisolan_each(x)) used.mark(e->track);
    *count = used.count();
    *highest = used.highest();
}

void brisolan_exportfile(brisolan* x, const char* name, std::int16_t path, std::int32_t multitrack,
                         std::int32_t timecode) {
    if (const host_err e = t_open(name, path, MIDI_FILE)) {
        host_error("can't open %s, error %d", name, static_cast<int>(e));
        return;
    }
    if (multitrack != 0)
        write_tracks(x, timecode != 0);
    else
        write_all(x, timecode != 0);
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
