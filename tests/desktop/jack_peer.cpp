// tests/desktop/jack_peer.cpp: a JACK server on the dummy driver, and a client of it.
// Test layer.
#include "tests/desktop/jack_peer.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>

#include <jack/midiport.h>
#include <unistd.h>

namespace {

constexpr const char* RATE = "48000";
constexpr int RATE_HZ = 48000;
constexpr const char* PERIOD = "64";
constexpr const char* CLIENT_MS = "2000";

std::int64_t microseconds(jack_nframes_t frames) {
    return std::int64_t{frames} * 1'000'000 / RATE_HZ;
}

bool is_program(const std::filesystem::path& file) {
    return access(file.c_str(), X_OK) == 0;
}

bool on_path(const std::string& program) {
    const char* const path = std::getenv("PATH");
    std::string folders = path ? path : "";
    for (std::size_t at = 0; at <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', at), folders.size());
        if (is_program(std::filesystem::path(folders.substr(at, end - at)) / program)) return true;
        at = end + 1;
    }
    return false;
}

bool server_answers() {
    jack_client_t* const c = jack_client_open("asks", JackNoStartServer, nullptr);
    if (c) jack_client_close(c);
    return c != nullptr;
}

} // namespace

jack_server::jack_server(const std::filesystem::path& in) : folder(in) {
    static int count = 0;
    name = "brisolan-test-" + std::to_string(getpid()) + "-" + std::to_string(++count);
    setenv("JACK_DEFAULT_SERVER", name.c_str(), 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
    const auto drop = [](const char*) {};
    jack_set_error_function(drop);
    jack_set_info_function(drop);
}

jack_server::~jack_server() {
    // JACK knows 8 servers and goes on counting one that was killed, until one of the same name has ended well.
    if (!daemon && killed) start();
    if (daemon) {
        daemon->send(SIGTERM);
        daemon->wait(5000);
        daemon.reset();
    }
    clean();
    unsetenv("JACK_DEFAULT_SERVER");
}

std::string jack_server::why_not() {
    return on_path("jackd") ? "" : "there is no jackd (Debian: jackd2)";
}

// With real-time priority where that is allowed, and waiting for its clients, for longer than two periods: on a busy
// machine it would else begin the next cycle while they still write or read the last one's messages, which are lost then.
// Not for longer, as a client that comes in mid-cycle may be waited for in vain, in ten cycles.
bool jack_server::start() {
    daemon =
        std::make_unique<process>(folder, "jackd",
                                  std::vector<std::string>{"jackd", "-n", name, "-R", "-S", "-t", CLIENT_MS,
                                                           "-d", "dummy", "-r", RATE, "-p", PERIOD});
    return holds_within(PATIENCE_MS, [this] { return !daemon->runs() || server_answers(); }) &&
           daemon->runs();
}

void jack_server::kill() {
    daemon->send(SIGKILL);
    daemon->wait(5000);
    daemon.reset();
    killed = true;
}

// A server that was killed leaves its clients' semaphores and its socket.
void jack_server::clean() const {
    std::error_code none;
    for (const char* place : {"/dev/shm", "/tmp"}) {
        std::vector<std::filesystem::path> left;
        for (const auto& file : std::filesystem::directory_iterator(place, none)) {
            if (file.path().filename().string().find(name) != std::string::npos) left.push_back(file.path());
        }
        for (const std::filesystem::path& file : left) std::filesystem::remove_all(file, none);
    }
}

jack_peer::jack_peer(const std::string& n) : name(n) {
    constexpr auto OPTIONS = static_cast<jack_options_t>(JackNoStartServer | JackUseExactName);
    // A server that stands still for a moment refuses.
    holds_within(PATIENCE_MS, [this] { return (client = jack_client_open(name.c_str(), OPTIONS, nullptr)); });
    if (!client) return;
    midi_in = jack_port_register(client, "midi in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    midi_out = jack_port_register(client, "midi out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    sound_in = jack_port_register(client, "sound in", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    jack_set_process_callback(client, process_cycle, this);
    jack_activate(client);
}

jack_peer::~jack_peer() {
    if (client) jack_client_close(client);
}

bool jack_peer::join(const std::string& from, const std::string& to) const {
    return holds_within(PATIENCE_MS, [&] {
        return jack_port_by_name(client, from.c_str()) && jack_port_by_name(client, to.c_str()) &&
               jack_connect(client, from.c_str(), to.c_str()) == 0;
    });
}
bool jack_peer::hear_midi_from(const std::string& port) const {
    return join(port, name + ":midi in");
}
bool jack_peer::send_midi_to(const std::string& port) const {
    return join(name + ":midi out", port);
}
bool jack_peer::hear_sound_from(const std::string& port) const {
    return join(port, name + ":sound in");
}
bool jack_peer::joined_out() const {
    return holds_within(PATIENCE_MS, [this] { return jack_port_connected(midi_out) > 0; });
}
bool jack_peer::joined_both_ways() const {
    return joined_out() && holds_within(PATIENCE_MS, [this] { return jack_port_connected(midi_in) > 0; });
}

void jack_peer::send(const std::array<int, 3>& bytes, std::int64_t at) {
    const std::size_t n = nout;
    out[n] = {at, bytes};
    nout = n + 1;
}

// What one cycle gives, the others have taken before the next but one begins.
bool jack_peer::all_sent() const {
    if (!holds_within(PATIENCE_MS, [this] { return sent == nout; })) return false;
    const int before = begun;
    return holds_within(PATIENCE_MS, [&] { return begun >= before + 2; });
}

std::vector<timed_message> jack_peer::heard() const {
    return {in.begin(), in.begin() + static_cast<std::ptrdiff_t>(nin.load())};
}

jack_peer::lateness jack_peer::server_late() {
    const int of = std::max(cycles.exchange(0), 1);
    return {static_cast<double>(late.exchange(0)) / 1000, static_cast<double>(late_cycles.exchange(0)) / of};
}

// Times are those of the clock at the beginning of each cycle: JACK's own frame times are smoothed, and after a late cycle
// they are off for seconds.
int jack_peer::process_cycle(jack_nframes_t frames, void* peer) {
    auto* const p = static_cast<jack_peer*>(peer);
    const std::int64_t began = now();
    ++p->begun;
    if (p->cycle_began) {
        const std::int64_t late = began - p->cycle_began - microseconds(frames);
        p->late = std::max(p->late.load(), late);
        ++p->cycles;
        if (late >= 1000) ++p->late_cycles;
    }
    p->cycle_began = began;
    p->take(frames);
    p->give(frames);
    return 0;
}

void jack_peer::take(jack_nframes_t frames) {
    void* const buffer = jack_port_get_buffer(midi_in, frames);
    const jack_nframes_t n = jack_midi_get_event_count(buffer);
    for (jack_nframes_t i = 0; i < n && nin < ROOM; ++i) {
        jack_midi_event_t e;
        if (jack_midi_event_get(&e, buffer, i) != 0 || e.size != 3) continue;
        in[nin] = {cycle_began + microseconds(e.time), {e.buffer[0], e.buffer[1], e.buffer[2]}};
        ++nin;
    }
    const auto* const sound = static_cast<const float*>(jack_port_get_buffer(sound_in, frames));
    for (jack_nframes_t i = 0; i < frames; ++i) peak = std::max(peak.load(), std::fabs(sound[i]));
}

void jack_peer::give(jack_nframes_t frames) {
    void* const buffer = jack_port_get_buffer(midi_out, frames);
    jack_midi_clear_buffer(buffer);
    jack_nframes_t last = 0;
    while (sent < nout) {
        const timed_message& m = out[sent];
        const std::int64_t due = std::max<std::int64_t>(m.at - cycle_began, 0) * RATE_HZ / 1'000'000;
        if (due >= frames) return;
        last = std::max(last, static_cast<jack_nframes_t>(due));
        const std::array<jack_midi_data_t, 3> bytes{static_cast<jack_midi_data_t>(m.bytes[0]),
                                                    static_cast<jack_midi_data_t>(m.bytes[1]),
                                                    static_cast<jack_midi_data_t>(m.bytes[2])};
        if (jack_midi_event_write(buffer, last, bytes.data(), bytes.size()) != 0) return;
        ++sent;
    }
}
