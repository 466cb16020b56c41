// host/desktop/rtmidi_ports.cpp: MIDI ports through RtMidi, with ALSA and JACK.
// Layer: desktop platform; compiled where there is RtMidi.
//
// RtMidi reports a failed constructor on std::cerr and by an exception, everything later to the error callback alone, and
// the death of a JACK server not at all. So a system is asked whether it is there before RtMidi is, and the watch on the
// server, not RtMidi, tells whether a JACK port may still be used: on a dead server RtMidi would wait for ever once its
// buffer is full.
#include <algorithm>
#include <functional>
#include <iostream>
#include <mutex>
#include <optional>

#include <rtmidi/RtMidi.h>
#include <unistd.h>

#include "host/boxes/midi_device.h"
#include "host/desktop/audio_quiet.h"
#include "host/desktop/jack_watch.h"
#include "host/desktop/midi_open.h"
#include "host/desktop/midi_ports.h"
#include "host/kel.h"
#include "host/kernel/kernel.h"

namespace {

constexpr const char* CLIENT = "brisolan";
constexpr const char* ALSA_SEQUENCER = "/dev/snd/seq";
constexpr RtMidi::Api SYSTEMS[] = {RtMidi::LINUX_ALSA, RtMidi::UNIX_JACK};

const char* system_name(RtMidi::Api api) {
    return api == RtMidi::LINUX_ALSA ? "ALSA" : "JACK";
}

// Keeps std::cerr, which only libraries write to, silent for the scope's life.
class quiet_cerr {
public:
    quiet_cerr() : before(std::cerr.rdbuf(nullptr)) {}
    ~quiet_cerr() { std::cerr.rdbuf(before); }
    quiet_cerr(const quiet_cerr&) = delete;
    quiet_cerr& operator=(const quiet_cerr&) = delete;

private:
    std::streambuf* before;
};

// The watch on the JACK server that runs, one for all ports; null when none runs.
std::shared_ptr<jack_watch> jack_server() {
    static std::weak_ptr<jack_watch> current;
    std::shared_ptr<jack_watch> watch = current.lock();
    if (watch && watch->alive()) return watch;
    watch = jack_watch::open();
    current = watch;
    return watch;
}

// What RtMidi complained of last. Written by whichever thread calls RtMidi, one at a time.
struct complaint {
    std::string text;
    static void hear(RtMidiError::Type type, const std::string& what, void* user) {
        if (type != RtMidiError::WARNING && type != RtMidiError::DEBUG_WARNING)
            static_cast<complaint*>(user)->text = what;
    }
};

// One direction of one MIDI system, in which ports are listed and one may be opened.
template <class Device> struct midi_end {
    RtMidi::Api api = RtMidi::UNSPECIFIED;
    std::shared_ptr<jack_watch> server; // JACK's
    std::unique_ptr<complaint> said = std::make_unique<complaint>();
    std::unique_ptr<Device> device;

    bool alive() const { return !server || server->alive(); }
};

// The system's end, or nothing where the system is not there.
template <class Device> std::optional<midi_end<Device>> find_end(RtMidi::Api api) {
    alsa_be_quiet();
    midi_end<Device> end;
    end.api = api;
    if (api == RtMidi::LINUX_ALSA && access(ALSA_SEQUENCER, R_OK | W_OK) != 0) return std::nullopt;
    if (api == RtMidi::UNIX_JACK && !(end.server = jack_server())) return std::nullopt;
    const quiet_cerr quiet;
    try {
        end.device = std::make_unique<Device>(api, CLIENT);
    } catch (const RtMidiError&) {
        return std::nullopt;
    }
    end.device->setErrorCallback(complaint::hear, end.said.get());
    return end;
}

template <class Device> std::vector<midi_end<Device>> all_ends() {
    std::vector<midi_end<Device>> ends;
    for (const RtMidi::Api api : SYSTEMS) {
        if (std::optional<midi_end<Device>> end = find_end<Device>(api)) ends.push_back(std::move(*end));
    }
    return ends;
}

// Adds the ports of one end to the list, numbered on.
template <class Device> void list_end(const midi_end<Device>& end, std::vector<midi_port>& ports) {
    const unsigned int n = end.device->getPortCount();
    for (unsigned int i = 0; i < n; ++i) {
        ports.push_back({static_cast<int>(ports.size()), end.device->getPortName(i), system_name(end.api)});
    }
}

template <class Device> std::vector<midi_port> list_ends() {
    std::vector<midi_port> ports;
    for (const midi_end<Device>& end : all_ends<Device>()) list_end(end, ports);
    return ports;
}

// An ALSA name without the address behind it, which changes when a device is plugged in again.
std::string without_address(const std::string& name) {
    const std::size_t blank = name.rfind(' ');
    if (blank == std::string::npos) return name;
    const std::string address = name.substr(blank + 1);
    return !address.empty() && address.find_first_not_of("0123456789:") == std::string::npos
               ? name.substr(0, blank)
               : name;
}

// The number that RtMidi gives the port of this name now.
template <class Device> std::optional<unsigned int> number_of(Device& device, const std::string& name) {
    std::optional<unsigned int> alike;
    const unsigned int n = device.getPortCount();
    for (unsigned int i = 0; i < n; ++i) {
        const std::string other = device.getPortName(i);
        if (other == name) return i;
        if (without_address(other) == without_address(name)) alike = i;
    }
    return alike;
}

// A port of ours and what it is connected to: opened, watched, opened anew.
template <class Device> class connection {
public:
    static constexpr midi_direction DIRECTION =
        std::is_same_v<Device, RtMidiIn> ? midi_direction::in : midi_direction::out;

    // Finds and opens what is wished for; false with the reason in one line. `prepare` is done to a device before it is
    // opened.
    bool open(const midi_wish& wish, std::function<void(Device&)> prepare, std::string& error) {
        prepare_device = std::move(prepare);
        is_virtual = wish.virtual_port;
        std::vector<midi_end<Device>> ends = all_ends<Device>();
        if (ends.empty()) {
            error = midi_why_absent();
            return false;
        }
        if (is_virtual) {
            name = wish.name;
            return open_at(std::move(ends.front()), error);
        }
        std::vector<midi_port> ports;
        for (const midi_end<Device>& end : ends) list_end(end, ports);
        const midi_port* port = midi_choose_port(ports, wish.name, DIRECTION, error);
        if (!port) return false;
        name = port->name;
        const auto chosen = std::find_if(ends.begin(), ends.end(), [&](const midi_end<Device>& end) {
            return port->api == system_name(end.api);
        });
        return open_at(std::move(*chosen), error);
    }

    // Whether it was there when it was looked for last. [main]
    bool there() const { return !gone; }

    // Whether messages may be handed to the device; called with `guard` held.
    bool usable() const { return used.device && used.alive(); }

    void poll() {
        if (!gone && !present()) {
            gone = true;
            release();
            host_error("MIDI %s \"%s\" has gone; going on without it", kind(), name.c_str());
            return;
        }
        std::string error;
        if (gone && reopen(error)) {
            gone = false;
            host_post("MIDI %s \"%s\" is back", kind(), name.c_str());
        }
    }

    midi_end<Device> used;
    std::mutex guard; // the device: whoever sends, and the main level while it opens and closes

private:
    // Everything of a dead JACK server has to be closed before the next is looked for, or libjack loses its count.
    void release() {
        const std::lock_guard in(guard);
        used.device.reset();
        used.server.reset();
    }

    static const char* kind() { return DIRECTION == midi_direction::in ? "input" : "output"; }

    bool open_at(midi_end<Device> at, std::string& error) {
        prepare_device(*at.device);
        at.said->text.clear();
        if (is_virtual) {
            at.device->openVirtualPort(name);
        } else if (const std::optional<unsigned int> number = number_of(*at.device, name)) {
            at.device->openPort(*number, DIRECTION == midi_direction::in ? "in" : "out");
        } else {
            at.said->text = "it has gone";
        }
        if (!at.said->text.empty()) {
            error = std::string("cannot open MIDI ") + kind() + " \"" + name + "\": " + at.said->text;
            return false;
        }
        const std::lock_guard in(guard);
        used.device.reset(); // while what it complains to still stands
        used = std::move(at);
        return true;
    }

    bool reopen(std::string& error) {
        std::optional<midi_end<Device>> at = find_end<Device>(used.api);
        if (!at || (!is_virtual && !number_of(*at->device, name))) return false;
        return open_at(std::move(*at), error);
    }

    // Whether the port is still there, asked of others than the device in use, whose sender must not wait.
    bool present() {
        if (!used.alive()) return false;
        if (is_virtual) return true;
        if (used.server) return used.server->has_port(name.c_str());
        if (!lister) lister = find_end<Device>(used.api);
        return !lister || number_of(*lister->device, name).has_value();
    }

    std::string name;
    bool is_virtual = false;
    bool gone = false;
    std::function<void(Device&)> prepare_device;
    std::optional<midi_end<Device>> lister; // ALSA's
};

class out_port : public midi_wire {
public:
    bool open(const midi_wish& wish, std::string& error) {
        return to.open(
            wish, [](RtMidiOut&) {}, error);
    }
    void send(std::span<const std::uint8_t, 3> message) override {
        const std::lock_guard in(to.guard);
        if (to.usable()) to.used.device->sendMessage(message.data(), message.size());
    }
    void poll() override { to.poll(); }

private:
    connection<RtMidiOut> to;
};

// The one port number that patches know the input by.
constexpr int LIVE_PORT = 1;

// When a JACK server that is late clears a cycle's messages while RtMidi still reads them, RtMidi hands in the last one it
// got as often as there should have been further ones. Nobody strikes the same key twice in so short a time.
constexpr kel_time SAME_MOMENT = NS_PER_MS / 5;

// What is done with the notes of one input. Called by the MIDI system's own thread.
struct arrivals {
    midi_arrival to;
    std::int32_t last_place = -1;
    std::int32_t last_key = -1;
    kel_time last_at = 0;

