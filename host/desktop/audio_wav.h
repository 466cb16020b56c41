// host/desktop/audio_wav.h: writes a WAV file: 16 bit, two channels, 44100 frames a second.
// Layer: desktop platform. Called by the synth's rendering.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "host/kernel/newfile.h"

constexpr int AUDIO_RATE = 44100; // frames a second
constexpr int AUDIO_CHANNELS = 2;

// The file grows beside its target, which finish() replaces; without that it goes with the record.
class wav_file {
public:
    // Empty, or in one line why the file cannot be written. [main]
    std::string open(const std::string& file);

    // Appends frames, left and right in turn. A failure is told by finish(). [main]
    void write(std::span<const std::int16_t> samples);

    // Puts the file in place. Empty, or in one line why it could not. [main]
    std::string finish();

private:
    std::string named(const std::string& why) const;

    new_file out;
    std::string target;
    std::uint64_t bytes = 0; // of samples
    bool too_long = false;   // more came than the form can count
};
