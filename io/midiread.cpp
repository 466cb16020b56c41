// io/midiread.cpp: reading Standard MIDI Files, formats 0 and 1, into a sequence.
// Layer: io. Called by the reading of files.
#include "io/midiread.h"

#include <array>
#include <bit>
#include <cstring>

#include "core/messages.h"
#include "core/notechains.h"
#include "core/output.h"
#include "core/saturated.h"
#include "core/sequence.h"
#include "core/spareevents.h"
#include "io/bufferedfile.h"

midi_ending g_midi_ending = midi_ending::whole;

namespace {

constexpr std::int32_t DEFAULT_BPM = 120;
constexpr std::int32_t PROVISIONAL_DUR = 10;  // of a note whose note-off does not come, milliseconds
constexpr std::int32_t LONGEST_META = 999999; // bytes
constexpr int NOTE_ON = 0x90;
constexpr int LONGEST_PLAIN_EVENT = 5; // bytes: a delta of two, a status, two of data
constexpr int STATUS_SYSEX = 0xF0;
constexpr int STATUS_SYSEX_END = 0xF7;
constexpr int META_END_OF_TRACK = 0x2F;
constexpr int META_TEMPO = 0x51;

// The place in the buffered layer's buffer, taken out of its process-wide variables so that it can stay in registers. Who
// calls the layer itself gives it back before, and takes it again behind.
struct byte_cursor {
    byte_cursor() { take(); }
    void take() {
        next = t_next;
        end = t_readend;
    }
    void give_back() { t_next = next; }
    int get() {
        if (next < end) return *next++;
        give_back();
        const int byte = t_getc();
        take();
        return byte;
    }

