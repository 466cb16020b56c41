// host/desktop/fluidsynth_synth.cpp: sound through FluidSynth.
// Layer: desktop platform; compiled where there is FluidSynth.
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>
#include <mutex>
#include <vector>

#include <fluidsynth.h>

#include "host/boxes/midi_device.h"
#include "host/desktop/audio_quiet.h"
#include "host/desktop/audio_wav.h"
#include "host/desktop/synth.h"
#include "host/kel.h"
#include "host/kernel/kernel.h"
#if BRISOLAN_HAVE_JACK
#include "host/desktop/jack_watch.h"
#endif

namespace {

constexpr double GAIN = 0.4; // a full chord stays below the limit, a single note is well heard

// What is used of the library. It is loaded when sound is asked for first: some fifty other libraries come with it, and
// loading them takes longer than most commands' own work. Written by load_fluid alone, main level; lives as long as the
// process.
struct fluid_functions {
    decltype(&::new_fluid_settings) new_fluid_settings;
    decltype(&::delete_fluid_settings) delete_fluid_settings;
    decltype(&::fluid_settings_setint) fluid_settings_setint;
    decltype(&::fluid_settings_setnum) fluid_settings_setnum;
    decltype(&::fluid_settings_setstr) fluid_settings_setstr;
    decltype(&::fluid_settings_dupstr) fluid_settings_dupstr;
    decltype(&::fluid_free) fluid_free;
    decltype(&::fluid_set_log_function) fluid_set_log_function;
    decltype(&::fluid_is_soundfont) fluid_is_soundfont;
    decltype(&::new_fluid_synth) new_fluid_synth;
    decltype(&::delete_fluid_synth) delete_fluid_synth;
    decltype(&::fluid_synth_sfload) fluid_synth_sfload;
    decltype(&::fluid_synth_noteon) fluid_synth_noteon;
    decltype(&::fluid_synth_noteoff) fluid_synth_noteoff;
    decltype(&::fluid_synth_cc) fluid_synth_cc;
    decltype(&::fluid_synth_get_active_voice_count) fluid_synth_get_active_voice_count;
    decltype(&::fluid_synth_write_s16) fluid_synth_write_s16;
    decltype(&::new_fluid_audio_driver) new_fluid_audio_driver;
    decltype(&::delete_fluid_audio_driver) delete_fluid_audio_driver;
};
fluid_functions fluid{};

template <class F> bool find_function(void* library, const char* name, F& f) {
    f = reinterpret_cast<F>(::dlsym(library, name));
    return f != nullptr;
}

// Whether the library is there, with all that is used of it.
bool load_fluid() {
    static const bool loaded = [] {
        void* const library = ::dlopen(BRISOLAN_FLUIDSYNTH_FILE, RTLD_NOW | RTLD_LOCAL);
        return library && find_function(library, "new_fluid_settings", fluid.new_fluid_settings) &&
               find_function(library, "delete_fluid_settings", fluid.delete_fluid_settings) &&
               find_function(library, "fluid_settings_setint", fluid.fluid_settings_setint) &&
               find_function(library, "fluid_settings_setnum", fluid.fluid_settings_setnum) &&
               find_function(library, "fluid_settings_setstr", fluid.fluid_settings_setstr) &&
               find_function(library, "fluid_settings_dupstr", fluid.fluid_settings_dupstr) &&
               find_function(library, "fluid_free", fluid.fluid_free) &&
               find_function(library, "fluid_set_log_function", fluid.fluid_set_log_function) &&
               find_function(library, "fluid_is_soundfont", fluid.fluid_is_soundfont) &&
               find_function(library, "new_fluid_synth", fluid.new_fluid_synth) &&
               find_function(library, "delete_fluid_synth", fluid.delete_fluid_synth) &&
               find_function(library, "fluid_synth_sfload", fluid.fluid_synth_sfload) &&
               find_function(library, "fluid_synth_noteon", fluid.fluid_synth_noteon) &&
               find_function(library, "fluid_synth_noteoff", fluid.fluid_synth_noteoff) &&
               find_function(library, "fluid_synth_cc", fluid.fluid_synth_cc) &&
               find_function(library, "fluid_synth_get_active_voice_count",
                             fluid.fluid_synth_get_active_voice_count) &&
               find_function(library, "fluid_synth_write_s16", fluid.fluid_synth_write_s16) &&
               find_function(library, "new_fluid_audio_driver", fluid.new_fluid_audio_driver) &&
               find_function(library, "delete_fluid_audio_driver", fluid.delete_fluid_audio_driver);
    }();
    return loaded;
}

template <auto Delete> struct deleter {
    template <class T> void operator()(T* x) const { (fluid.*Delete)(x); }
};
using settings_ptr = std::unique_ptr<fluid_settings_t, deleter<&fluid_functions::delete_fluid_settings>>;
using synth_ptr = std::unique_ptr<fluid_synth_t, deleter<&fluid_functions::delete_fluid_synth>>;
using driver_ptr =
    std::unique_ptr<fluid_audio_driver_t, deleter<&fluid_functions::delete_fluid_audio_driver>>;

// The library's own lines: what matters of them we say ourselves.
void be_quiet() {
    alsa_be_quiet();
    for (int level = 0; level < LAST_LOG_LEVEL; ++level)
        fluid.fluid_set_log_function(level, nullptr, nullptr);
}

// A synth with its font and nothing around it.
struct engine {
    settings_ptr settings;
    synth_ptr synth;
};

std::string usual_font(fluid_settings_t* settings) {
    char* name = nullptr;
    if (fluid.fluid_settings_dupstr(settings, "synth.default-soundfont", &name) != FLUID_OK || !name)
        return "";
    std::string font = name;
    fluid.fluid_free(name);
    return font;
}

bool make_engine(const std::string& asked, engine& e, std::string& error) {
    if (!load_fluid()) {
        error = "there is no synth: the library " BRISOLAN_FLUIDSYNTH_FILE " (FluidSynth) cannot be loaded";
        return false;
    }
    be_quiet();
    e.settings.reset(fluid.new_fluid_settings());
    fluid.fluid_settings_setint(e.settings.get(), "synth.lock-memory", 0);
    fluid.fluid_settings_setnum(e.settings.get(), "synth.sample-rate", AUDIO_RATE);
    fluid.fluid_settings_setnum(e.settings.get(), "synth.gain", GAIN);
    const std::string font = synth_find_font(asked, usual_font(e.settings.get()), error);
    if (font.empty()) return false;
    e.synth.reset(fluid.new_fluid_synth(e.settings.get()));
    if (!e.synth) {
        error = "the synth cannot be started";
        return false;
    }
    if (!fluid.fluid_is_soundfont(font.c_str()) ||
        fluid.fluid_synth_sfload(e.synth.get(), font.c_str(), 1) == FLUID_FAILED) {
        error = "sound font " + font + ": not a sound font, or broken";
        return false;
    }
    return true;
}

void play_message(fluid_synth_t* synth, std::span<const std::uint8_t, 3> m) {
    const int channel = m[0] & 15;
    switch (m[0] & 0xF0) {
    case 0x80: fluid.fluid_synth_noteoff(synth, channel, m[1]); break;
    case 0x90: fluid.fluid_synth_noteon(synth, channel, m[1], m[2]); break;
    case 0xB0: fluid.fluid_synth_cc(synth, channel, m[1], m[2]); break;
    default: break;
    }
}

// The synth that plays through an audio device.
class live_synth : public midi_wire {
public:
    bool open(const std::string& font, std::string& error) {
        if (!make_engine(font, e, error)) return false;
        if (open_driver()) return true;
        error = "there is no audio device to play the synth through";
        return false;
    }

