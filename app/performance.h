// app/performance.h: somebody who plays: the notes of a performance, handed in as a keyboard would, and what a following
// score answers.
// Layer: program. Works in virtual time.
// Called by `brisolan follow` and the tests.
#pragma once

#include <cstdint>
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
