// host/desktop/audio_quiet.cpp: alsa-lib's lines.
// Layer: desktop platform.
#include "host/desktop/audio_quiet.h"

#include <dlfcn.h>

namespace {

void drop_line(const char*, int, const char*, int, const char*, ...) {}

} // namespace

// Looked up by name: RtMidi and FluidSynth bring alsa-lib with them, and this is all that we want of it.
void alsa_be_quiet() {
    using handler = void (*)(const char*, int, const char*, int, const char*, ...);
    using setter = int (*)(handler);
    if (void* const found = dlsym(RTLD_DEFAULT, "snd_lib_error_set_handler"))
        reinterpret_cast<setter>(found)(drop_line);
}