    void send(std::span<const std::uint8_t, 3> message) override { play_message(e.synth.get(), message); }

    bool ringing() const override {
        return driver && fluid.fluid_synth_get_active_voice_count(e.synth.get()) > 0;
    }

    void poll() override {
#if BRISOLAN_HAVE_JACK
        if (driver && server && !server->alive()) {
            driver.reset();
            server.reset();
            host_error("the sound output has gone; going on without it");
            return;
        }
#endif
        if (!driver && open_driver()) host_post("the sound output is back");
    }

private:
    bool open_with(const char* name) {
        fluid.fluid_settings_setstr(e.settings.get(), "audio.driver", name);
        driver.reset(fluid.new_fluid_audio_driver(e.settings.get(), e.synth.get()));
        return driver != nullptr;
    }

    // JACK only when a server runs: asked otherwise, the library would start one.
    bool open_driver() {
#if BRISOLAN_HAVE_JACK
        if ((server = jack_watch::open())) {
            fluid.fluid_settings_setstr(e.settings.get(), "audio.jack.id", "brisolan-synth");
            fluid.fluid_settings_setint(e.settings.get(), "audio.jack.autoconnect", 1);
            if (open_with("jack")) return true;
            server.reset();
        }
#endif
        return std::any_of(std::begin(DRIVERS), std::end(DRIVERS),
                           [this](const char* d) { return open_with(d); });
    }

