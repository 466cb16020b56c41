// tests/desktop/live_record_test.cpp: what another program plays, recorded and followed.
// Test layer.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <sstream>

#include "tests/desktop/live_test.h"

namespace {

using bytes = std::array<int, 3>;

constexpr int READY_MS = 500; // from a port that is there to a program that listens

class live_record : public live_test {
protected:
    // Starts recording into a file through a port of its own, which the peer plays to from then on.
    std::unique_ptr<process> record(const std::vector<std::string>& words) {
        std::vector<std::string> all{"record"};
        all.insert(all.end(), words.begin(), words.end());
        all.insert(all.end(), {"--virtual", "keys"});
        std::unique_ptr<process> p = brisolan(all);
        EXPECT_TRUE(peer->send_midi_to("brisolan:keys")) << p->err();
        sleep_ms(READY_MS);
        return p;
    }
    // A key held from one time to another, in milliseconds from `at`, JACK's microseconds.
    void key(std::int64_t at, int pitch, int down, int up, int channel = 1) {
        keys.push_back({at + down * std::int64_t{1000}, {0x90 | (channel - 1), pitch, 100}});
        if (up >= 0) keys.push_back({at + up * std::int64_t{1000}, {0x80 | (channel - 1), pitch, 64}});
    }
    void play_keys() {
        std::stable_sort(keys.begin(), keys.end(),
                         [](const timed_message& a, const timed_message& b) { return a.at < b.at; });
        for (const timed_message& k : keys) peer->send(k.bytes, k.at);
        keys.clear();
    }
    // Plays them and waits until they have reached the program.
    void play_keys_through() {
        play_keys();
        EXPECT_TRUE(peer->all_sent());
    }
    // The events of a file, eight numbers each.
    std::vector<std::array<int, 8>> events(const std::string& name) {
        std::istringstream lines(run({"list", file(name)}));
        std::vector<std::array<int, 8>> all;
        for (std::array<int, 8> e{}; lines >> e[0] >> e[1] >> e[2] >> e[3] >> e[4] >> e[5] >> e[6] >> e[7];)
            all.push_back(e);
        return all;
    }

    std::vector<timed_message> keys;
};

enum { TIME, PITCH, VEL, DUR, CHAN };

TEST_F(live_record, notes_come_into_the_file_with_their_times) {
    constexpr int NOTES = 12;
    constexpr int APART = 80;
    constexpr double ALLOWED_MS = 4;
    timing_tries tries(peer);
    while (tries.more()) {
        const std::unique_ptr<process> p = record({file("take.kel"), "--force"});
        const std::int64_t begin = jack_peer::now() + 200'000;
        for (int i = 0; i < NOTES; ++i) key(begin, 60 + i, i * APART, i * APART + 50, 1 + i % 2);
        play_keys_through();
        p->send(SIGINT);
        EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
        const auto got = events("take.kel");
        ASSERT_EQ(got.size(), static_cast<std::size_t>(NOTES)) << run({"list", file("take.kel")});
        std::vector<double> off;
        for (int i = 0; i < NOTES; ++i) {
            const auto& e = got[static_cast<std::size_t>(i)];
            EXPECT_EQ(e[PITCH], 60 + i);
            EXPECT_EQ(e[VEL], 100);
            EXPECT_EQ(e[CHAN], 1 + i % 2);
            off.push_back(std::abs(e[TIME] - got[0][TIME] - static_cast<double>(i) * APART));
            off.push_back(std::abs(e[DUR] - 50.0));
        }
        tries.take(*std::max_element(off.begin(), off.end()) / ALLOWED_MS);
    }
    tries.judge();
}

TEST_F(live_record, messages_that_come_at_once_are_told_apart) {
    constexpr int NOTES = 40;
    const std::unique_ptr<process> p = record({file("take.kel")});
    const std::int64_t at = jack_peer::now() + 100'000;
    for (int i = 0; i < NOTES; ++i) key(at, 40 + i, 0, -1);
    for (int i = 0; i < NOTES; ++i) key(at, 40 + i, 100, -1);
    for (std::size_t i = NOTES; i < 2 * NOTES; ++i) keys[i].bytes[0] = 0x80;
    play_keys_through();
    p->send(SIGINT);
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    const auto got = events("take.kel");
    ASSERT_EQ(got.size(), static_cast<std::size_t>(NOTES));
    for (int i = 0; i < NOTES; ++i) EXPECT_EQ(got[static_cast<std::size_t>(i)][PITCH], 40 + i);
}

TEST_F(live_record, every_signal_that_ends_a_program_saves_what_was_played) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const std::string name = "take" + std::to_string(signal) + ".mid";
        const std::unique_ptr<process> p = record({file(name)});
        key(jack_peer::now(), 60, 50, 100);
        key(jack_peer::now(), 64, 150, -1); // still held when the signal comes
        play_keys_through();
        sleep_ms(300);
        p->send(signal);
        EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
        const auto got = events(name);
        ASSERT_EQ(got.size(), 2U) << "signal " << signal;
        EXPECT_EQ(got[0][PITCH], 60);
        EXPECT_EQ(got[1][PITCH], 64);
        EXPECT_GT(got[1][DUR], 50) << "a key that is held lasts until the end";
        peer->send({0x80, 64, 64});
    }
}