    unsigned char* next;
    unsigned char* end;
};

// How reading a piece of the file went on.
enum class step_result {
    more,
    end_of_track,
    finished, // quietly
    funky,    // a time that runs backwards
    bad       // not what a MIDI file may hold
};

// What goes on during one import.
struct midi_import {
    brisolan* x;
    const char* name;
    std::int32_t option;
    bool announced = false; // the header tells of tracks
    std::int16_t tracknum = 0;
    std::int32_t abstime = 0; // milliseconds in the current chunk
    double carry = 0.0;       // the part of a millisecond left over from the deltas before
    std::int32_t ticks_per_sec = 2;
    std::int32_t bpm = DEFAULT_BPM;
    std::int32_t tpq = 1;
    int running_status = 0;
    spare_events spare{}; // of the sequence before
    note_chains notes{};  // what was read, not yet in the sequence
    held_pair held{};
    std::int32_t lasttime = 0; // of the last append
    bool changed = false;      // a note-off has fixed a duration
};

std::uint32_t big_endian(const unsigned char* at, int size) {
    std::uint32_t n = 0;
    for (int i = 0; i < size; ++i) n = n << 8 | at[i];
    return n;
}

bool is_status(int byte) {
    return (byte & 0x80) != 0;
}

// A variable-length quantity from whatever gives bytes.
template <class Get> std::int32_t quantity(Get get, bool* cut) {
    std::uint32_t value = 0;
    for (;;) {
        const int byte = get();
        if (byte < 0) {
            *cut = true;
            return -1;
        }
        value = value << 7 | static_cast<std::uint32_t>(byte & 0x7F);
        if (!is_status(byte)) return static_cast<std::int32_t>(value);
    }
}

void set_tempo(midi_import& m, std::int32_t bpm) {
    m.bpm = bpm;
    m.ticks_per_sec = wrapped(std::int64_t{m.tpq} * bpm) / 60;
    if (m.ticks_per_sec == 0)
        m.ticks_per_sec = 1; // slower than a tick a second is no tempo that could be played
}

void set_division(midi_import& m, std::uint32_t division) {
    const auto sign = static_cast<std::int16_t>(division);
    if (sign < 0) {
        const auto frames = static_cast<std::int8_t>(division >> 8);
        m.tpq = -std::int32_t{frames} * static_cast<std::int32_t>(division & 0xFF);
    } else {
        m.tpq = sign;
    }
    if (m.tpq <= 0) m.tpq = 1;
    set_tempo(m, DEFAULT_BPM);
}

// Reads the file's header; false, with a console line, when it is none that can be read.
bool read_header(midi_import& m) {
    std::array<unsigned char, 8> head;
    std::array<unsigned char, 6> data;
    const int got = t_fread(head.data(), head.size());
    if (got < static_cast<int>(head.size()) || std::memcmp(head.data(), "MThd", 4) != 0 ||
        big_endian(head.data() + 4, 4) != data.size() ||
        t_fread(data.data(), data.size()) < static_cast<int>(data.size())) {
        host_error("brisolan: %s: bad midi file", m.name);
        return false;
    }
    const int format = static_cast<int>(big_endian(data.data(), 2));
    if (format > 1) {
        host_error("brisolan: MIDI File format %d not supported", format);
        return false;
    }
    m.announced = big_endian(data.data() + 2, 2) != 0;
    set_division(m, big_endian(data.data() + 4, 2));
    return true;
}

// The step in milliseconds for a delta in ticks, which is -1 where the file ended in its place.
step_result convert(midi_import& m, std::int32_t delta, std::int32_t* step) {
    if (m.option != 0) {
        *step = delta / 2;
    } else if (delta != 0 || m.carry >= 1.0) {
        const double f = m.carry + delta * 1000.0 / m.ticks_per_sec;
        if (f < 0.0) return step_result::funky;
        *step = f < INT32_MAX ? static_cast<std::int32_t>(f) : INT32_MAX;
        m.carry = f - *step;
    }
    return delta < 0 ? step_result::finished : step_result::more;
}

// A system-exclusive message: no byte with the high bit may stand in it but its end.
step_result skip_sysex() {
    bool cut = false;
    const std::int32_t length = readvar(&cut);
    if (cut) return step_result::finished;
    for (std::int32_t left = length; left > 0; --left) {
        const int byte = t_getc();
        if (byte < 0) return step_result::bad;
        if (is_status(byte) && (left > 1 || byte != STATUS_SYSEX_END)) return step_result::bad;
    }
    return step_result::more;
}

// Kept: the tempo is rounded down to whole beats a minute, which puts times slightly off the file's own; sequences read
// before compare equal to the same file read today.
void read_tempo(midi_import& m, const std::array<unsigned char, 3>& data) {
    const auto n = static_cast<std::int32_t>(big_endian(data.data(), 3));
    set_tempo(m, n == 0 ? DEFAULT_BPM : 60000000 / n); // at least 3, as n has 24 bits
}

step_result read_meta(midi_import& m) {
    const int type = t_getc();
    if (type < 0) return step_result::finished;
    bool cut = false;
    const std::int32_t length = readvar(&cut);
    if (cut) return step_result::finished;
    if (length < 0 || length > LONGEST_META) return step_result::bad;
    std::array<unsigned char, 3> data{}; // what a short tempo event lacks is 0
    for (std::int32_t i = 0; i < length; ++i) {
        const int byte = t_getc();
        if (byte < 0) return step_result::finished;
        if (i < 3) data[static_cast<std::size_t>(i)] = static_cast<unsigned char>(byte);
    }
    if (type == META_TEMPO) read_tempo(m, data);
    return type == META_END_OF_TRACK ? step_result::end_of_track : step_result::more;
}

void note_on(midi_import& m, std::int32_t abstime, int status, int pitch, int vel) {
    const std::int32_t time = abstime < 0 ? 0 : abstime;
    event* e = m.spare.fill({time, pitch, vel, PROVISIONAL_DUR, (status & 0x0F) + 1, m.tracknum, 0, 0});
    if (!e) return; // the host's limit: the note is lost, the rest goes on
    const bool ordered = m.tracknum > 1 && !m.notes.empty();
    if (m.notes.append(e, ordered)) {
        m.lasttime = time;
    } else {
        // Behind the last track number that there is, tracks count as first ones again.
        host_post("oops! lost my marbles");
        brisolan_freeevent(e);
        m.lasttime = 0;
    }
    m.held.hold(m.notes.last_appended());
}

// One of its two callers is a loop that must not call anything.
[[gnu::always_inline]] inline void note_off(midi_import& m, std::int32_t abstime, int pitch) {
    event* e = m.held.unhold(pitch, m.tracknum);
    if (!e) return;
    const std::int32_t dur = wrapped(std::int64_t{abstime} - e->time);
    e->dur = dur < 0 ? 0 : dur;
    m.changed = true;
}

step_result read_channel_message(midi_import& m, byte_cursor& in, int status) {
    int first = status;
    if (is_status(status)) {
        m.running_status = status;
        first = in.get();
        if (first < 0) return step_result::finished;
    }
    const int kind = m.running_status & 0xF0;
    if (kind == 0xC0 || kind == 0xD0) return step_result::more;
    const int second = in.get();
    if (second < 0) return step_result::finished;
    if (kind == 0x90 && second != 0)
        note_on(m, m.abstime, m.running_status, first, second);
    else if (kind == 0x90 || kind == 0x80)
        note_off(m, m.abstime, first);
    return step_result::more;
}

step_result read_event(midi_import& m, byte_cursor& in) {
    bool cut = false;
    const std::int32_t delta = quantity([&in] { return in.get(); }, &cut);
    std::int32_t step = 0;
    if (const step_result r = convert(m, delta, &step); r != step_result::more) return r;
    const int status = in.get();
    if (status < 0) return step_result::finished;
    m.abstime = wrapped(std::int64_t{m.abstime} + step);
    if (status < STATUS_SYSEX) return read_channel_message(m, in, status);
    in.give_back();
    const bool exclusive = status == STATUS_SYSEX || status == STATUS_SYSEX_END;
    const step_result r = exclusive ? skip_sysex() : read_meta(m);
    in.take();
    return r;
}

// The time along a row of plain notes, as convert counts it. It is foretold from the ticks so far, so that it need not wait
// for the rounding of the one before; what that leaves over only confirms it, and where it does not, is what counts.
class plain_clock {
public:
    explicit plain_clock(const midi_import& m)
        : time(static_cast<std::uint32_t>(m.abstime)), carry(m.carry), halved(m.option != 0),
          start(m.abstime + m.carry), per_second(m.ticks_per_sec), ms_per_tick(1000.0 / m.ticks_per_sec) {}