    static constexpr const char* DRIVERS[] = {"pulseaudio", "alsa", "oss"};

#if BRISOLAN_HAVE_JACK
    std::unique_ptr<jack_watch> server;
#endif
    engine e;
    driver_ptr driver; // after the engine: goes first
};

constexpr std::int64_t NS_PER_SECOND = 1'000'000'000;
constexpr std::size_t CHUNK = 1024;           // frames rendered at a time
constexpr int LONGEST_TAIL = 30 * AUDIO_RATE; // frames; no font's release is longer that means to end
constexpr int SILENCE = 2;                    // samples up to this size are the library's dither

class file_render : public synth_render {
public:
    ~file_render() override {
        if (listening) midi_device_remove(&device);
    }

    bool open(const std::string& font, const std::string& file, std::string& error) {
        if (!make_engine(font, e, error)) return false;
        if (error = wav.open(file); !error.empty()) return false;
        began = kel_now();
        device.user = this;
        device.note = [](void* user, int, int channel, int pitch, int velocity) {
            static_cast<file_render*>(user)->note(channel, pitch, velocity);
        };
        listening = midi_device_add(&device);
        if (!listening) error = "too many MIDI devices are in use";
        return listening;
    }

    std::string finish() override {
        midi_device_remove(&device);
        listening = false;
        render_to(frame_of(kel_now()));
        for (std::size_t c = 0; c < sounding.size(); ++c) {
            for (std::size_t p = 0; p < sounding[c].size(); ++p) {
                if (sounding[c][p])
                    fluid.fluid_synth_noteoff(e.synth.get(), static_cast<int>(c), static_cast<int>(p));
            }
        }
        const std::int64_t end = frames + LONGEST_TAIL;
        bool silent = false;
        while (frames < end && !(silent && fluid.fluid_synth_get_active_voice_count(e.synth.get()) == 0))
            silent = render(CHUNK);
        return wav.finish();
    }

private:
    std::int64_t frame_of(kel_time at) const { return (at - began) * AUDIO_RATE / NS_PER_SECOND; }

    void note(int channel, int pitch, int velocity) {
        render_to(frame_of(kel_now()));
        sounding[static_cast<std::size_t>(channel - 1)][static_cast<std::size_t>(pitch)] = velocity > 0;
        if (velocity > 0)
            fluid.fluid_synth_noteon(e.synth.get(), channel - 1, pitch, velocity);
        else
            fluid.fluid_synth_noteoff(e.synth.get(), channel - 1, pitch);
    }

    void render_to(std::int64_t frame) {
        while (frames < frame)
            render(static_cast<std::size_t>(std::min<std::int64_t>(frame - frames, CHUNK)));
    }

    // Renders so many frames; whether they are silent.
    bool render(std::size_t n) {
        const std::span<std::int16_t> part(samples.data(), n * AUDIO_CHANNELS);
        fluid.fluid_synth_write_s16(e.synth.get(), static_cast<int>(n), part.data(), 0, AUDIO_CHANNELS,
                                    part.data(), 1, AUDIO_CHANNELS);
        frames += static_cast<std::int64_t>(n);
        wav.write(part);
        return std::all_of(part.begin(), part.end(), [](int s) { return s <= SILENCE && s >= -SILENCE; });
    }

    engine e;
    wav_file wav;
    midi_device device;
    bool listening = false;
    kel_time began = 0;
    std::int64_t frames = 0; // written so far
    std::array<std::bitset<128>, 16> sounding;
    std::vector<std::int16_t> samples = std::vector<std::int16_t>(CHUNK * AUDIO_CHANNELS);
};

} // namespace

std::unique_ptr<midi_wire> synth_open(const std::string& font, std::string& error) {
    auto synth = std::make_unique<live_synth>();
    if (!synth->open(font, error)) return nullptr;
    return synth;
}

std::unique_ptr<synth_render> synth_render_open(const std::string& font, const std::string& file,
                                                std::string& error) {
    auto render = std::make_unique<file_render>();
    if (!render->open(font, file, error)) return nullptr;
    return render;
}
