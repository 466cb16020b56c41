// tests/desktop/live_test.h: the program beside a JACK server of its own and a client that measures.
// Test layer.
#pragma once

#include <gtest/gtest.h>

#include "tests/desktop/jack_peer.h"

// A note of a score that a test writes, times in milliseconds.
struct score_note {
    int time = 0;
    int pitch = 60;
    int dur = 100;
    int channel = 1;
    int velocity = 100;
};

class live_test : public testing::Test {
protected:
    // Where there is no jackd the test is skipped and says so; in continuous integration, which may pass over nothing
    // unseen, it fails.
    void SetUp() override;
    void TearDown() override;

    // Writes a MIDI file of these notes, in order of time. Its path.
    std::string score(const std::string& name, const std::vector<score_note>& notes) const;

    // Starts the program with these words behind its name.
    std::unique_ptr<process> brisolan(const std::vector<std::string>& words);
    // Runs it to its end and gives its standard output; any other status than `status` fails the test.
    std::string run(const std::vector<std::string>& words, int status = 0);

    std::string file(const std::string& name) const { return (folder / name).string(); }

    std::filesystem::path folder;
    std::unique_ptr<jack_server> server;
    std::unique_ptr<jack_peer> peer; // "peer"

private:
    int programs = 0;
};

// Judges times in the best of some tries. A machine that stands still for a moment makes single notes late, and a busy one
// without real-time priorities many: where the server itself was on time in fewer than two tries, nothing is judged.
class timing_tries {
public:
    explicit timing_tries(const std::unique_ptr<jack_peer>& witness) : peer(witness.get()) {}

    // Whether to try again: three more times at most, and not once a try was good.
    bool more();
    // Takes how far the try was off, as a multiple of what is allowed.
    void take(double off);
    // Fails the test when none was good and two or more could have been.
    void judge() const;

private:
    jack_peer* peer;
    int tries = 0;
    int on_time = 0;
    double best = 1e9;
};

// Only the messages of one kind, 0x90 for notes that begin.
std::vector<timed_message> only(int kind, const std::vector<timed_message>& messages);

// How often a text stands in another.
int count(const std::string& text, const std::string& in);
