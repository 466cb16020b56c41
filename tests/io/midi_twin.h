// tests/io/midi_twin.h: the MIDI reader's slow twin: one note after the other is appended to the sequence, and the held
// list is a list. What it leaves in the instance is what the reader must leave.
// Test layer. Used by the comparison of the two.
#pragma once

#include <list>
#include <optional>
#include <string>

#include "core/messages.h"
#include "core/output.h"
#include "core/sequence.h"

class midi_twin {
public:
    midi_twin(brisolan* instance, std::string file, std::int32_t import_option)
        : x(instance), data(std::move(file)), option(import_option) {}

    void run() {
        host_locked_out now;
        x->restoring = std::uint8_t{1};
        if (header()) {
            brisolan_clear(x);
            x->restoring = std::uint8_t{1};
            while (chunk()) {
            }
        }
        brisolan_stop(x);
    }

private:
    struct node {
        event* e;
    };

    int get() { return at < data.size() ? static_cast<unsigned char>(data[at++]) : -1; }

    std::optional<std::string> get(std::size_t n) {
        const std::string s = data.substr(std::min(at, data.size()), n);
        at = std::min(data.size(), at + n);
        return s.size() == n ? std::optional(s) : std::nullopt;
    }

    static std::uint32_t number(const std::string& s) {
        std::uint32_t n = 0;
        for (const char c : s) n = n * 256 + static_cast<unsigned char>(c);
        return n;
    }

    bool bad() {
        host_error("brisolan: %s: bad midi file", "a.mid");
        return false;
    }

    bool header() {
        if (get(4) != "MThd") return bad();
        const auto size = get(4);
        if (!size || number(*size) != 6) return bad();
        const auto six = get(6);
        if (!six) return bad();
        const std::uint32_t format = number(six->substr(0, 2));
        if (format > 1) {
            host_error("brisolan: MIDI File format %d not supported", static_cast<int>(format));
            return false;
        }
        const std::uint32_t division = number(six->substr(4));
        tpq = static_cast<int>(division);
        if (division >= 0x8000)
            tpq = (256 - static_cast<int>(division >> 8)) * static_cast<int>(division & 0xFF);
        if (tpq <= 0) {
            tpq = 1;
            per_second = 2;
        } else {
            per_second = 120 * tpq / 60;
        }
        return true;
    }

    // False when the import is over.
    bool chunk() {
        if (!get(8)) return false;
        tracknum = static_cast<std::int16_t>(tracknum + 1);
        abstime = 0;
        carry = 0;
        for (;;) {
            ended = false;
            if (!one_event()) return false;
            if (ended) return true;
        }
    }

    // Nothing at the end of the file.
    std::optional<std::int32_t> quantity() {
        std::uint32_t n = 0;
        for (;;) {
            const int c = get();
            if (c < 0) return std::nullopt;
            n = n * 128 + static_cast<std::uint32_t>(c % 128);
            if (c < 128) return static_cast<std::int32_t>(n);
        }
    }

    bool one_event() {
        const std::int32_t delta = quantity().value_or(-1);
        std::int32_t step = 0;
        if (option == 0) {
            const double f = carry + delta * 1000.0 / per_second;
            if (f < 0.0) {
                host_post("fdt < 0... something's funky");
                return false;
            }
            step = f >= 2147483647.0 ? 2147483647 : static_cast<std::int32_t>(f);
            carry = f - step;
        } else {
            step = delta / 2;
        }
        if (delta < 0) return false;
        const int status = get();
        if (status < 0) return false;
        abstime =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(abstime) + static_cast<std::uint32_t>(step));
        if (status == 0xF0 || status == 0xF7) return exclusive();
        if (status > 0xF0) return meta();
        return message(status);
    }

    bool exclusive() {
        const auto size = quantity();
        if (!size) return false;
        for (std::int32_t i = 0; i < *size; ++i) {
            const int c = get();
            if (c < 0) return bad();
            if (c >= 0x80 && !(i == *size - 1 && c == 0xF7)) return bad();
        }
        return true;
    }

    bool meta() {
        const int type = get();
        if (type < 0) return false;
        const auto size = quantity();
        if (!size) return false;
        if (*size > 999999 || *size < 0) return bad();
        auto content = get(static_cast<std::size_t>(*size));
        if (!content) return false;
        if (type == 0x2F) ended = true;
        if (type == 0x51) {
            content->resize(3);
            const int n = static_cast<int>(number(*content));
            const int bpm = n ? 60000000 / n : 120;
            const std::int64_t product = std::int64_t{tpq} * (bpm > 0 ? bpm : 120);
            per_second = static_cast<std::int32_t>(static_cast<std::uint32_t>(product)) / 60;
            if (per_second == 0) per_second = 1;
        }
        return true;
    }

    bool message(int first) {
        if (first >= 0x80) {
            running = first;
            first = get();
            if (first < 0) return false;
        }
        if (running >= 0xC0 && running <= 0xDF) return true;
        const int second = get();
        if (second < 0) return false;
        if (running >> 4 == 9 && second > 0) note_on(first, second);
        if ((running >> 4 == 9 && second == 0) || running >> 4 == 8) note_off(first);
        return true;
    }

    void note_on(int pitch, int vel) {
        x->lasttime = 0;
        const std::int16_t hint = tracknum > 1 && any_note;
        brisolan_doappend(x, abstime, pitch, vel, 10, running % 16 + 1, tracknum, 0, 0, hint);
        any_note = true;
        event* e = x->current;
        if (held.empty()) {
            held.push_back({e});
            tail = &held.back();
        } else if (tail) {
            // Behind the tail's node, in front of none: what stood there can no longer be reached.
            for (auto n = held.begin(); n != held.end(); ++n) {
                if (&*n != tail) continue;
                held.erase(std::next(n), held.end());
                break;
            }
            held.push_back({e});
        }
    }

    void note_off(int pitch) {
        for (auto n = held.begin(); n != held.end(); ++n) {
            if (n->e->pitch != pitch || n->e->track != tracknum) continue;
            const std::uint32_t dur =
                static_cast<std::uint32_t>(abstime) - static_cast<std::uint32_t>(n->e->time.get());
            n->e->dur = std::max(0, static_cast<std::int32_t>(dur));
            x->redraw.changed = std::uint8_t{1};
            if (&*n == tail) tail = nullptr;
            held.erase(n);
            return;
        }
    }

    brisolan* x;
    std::string data;
    std::int32_t option;
    std::size_t at = 0;
    int tpq = 0;
    std::int32_t per_second = 0;
    std::int16_t tracknum = 0;
    std::int32_t abstime = 0;
    double carry = 0;
    int running = 0;
    bool any_note = false;
    bool ended = false;
    std::list<node> held;
    node* tail = nullptr;
};
