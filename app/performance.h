// app/performance.h: somebody who plays: the notes of a performance, handed in as a keyboard would, or those of a person;
// and what a following score answers.
// Layer: program.
// Called by `brisolan follow` and the tests.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/instance.h"

// A key going down (velocity above 0) or up.
struct performed_key {
    std::int64_t ms = 0;
    int channel = 1;
    int pitch = 0;
    int velocity = 0;
};

// Every note of a sequence as its key goes down and up, in order of time; at one time keys go up before others go down.
// What is no MIDI note is left out. [main]
std::vector<performed_key> keys_of(const brisolan* performance);

// What came out of a following score, and why.
enum class follow_kind {
    matched,       // the performer's note, in its place
    late,          // the performer's note, after it had been passed over
    accompaniment, // any other note of the score
    off            // the performer let go of the note
};

// As the printed lines have it, "matched". [both]
const char* name_of(follow_kind kind);

struct follow_output {
    std::int64_t ms = 0;
    follow_kind kind = follow_kind::off;
    std::int32_t pitch = 0;
    std::int32_t vel = 0;
    std::int32_t dur = 0;
    std::int32_t chan = 0;
};

struct follow_summary {
    std::int64_t performer_notes = 0;     // of the score
    std::int64_t accompaniment_notes = 0; // of the score
    std::int64_t matched = 0;
    std::int64_t late = 0;
    std::int64_t accompaniment = 0;
    std::int64_t wrong = 0; // played notes that nothing came of
    std::int64_t never() const { return performer_notes - matched - late; }
};

struct follow_report {
    std::vector<follow_output> outputs; // in the order in which they came
    follow_summary summary;
};

// Plays the keys to the running follow patch around the score, and lets time pass until everything has ended. Virtual
// time, which must be at 0. [main]
follow_report perform(brisolan* score, const std::vector<performed_key>& keys);

class outlet_watch;

// A person who plays to the running follow patch around the score. The score outlives it, and nobody hands in keys any
// more when it goes.
class live_performance {
public:
    explicit live_performance(brisolan* score); // time counts from now. [main]
    ~live_performance();
    live_performance(const live_performance&) = delete;
    live_performance& operator=(const live_performance&) = delete;

    // Takes a key in as midi_arrived does, and what comes of it. [scheduler]
    static void arrived(void* performance, std::int32_t place, std::int32_t key);

    // What has come out since it was asked last. [main]
    std::vector<follow_output> taken();

    // The counts until now. [main]
    follow_summary summary() const;

    // How many outputs came too fast to be told; they were played all the same. [main]
    unsigned untold() const { return lost; }

private:
    static constexpr std::size_t ROOM = 16384; // outputs between two looks at them

    brisolan* x;
    std::int64_t began;
    follow_summary counts; // written at scheduler level
    std::unique_ptr<outlet_watch> watch;
    // The scheduler writes at `in`, the main level reads at `out`.
    std::vector<follow_output> ring;
    std::atomic<std::size_t> in{0};
    std::atomic<std::size_t> out{0};
    std::atomic<unsigned> lost{0};
};
