// host/desktop/synth_absent.cpp: sound in a build without FluidSynth: none, and the reason.
// Layer: desktop platform.
#include "host/desktop/synth.h"

#if !BRISOLAN_HAVE_FLUIDSYNTH

std::unique_ptr<midi_wire> synth_open(const std::string&, std::string& error) {
    error = "this brisolan was built without a synth (FluidSynth)";
    return nullptr;
}

std::unique_ptr<synth_render> synth_render_open(const std::string&, const std::string&, std::string& error) {
    error = "this brisolan was built without a synth (FluidSynth)";
    return nullptr;
}

#endif
