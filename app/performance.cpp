// app/performance.cpp: the notes of a performance, and what a following score answers.
// Layer: program.
#include "app/performance.h"

#include <algorithm>
#include <tuple>

#include "host/boxes/midi_device.h"
#include "host/kernel/kernel.h"
#include "host/kernel/objects.h"

constexpr std::int32_t PERFORMER_CHANNEL = 1;
constexpr std::size_t USUAL_ANSWER = 1024; // outputs to one key; more of them are a larger block, once

// What leaves the score's outlets, gathered note by note: the pitch comes last.
class outlet_watch {
public:
    explicit outlet_watch(brisolan* score) : x(score) {
        heard.reserve(USUAL_ANSWER);
        for (int k = PARAM_PITCH; k <= PARAM_CHAN; ++k) kel_watch_outlet(x, k, hear, this);
    }
    ~outlet_watch() {
        for (int k = PARAM_PITCH; k <= PARAM_CHAN; ++k) kel_watch_outlet(x, k, nullptr, nullptr);
    }
    outlet_watch(const outlet_watch&) = delete;
    outlet_watch& operator=(const outlet_watch&) = delete;

    std::vector<follow_output> heard;

private:
    static void hear(void* watch, int outlet, std::int32_t value) {
        auto& w = *static_cast<outlet_watch*>(watch);
        switch (outlet) {
        case PARAM_CHAN: w.note.chan = value; break;
        case PARAM_DUR: w.note.dur = value; break;
        case PARAM_VEL: w.note.vel = value; break;
        default:
            w.note.pitch = value;
            w.note.ms = kel_now() / NS_PER_MS;
            w.heard.push_back(w.note);
        }
    }

    brisolan* x;
    follow_output note;
};

namespace {

bool is_midi_note(const event& e) {
    return e.pitch >= 0 && e.pitch <= 127 && e.vel > 0 && e.chan >= 1 && e.chan <= 16;
}

follow_summary notes_of(const brisolan* score) {
    follow_summary s;
    for (const event* e = score->events; e; e = e->next)
        (e->chan == PERFORMER_CHANNEL ? s.performer_notes : s.accompaniment_notes) += 1;
    return s;
}

// What one key set off. The position moves when the performer's note was found ahead of it, and only then.
void tell_apart(std::vector<follow_output>& outputs, bool key_down, bool moved, follow_summary& sum) {
    if (key_down && outputs.empty()) sum.wrong += 1;
    for (follow_output& o : outputs) {
        if (!key_down) {
            o.kind = follow_kind::off;
        } else if (o.chan != PERFORMER_CHANNEL) {
            o.kind = follow_kind::accompaniment;
            sum.accompaniment += 1;
        } else {
            o.kind = moved ? follow_kind::matched : follow_kind::late;
            (moved ? sum.matched : sum.late) += 1;
        }
    }
}

void let_pass_until(std::int64_t ms) {
    kel_advance(std::max(kel_now(), ms * NS_PER_MS));
}

} // namespace

const char* name_of(follow_kind kind) {
    switch (kind) {
    case follow_kind::matched: return "matched";
    case follow_kind::late: return "late";
    case follow_kind::accompaniment: return "accompaniment";
    default: return "off";
    }
}

std::vector<performed_key> keys_of(const brisolan* performance) {
    std::vector<performed_key> keys;
    for (const event* e = performance->events; e; e = e->next) {
        if (!is_midi_note(*e)) continue;
        const std::int64_t down = std::max(e->time.get(), 0);
        keys.push_back({down, e->chan, e->pitch, std::min(e->vel.get(), 127)});
        keys.push_back({down + std::max(e->dur.get(), 1), e->chan, e->pitch, 0});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const performed_key& a, const performed_key& b) {
        return std::tuple(a.ms, a.velocity > 0) < std::tuple(b.ms, b.velocity > 0);
    });
    return keys;
}

follow_report perform(brisolan* score, const std::vector<performed_key>& keys) {
    follow_report report;
    report.summary = notes_of(score);
    outlet_watch watch(score);
    for (const performed_key& k : keys) {
        let_pass_until(k.ms);
        const event* const position = score->current;
        kel_post(midi_arrived, nullptr, midi_place(1, k.channel), midi_key(k.pitch, k.velocity));
        kel_run_queue();
        tell_apart(watch.heard, k.velocity > 0, score->current != position, report.summary);
        report.outputs.insert(report.outputs.end(), watch.heard.begin(), watch.heard.end());
        watch.heard.clear();
    }
    for (kel_time due = kel_next_due(); due >= 0; due = kel_next_due()) kel_advance(due);
    return report;
}

live_performance::live_performance(brisolan* score)
    : x(score), began(kel_now()), counts(notes_of(score)), watch(std::make_unique<outlet_watch>(score)),
      ring(ROOM) {}

live_performance::~live_performance() {
    const host_locked_out now;
    watch.reset();
}

void live_performance::arrived(void* performance, std::int32_t place, std::int32_t key) {
    auto& p = *static_cast<live_performance*>(performance);
    const event* const position = p.x->current;
    midi_arrived(nullptr, place, key);
    std::vector<follow_output>& heard = p.watch->heard;
    tell_apart(heard, key & 255, p.x->current != position, p.counts);
    for (follow_output o : heard) {
        const std::size_t at = p.in.load(std::memory_order_relaxed);
        if (at - p.out.load(std::memory_order_acquire) == ROOM) {
            p.lost += 1;
            continue;
        }
        o.ms -= p.began / NS_PER_MS;
        p.ring[at % ROOM] = o;
        p.in.store(at + 1, std::memory_order_release);
    }
    heard.clear();
}

std::vector<follow_output> live_performance::taken() {
    std::vector<follow_output> outputs;
    const std::size_t end = in.load(std::memory_order_acquire);
    for (std::size_t at = out.load(std::memory_order_relaxed); at != end; ++at)
        outputs.push_back(ring[at % ROOM]);
    out.store(end, std::memory_order_release);
    return outputs;
}

follow_summary live_performance::summary() const {
    const host_locked_out now;
    return counts;
}