TEST_F(live_record, until_ends_it_by_itself) {
    const std::unique_ptr<process> p = record({file("take.kel"), "--until", "4000"});
    key(jack_peer::now(), 72, 50, 150);
    play_keys();
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    const auto got = events("take.kel");
    ASSERT_EQ(got.size(), 1U);
    EXPECT_EQ(got[0][PITCH], 72);
}

TEST_F(live_record, from_a_port_that_is_named) {
    const std::unique_ptr<process> p =
        brisolan({"record", file("take.kel"), "--port", "peer", "--until", "4000"});
    ASSERT_TRUE(peer->joined_out()) << p->err();
    sleep_ms(READY_MS);
    const std::int64_t at = jack_peer::now() + 200'000;
    peer->send({0x90, 50, 90}, at);
    peer->send({0x90, 50, 0}, at + 100'000); // a note-on of velocity 0 ends the note
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    const auto got = events("take.kel");
    ASSERT_EQ(got.size(), 1U) << p->err();
    EXPECT_LT(got[0][DUR], 3500) << "it lasted until the end";
}

TEST_F(live_record, an_input_that_disappears_is_told_once_and_what_came_in_is_saved) {
    const std::unique_ptr<process> p = record({file("take.kel")});
    key(jack_peer::now(), 60, 20, 60);
    play_keys_through();
    server->kill();
    peer.reset();
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return count("has gone", p->err()) == 1; })) << p->err();
    sleep_ms(1500);
    p->send(SIGTERM);
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    EXPECT_EQ(count("brisolan: MIDI input \"keys\" has gone; going on without it\n", p->err()), 1)
        << p->err();
    EXPECT_EQ(events("take.kel").size(), 1U);
}

TEST_F(live_record, a_file_that_exists_is_refused_before_anybody_plays) {
    score("take.mid", {{0, 60, 100}});
    const std::unique_ptr<process> p = brisolan({"record", file("take.mid"), "--virtual", "keys"});
    EXPECT_EQ(p->wait(PATIENCE_MS), 1);
    EXPECT_EQ(p->err(), "brisolan: " + file("take.mid") + ": exists; --force replaces it\n");
}

class live_follow : public live_record {};

