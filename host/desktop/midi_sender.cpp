// host/desktop/midi_sender.cpp: the thread between the scheduler and a MIDI device.
// Layer: desktop platform.
#include "host/desktop/midi_sender.h"

#include <cerrno>
#include <chrono>

#include <pthread.h>
#include <sched.h>

#include "host/kel.h"

namespace {

constexpr std::uint8_t NOTE_OFF = 0x80;
constexpr std::uint8_t NOTE_ON = 0x90;
constexpr std::uint8_t CONTROL = 0xB0;
constexpr std::uint8_t RELEASE_VELOCITY = 64; // what the standard asks for where none was measured
constexpr std::uint8_t ALL_SOUND_OFF = 120;
constexpr std::uint8_t ALL_NOTES_OFF = 123;

constexpr int LONGEST_WAIT = 2000; // milliseconds

void ask_for_priority() {
    sched_param p{};
    p.sched_priority = sched_get_priority_min(SCHED_FIFO) + 9; // a step below the scheduler, which feeds it
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &p);
}

} // namespace

midi_sender::midi_sender(std::unique_ptr<midi_wire> wire) : to(std::move(wire)) {
    sem_init(&waiting, 0, 0);
    thread = std::thread([this] { run(); });
    device.user = this;
    device.note = [](void* user, int, int channel, int pitch, int velocity) {
        static_cast<midi_sender*>(user)->note(channel, pitch, velocity);
    };
    heard = midi_device_add(&device);
}

midi_sender::~midi_sender() {
    midi_device_remove(&device);
    make_room();
    {
        const host_locked_out now;
        silence();
    }
    ending = true;
    sem_post(&waiting);
    thread.join();
    sem_destroy(&waiting);
}

// Lets a full ring drain, so that what ends the notes is not lost; a device that takes nothing is not waited for.
void midi_sender::make_room() {
    for (int ms = 0; ms < LONGEST_WAIT && taken.load() != filled.load(); ++ms)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void midi_sender::note(int channel, int pitch, int velocity) {
    const auto c = static_cast<std::uint8_t>((channel - 1) & 15);
    const auto p = static_cast<std::uint8_t>(pitch & 127);
    sounding[c][p] = velocity > 0;
    used[c] = true;
    if (velocity > 0)
        put(NOTE_ON | c, p, static_cast<std::uint8_t>(velocity & 127));
    else
        put(NOTE_OFF | c, p, RELEASE_VELOCITY);
}

void midi_sender::silence() {
    for (std::uint8_t c = 0; c < sounding.size(); ++c) {
        for (std::uint8_t p = 0; sounding[c].any() && p < sounding[c].size(); ++p) {
            if (sounding[c][p]) put(NOTE_OFF | c, p, RELEASE_VELOCITY);
        }
        sounding[c].reset();
    }
    for (std::uint8_t c = 0; c < used.size(); ++c) {
        if (!used[c]) continue;
        put(CONTROL | c, ALL_NOTES_OFF, 0);
        put(CONTROL | c, ALL_SOUND_OFF, 0);
    }
    used.reset();
}

void midi_sender::put(std::uint8_t status, std::uint8_t first, std::uint8_t second) {
    const std::uint32_t at = filled.load(std::memory_order_relaxed);
    if (at - taken.load(std::memory_order_acquire) == ROOM) {
        dropped.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    ring[at % ROOM].bytes = {status, first, second};
    filled.store(at + 1, std::memory_order_release);
    sem_post(&waiting);
}

void midi_sender::run() {
    ask_for_priority();
    for (;;) {
        while (sem_wait(&waiting) != 0 && errno == EINTR) {
        }
        const std::uint32_t at = taken.load(std::memory_order_relaxed);
        if (at == filled.load(std::memory_order_acquire)) {
            if (ending) return; // the post that told of the end is the last one
            continue;
        }
        to->send(ring[at % ROOM].bytes);
        taken.store(at + 1, std::memory_order_release);
    }
}