    void take(std::int32_t place, std::int32_t key) {
        const kel_time now = kel_now();
        const bool again = place == last_place && key == last_key && now - last_at < SAME_MOMENT;
        last_place = place;
        last_key = key;
        last_at = now;
        if (!again) kel_post(to.call, to.context, place, key, now);
    }
};

// Called by the MIDI system's own thread for each message that comes in.
void heard(double, std::vector<unsigned char>* message, void* port) {
    if (message->size() < 3) return;
    const int kind = (*message)[0] & 0xF0;
    if (kind != 0x80 && kind != 0x90) return;
    const int channel = ((*message)[0] & 0x0F) + 1;
    const int velocity = kind == 0x90 ? (*message)[2] & 127 : 0;
    static_cast<arrivals*>(port)->take(midi_place(LIVE_PORT, channel),
                                       midi_key((*message)[1] & 127, velocity));
}

class in_port : public midi_source {
public:
    explicit in_port(const midi_arrival& a) : notes{a} {}
    bool open(const midi_wish& wish, std::string& error) {
        return from.open(
            wish, [this](RtMidiIn& device) { device.setCallback(heard, &notes); }, error);
    }
    void poll() override { from.poll(); }
    bool there() const override { return from.there(); }

private:
    arrivals notes; // before the connection, whose thread writes it
    connection<RtMidiIn> from;
};

} // namespace

std::vector<midi_port> midi_list_ports(midi_direction direction) {
    return direction == midi_direction::in ? list_ends<RtMidiIn>() : list_ends<RtMidiOut>();
}

std::string midi_why_absent() {
    if (find_end<RtMidiOut>(RtMidi::LINUX_ALSA) || find_end<RtMidiOut>(RtMidi::UNIX_JACK)) return "";
    return std::string("this machine has no MIDI: ") + ALSA_SEQUENCER +
           (access(ALSA_SEQUENCER, F_OK) == 0 ? " cannot be opened" : " is not there") +
           ", and no JACK server runs";
}

std::unique_ptr<midi_wire> midi_open_out(const midi_wish& wish, std::string& error) {
    auto port = std::make_unique<out_port>();
    if (!port->open(wish, error)) return nullptr;
    return port;
}

std::unique_ptr<midi_source> midi_open_in(const midi_wish& wish, const midi_arrival& arrival,
                                          std::string& error) {
    auto port = std::make_unique<in_port>(arrival);
    if (!port->open(wish, error)) return nullptr;
    return port;
}
