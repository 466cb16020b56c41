// tests/desktop/live_test.cpp: the program beside a JACK server of its own.
// Test layer.
#include "tests/desktop/live_test.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

// Bytes of a MIDI file, numbers the highest byte first.
std::string number(unsigned value, int size) {
    std::string bytes;
    for (int i = size - 1; i >= 0; --i) bytes += static_cast<char>(value >> (8 * i) & 255);
    return bytes;
}

std::string variable(unsigned value) {
    std::string bytes(1, static_cast<char>(value & 127));
    while (value >>= 7) bytes.insert(bytes.begin(), static_cast<char>((value & 127) | 128));
    return bytes;
}

constexpr unsigned TICKS_A_QUARTER = 100;
constexpr unsigned MICROSECONDS_A_QUARTER = 100'000; // so that a tick is a millisecond

} // namespace

void live_test::SetUp() {
    if (const std::string why = jack_server::why_not(); !why.empty()) {
        const char* const ci = std::getenv("CI");
        if (ci && std::string(ci) == "true") FAIL() << why;
        std::printf("live MIDI was not tested: %s\n",
                    why.c_str()); // for ctest, which hears of failures alone
        GTEST_SKIP();
    }
    std::string name = (std::filesystem::temp_directory_path() / "brisolan-live-XXXXXX").string();
    folder = mkdtemp(name.data());
    server = std::make_unique<jack_server>(folder);
    ASSERT_TRUE(server->start()) << "jackd does not answer";
    peer = std::make_unique<jack_peer>("peer");
    ASSERT_TRUE(peer->connected());
}

void live_test::TearDown() {
    peer.reset();
    server.reset();
    if (!folder.empty()) std::filesystem::remove_all(folder);
}

std::string live_test::score(const std::string& name, const std::vector<score_note>& notes) const {
    struct moment {
        int time;
        std::string bytes;
    };
    std::vector<moment> moments;
    for (const score_note& n : notes) {
        const auto message = [&](int status, int velocity) {
            return std::string{static_cast<char>(status | (n.channel - 1)), static_cast<char>(n.pitch),
                               static_cast<char>(velocity)};
        };
        moments.push_back({n.time, message(0x90, n.velocity)});
        moments.push_back({n.time + n.dur, message(0x80, 64)});
    }
    std::stable_sort(moments.begin(), moments.end(),
                     [](const moment& a, const moment& b) { return a.time < b.time; });
    std::string track = variable(0) + "\xff\x51" + variable(3) + number(MICROSECONDS_A_QUARTER, 3);
    int now = 0;
    for (const moment& m : moments) {
        track += variable(static_cast<unsigned>(m.time - now)) + m.bytes;
        now = m.time;
    }
    track += variable(0) + "\xff\x2f" + variable(0);
    std::ofstream out(folder / name, std::ios::binary);
    out << "MThd" << number(6, 4) << number(0, 2) << number(1, 2) << number(TICKS_A_QUARTER, 2) << "MTrk"
        << number(static_cast<unsigned>(track.size()), 4) << track;
    return file(name);
}

std::unique_ptr<process> live_test::brisolan(const std::vector<std::string>& words) {
    std::vector<std::string> all{BRISOLAN_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    return std::make_unique<process>(folder, "brisolan-" + std::to_string(++programs), all);
}

std::string live_test::run(const std::vector<std::string>& words, int status) {
    const std::unique_ptr<process> p = brisolan(words);
    EXPECT_EQ(p->wait(PATIENCE_MS), status) << p->err();
    return p->out();
}

bool timing_tries::more() {
    constexpr int MOST = 4;
    peer->server_late();
    return tries++ < MOST && best > 1;
}

void timing_tries::take(double off) {
    const jack_peer::lateness late = peer->server_late();
    std::printf(
        "off by %.2f of what is allowed; the server was late by %.2f ms at worst, in %.1f %% of its cycles\n",
        off, late.worst, late.share * 100);
    on_time += late.on_time() ? 1 : 0;
    best = std::min(best, off);
}

void timing_tries::judge() const {
    if (best <= 1 || on_time >= 2)
        EXPECT_LE(best, 1);
    else
        std::printf("the server was hardly ever on time, so the times were not judged\n");
}

std::vector<timed_message> only(int kind, const std::vector<timed_message>& messages) {
    std::vector<timed_message> those;
    for (const timed_message& m : messages) {
        if ((m.bytes[0] & 0xF0) == kind) those.push_back(m);
    }
    return those;
}

int count(const std::string& text, const std::string& in) {
    int n = 0;
    for (std::size_t at = in.find(text); at != std::string::npos; at = in.find(text, at + 1)) ++n;
    return n;
}