    // Else times could run backwards or be too long for their integers.
    bool serves() const { return halved || (per_second >= 1.0 && carry < 1.0); }

    // Goes to the event that comes `delta` ticks after the one before; `delta` has at most two bytes.
    void go(std::int32_t delta) {
        carry_before = carry;
        time_before = time;
        ticks += delta;
        if (halved) {
            time += static_cast<std::uint32_t>(delta) / 2;
            return;
        }
        time = static_cast<std::uint32_t>(static_cast<std::int64_t>(start + ticks * ms_per_tick));
        const double f = carry + delta * 1000.0 / per_second;
        carry = f - static_cast<std::int32_t>(time - time_before);
        // Not from 0 to below 1, looked at as bits.
        if (std::bit_cast<std::uint64_t>(carry) >= std::bit_cast<std::uint64_t>(1.0)) [[unlikely]] {
            const auto step = static_cast<std::int32_t>(f);
            carry = f - step;
            time = time_before + static_cast<std::uint32_t>(step);
        }
    }

    // Takes the last step back. No other may follow.
    void go_back() {
        carry = carry_before;
        time = time_before;
    }

    std::int32_t abstime() const { return static_cast<std::int32_t>(time); }
    double left_over() const { return carry; }

private:
    std::uint32_t time; // milliseconds
    std::uint32_t time_before = 0;
    double carry;
    double carry_before = 0.0;
    std::int32_t ticks = 0;
    const bool halved;
    const double start, per_second, ms_per_tick;
};

// Nearly every event of a file is a note-on or a note-off. Reads those that lie whole in the buffer, one after the other,
// as read_event would; stops in front of any other, and of a note that does not simply go behind the one before it. What
// changes from one to the next stays in registers, which only works while nothing is called: so there is one loop for as
// long as events are left of the sequence before, and one that gets fresh ones.
template <bool fresh> void read_plain_notes(midi_import& m, byte_cursor& in) {
    plain_clock clock(m);
    if (in.end - in.next < LONGEST_PLAIN_EVENT || !clock.serves()) return;
    const unsigned char* next = in.next;
    const unsigned char* const last =
        in.end - LONGEST_PLAIN_EVENT; // the last place where one is sure to lie whole
    int status = m.running_status;
    const std::int32_t track = m.tracknum;
    note_run run(&m.notes, track > 1);
    while (next <= last) {
        // One byte of delta or two: it changes from note to note, and no branch is to guess it.
        const std::uint32_t first = next[0];
        const std::uint32_t second = next[1];
        if (first & second & 0x80) break;
        const std::uint32_t two = first >> 7;
        const std::uint32_t delta = first + ((0U - two) & (first * 127 + second - 0x4000));
        const unsigned char* data = next + two + 1;
        const int new_status = is_status(*data) ? *data++ : status;
        if (new_status >= 0xA0 || new_status < 0x80) break;
        clock.go(static_cast<std::int32_t>(delta));
        const std::int32_t time = clock.abstime();
        const int pitch = data[0];
        const int vel = data[1];
        if (new_status >= NOTE_ON && vel != 0) {
            if (!run.takes(time) || (m.spare.empty() && !(fresh && m.spare.get_one()))) {
                clock.go_back();
                break;
            }
            event* e =
                m.spare.fill({time, pitch, vel, PROVISIONAL_DUR, (new_status & 0x0F) + 1, track, 0, 0});
            run.append(e, time);
            m.held.hold(e);
            m.lasttime = time;
        } else {
            note_off(m, time, pitch);
        }
        status = new_status;
        next = data + 2;
    }
    run.finish();
    in.next += next - in.next;
    m.abstime = clock.abstime();
    m.carry = clock.left_over();
    m.running_status = status;
}

step_result read_track(midi_import& m) {
    byte_cursor in;
    step_result r = step_result::more;
    while (r == step_result::more) {
        if (!m.spare.empty()) read_plain_notes<false>(m, in);
        if (m.spare.empty()) read_plain_notes<true>(m, in);
        r = read_event(m, in);
    }
    in.give_back();
    return r;
}

// Whatever a chunk calls itself, and however long it claims to be, it is read as a track to its End of Track.
step_result read_chunks(midi_import& m) {
    for (;;) {
        std::array<unsigned char, 8> head;
        if (t_fread(head.data(), head.size()) < static_cast<int>(head.size())) {
            if (m.tracknum == 0 && m.announced) g_midi_ending = midi_ending::cut;
            return step_result::finished;
        }
        m.tracknum = static_cast<std::int16_t>(m.tracknum + 1);
        m.abstime = 0;
        m.carry = 0.0;
        const step_result r = read_track(m);
        if (r == step_result::finished) g_midi_ending = midi_ending::cut;
        if (r != step_result::end_of_track) return r;
    }
}

void read_notes(midi_import& m) {
    {
        host_locked_out now;
        m.spare.keep(brisolan_clearkeeping(m.x));
        m.x->restoring = std::uint8_t{1}; // the stop inside has lowered it
    }
    switch (read_chunks(m)) {
    case step_result::funky:
        g_midi_ending = midi_ending::funky;
        host_post("fdt < 0... something's funky");
        break;
    case step_result::bad:
        g_midi_ending = midi_ending::bad;
        host_error("brisolan: %s: bad midi file", m.name);
        break;
    default: break;
    }
    if (m.changed) {
        m.x->redraw.changed = std::uint8_t{1};
        brisolan_redraw(m.x);
    }
    if (!m.notes.empty()) m.x->lasttime = m.lasttime;
    brisolan_adopt(m.x, &m.notes);
}

} // namespace

std::int32_t readvar(bool* cut) {
    return quantity(t_getc, cut);
}

void brisolan_importmidi(brisolan* x, const char* name, std::int32_t import_option) {
    midi_import m{.x = x, .name = name, .option = import_option};
    x->restoring = std::uint8_t{1};
    g_midi_ending = midi_ending::bad;
    if (read_header(m)) {
        g_midi_ending = midi_ending::whole;
        read_notes(m);
    }
    t_close();
    host_locked_out now;
    brisolan_stop(x);
}
