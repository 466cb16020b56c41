// host/desktop/midi_sender.h: takes the patches' notes at scheduler level and lets a thread of its own hand them to
// whatever sounds them, so that a device which blocks never holds the scheduler up.
// Layer: desktop platform; leans on host/boxes/midi_device.h.
// Called by the commands and the editor, through a port or the synth that they opened.
#pragma once

#include <array>
#include <atomic>
#include <bitset>
#include <cstdint>
#include <memory>
#include <span>
#include <thread>

#include <semaphore.h>

#include "host/boxes/midi_device.h"
#include "host/desktop/midi_open.h"

// One short MIDI message, as it waits for the sending thread.
struct midi_message {
    std::array<std::uint8_t, 3> bytes{};
};

class midi_sender {
public:
    // Hears every note from now on and sends it down the wire. [main]
    explicit midi_sender(std::unique_ptr<midi_wire> wire);

    // Hears no more, ends what sounds, and returns when the wire has taken it all. [main]
    ~midi_sender();
    midi_sender(const midi_sender&) = delete;
    midi_sender& operator=(const midi_sender&) = delete;

    // Ends what sounds: note-offs, then controllers 123 and 120 on the channels used since the last time. [scheduler]
    void silence();

    // Whether it was let in among the patches' devices, of which there is a limited number. [main]
    bool hears() const { return heard; }

    // How many messages were lost because the wire did not take them in time. [both]
    std::uint32_t lost() const { return dropped.load(std::memory_order_relaxed); }

    midi_wire& wire() { return *to; }

private:
    static constexpr std::uint32_t ROOM = 4096; // a second of the densest MIDI stream

    void note(int channel, int pitch, int velocity);
    void put(std::uint8_t status, std::uint8_t first, std::uint8_t second);
    void make_room();
    void run();

    std::unique_ptr<midi_wire> to;
    midi_device device;
    bool heard = false;

    // Notes that sound and channels used. Written at scheduler level alone.
    std::array<std::bitset<128>, 16> sounding;
    std::bitset<16> used;

    // Messages on their way: the scheduler level fills, the sending thread takes.
    std::array<midi_message, ROOM> ring;
    std::atomic<std::uint32_t> filled{0};
    std::atomic<std::uint32_t> taken{0};
    std::atomic<std::uint32_t> dropped{0};
    std::atomic<bool> ending{false};
    sem_t waiting{};
    std::thread thread;
};