TEST_F(live_follow, the_score_answers_each_note_that_is_played) {
    // Three notes of the performer, an accompaniment before the second and the third.
    const std::string name =
        score("score.mid",
              {{0, 60, 100, 1}, {400, 40, 100, 2}, {500, 62, 100, 1}, {900, 41, 100, 2}, {1000, 64, 100, 1}});
    const std::unique_ptr<process> p =
        brisolan({"follow", name, "--virtual", "keys", "--to-virtual", "answers"});
    // Two clients of one name: which of the two is renamed is JACK's to say.
    ASSERT_TRUE(peer->hear_midi_from("brisolan:answers")) << p->err();
    ASSERT_TRUE(peer->send_midi_to("brisolan-01:keys")) << p->err();
    sleep_ms(READY_MS);
    const std::int64_t begin = jack_peer::now() + 100'000;
    key(begin, 60, 0, 100);
    key(begin, 62, 300, 400);
    key(begin, 64, 600, 700);
    play_keys();
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    std::vector<bytes> on;
    std::vector<std::int64_t> at;
    for (const timed_message& m : only(0x90, peer->heard())) {
        on.push_back(m.bytes);
        at.push_back((m.at - begin) / 1000);
    }
    EXPECT_EQ(on, (std::vector<bytes>{
                      {0x90, 60, 100}, {0x91, 40, 100}, {0x90, 62, 100}, {0x91, 41, 100}, {0x90, 64, 100}}));
    ASSERT_EQ(at.size(), 5U);
    // No answer comes before what it answers.
    EXPECT_GE(at[0], 0);
    EXPECT_GE(at[1], 300);
    EXPECT_GE(at[4], 600);
    const std::string out = p->out();
    EXPECT_EQ(count(" matched ", out), 3) << out;
    EXPECT_EQ(count(" accompaniment ", out), 2) << out;
    EXPECT_EQ(count("notes matched: 3 of 3\nplayed late: 0\nnever matched: 0\naccompaniment played: 2 of 2\n"
                    "wrong notes: 0\n",
                    out),
              1)
        << out;
}

TEST_F(live_follow, an_interrupt_ends_it_with_the_summary_and_every_note_ended) {
    const std::string name = score("score.mid", {{0, 60, 20'000, 1}, {500, 62, 100, 1}});
    const std::unique_ptr<process> p =
        brisolan({"follow", name, "--virtual", "keys", "--to-port", "peer", "--json"});
    ASSERT_TRUE(peer->send_midi_to("brisolan-01:keys")) << p->err();
    sleep_ms(READY_MS);
    peer->send({0x90, 99, 100});
    peer->send({0x90, 60, 100});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return !peer->heard().empty(); })) << p->err();
    p->send(SIGINT);
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    std::vector<bytes> got;
    for (const timed_message& m : peer->heard()) got.push_back(m.bytes);
    EXPECT_EQ(got, (std::vector<bytes>{{0x90, 60, 100}, {0x80, 60, 64}, {0xB0, 123, 0}, {0xB0, 120, 0}}));
    EXPECT_EQ(count("\"summary\": {\"performer_notes\": 2, \"matched\": 1, \"late\": 0, \"never\": 1, "
                    "\"accompaniment_notes\": 0, \"accompaniment\": 0, \"wrong\": 1}",
                    p->out()),
              1)
        << p->out();
}

class live_patch : public live_record {};

TEST_F(live_patch, notes_go_through_a_patch) {
    std::FILE* const patch = std::fopen(file("through.kel").c_str(), "w");
    ASSERT_TRUE(patch);
    std::fputs("#N notein;\n#P box 10 10;\n#N noteout;\n#P box 10 60;\n#P cord 0 0 1 0;\n#P cord 0 1 1 1;\n"
               "#P cord 0 2 1 2;\n",
               patch);
    std::fclose(patch);
    const std::unique_ptr<process> p =
        brisolan({"patch", file("through.kel"), "--virtual", "in", "--to-port", "peer"});
    ASSERT_TRUE(peer->send_midi_to("brisolan-01:in")) << p->err();
    sleep_ms(READY_MS);
    peer->send({0x93, 70, 80});
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return peer->heard().size() == 1; })) << p->err();
    p->send(SIGTERM);
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    std::vector<bytes> got;
    for (const timed_message& m : peer->heard()) got.push_back(m.bytes);
    EXPECT_EQ(got, (std::vector<bytes>{{0x93, 70, 80}, {0x83, 70, 64}, {0xB3, 123, 0}, {0xB3, 120, 0}}));
}

} // namespace
