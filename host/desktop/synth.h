// host/desktop/synth.h: notes turned into sound: played at once, or written to a file faster than real time.
// Layer: desktop platform. Made by fluidsynth_synth.cpp, where there is FluidSynth.
// Called by the commands and the editor.
#pragma once

#include <memory>
#include <string>

#include "host/desktop/midi_open.h"

// The sound font to use: `asked` when not empty, else $BRISOLAN_SOUNDFONT when set, else `usual` when there is such a
// file, else the first by name in one of the folders where systems keep them. Empty when there is none; `error` then says
// so in one line. [main]
std::string synth_find_font(const std::string& asked, const std::string& usual, std::string& error);

// A synth that plays through the machine's sound: a JACK server that runs, else what else there is. Null, with the reason
// in one line, where there is no sound font or no audio device. [main]
std::unique_ptr<midi_wire> synth_open(const std::string& font, std::string& error);

// Renders what the patches play in virtual time to a WAV file: 16 bit, two channels, 44100 frames a second; the same notes
// give the same bytes. Hears every note while it lives.
class synth_render {
public:
    virtual ~synth_render() = default; // without finish(): the file is as it was before

    // Lets what sounds die away, and puts the file in place. Empty, or in one line why it could not be. [main]
    virtual std::string finish() = 0;
};

// Begins a rendering to `file`, which is replaced when it is finished; its time begins now. Null with the reason in one
// line. [main]
std::unique_ptr<synth_render> synth_render_open(const std::string& font, const std::string& file,
                                                std::string& error);
