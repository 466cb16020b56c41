// tests/desktop/jack_peer.h: a JACK server on the dummy driver, and a client of it that sends and hears MIDI and sound.
// Test layer. Speaks to JACK itself, so that what it measures does not pass through the code under test.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <jack/jack.h>

#include "tests/support/process.h"

// A server of a name that nobody else uses, which this process and the programs that it starts take for the usual one.
class jack_server {
public:
    explicit jack_server(const std::filesystem::path& folder);
    ~jack_server();
    jack_server(const jack_server&) = delete;
    jack_server& operator=(const jack_server&) = delete;

    // Why there cannot be one here; empty when there can.
    static std::string why_not();

    // Starts it; false when it does not answer.
    bool start();
    // Ends it so that it has no time to say goodbye.
    void kill();

private:
    void clean() const;

    std::filesystem::path folder;
    std::string name;
    std::unique_ptr<process> daemon;
    bool killed = false;
};

// A MIDI message with the time at which it passed, in microseconds of JACK's clock.
struct timed_message {
    std::int64_t at = 0;
    std::array<int, 3> bytes{};
};

class jack_peer {
public:
    // A client with the ports "midi in", "midi out" and "sound in".
    explicit jack_peer(const std::string& name);
    ~jack_peer();
    jack_peer(const jack_peer&) = delete;
    jack_peer& operator=(const jack_peer&) = delete;

    bool connected() const { return client != nullptr; }

    // Waits for a port of somebody else and connects it to ours; false when it does not come.
    bool hear_midi_from(const std::string& port) const;
    bool send_midi_to(const std::string& port) const;
    bool hear_sound_from(const std::string& port) const;

    // Waits until somebody is connected to "midi out", or to "midi in" as well; false when nobody comes.
    bool joined_out() const;
    bool joined_both_ways() const;

    // Sends a message, at a time or as soon as possible. Not from two threads.
    void send(const std::array<int, 3>& bytes, std::int64_t at = 0);
    // Waits until all that was sent so far has been given to the clients that are connected; false when it is not.
    bool all_sent() const;
    static std::int64_t now() { return static_cast<std::int64_t>(jack_get_time()); }

    // What has come in so far.
    std::vector<timed_message> heard() const;
    // How late the server was since it was asked last: the worst cycle, in milliseconds, and the share of the cycles that
    // were late by one or more. Where those are more than single ones, or one is a stall, times tell of the machine and not
    // of the program.
    struct lateness {
        double worst;
        double share;
        bool on_time() const { return share <= 0.02 && worst <= 20; }
    };
    lateness server_late();
    // The loudest sample heard so far.
    float loudest() const { return peak; }

private:
    static int process_cycle(jack_nframes_t frames, void* peer);
    void take(jack_nframes_t frames);
    void give(jack_nframes_t frames);
    bool join(const std::string& from, const std::string& to) const;

    static constexpr std::size_t ROOM = 65536;

    jack_client_t* client = nullptr;
    jack_port_t* midi_in = nullptr;
    jack_port_t* midi_out = nullptr;
    jack_port_t* sound_in = nullptr;
    std::string name;
    std::vector<timed_message> in = std::vector<timed_message>(ROOM);
    std::atomic<std::size_t> nin{0};
    std::vector<timed_message> out = std::vector<timed_message>(ROOM);
    std::atomic<std::size_t> nout{0};
    std::atomic<std::size_t> sent{0}; // of those in `out`
    std::atomic<int> begun{0};        // cycles
    std::atomic<float> peak{0};
    std::int64_t cycle_began = 0; // the cycle's alone
    std::atomic<std::int64_t> late{0};
    std::atomic<int> cycles{0};
    std::atomic<int> late_cycles{0};
};
