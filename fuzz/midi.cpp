// fuzz/midi.cpp: any bytes as a MIDI file, read with both time bases: an import or one console line, what always holds
// still holds, and the sequence is the one that appending note by note gives.
// Fuzz layer; leans on the program's session.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/session.h"
#include "core/check.h"
#include "host/kernel/kernel.h"
#include "io/bufferedfile.h"
#include "io/midiread.h"
#include "tests/io/midi_twin.h"

namespace {

// Notes are appended one by one by the twin, each looked for from the head: more would be slow.
constexpr std::size_t LARGEST = 1 << 16;

struct fixture {
    headless_session session;
    brisolan* x = session.make();
    int fd = ::memfd_create("fuzzed", MFD_CLOEXEC);
    std::string name = "/proc/self/fd/" + std::to_string(fd);
    std::string said;

    fixture() {
        session.machine.print = [this](const std::string& line) { said += line + "\n"; };
    }

    void put(const std::uint8_t* data, std::size_t size) const {
        if (::ftruncate(fd, 0) != 0 || ::pwrite(fd, data, size, 0) != static_cast<ssize_t>(size))
            std::abort();
    }

    // The sequence, the cursor, and what the console said, as one text.
    std::string outcome() {
        brisolan_checkinvariants(x);
        std::string all = std::to_string(x->lasttime) + "\n";
        for (const event* e = x->events; e; e = e->next) {
            for (int i = 0; i < NPARAMS; ++i) all += std::to_string(event_param(*e, i)) + " ";
            all += e == x->current ? "*\n" : "\n";
        }
        kel_run_queue();
        all += said;
        said.clear();
        return all;
    }

    std::string read(std::int32_t option) {
        x->lasttime = 0;
        if (t_open(name.c_str(), 0, 0) != HOST_OK) std::abort();
        brisolan_importmidi(x, "a.mid", option);
        return outcome();
    }

    std::string read_slowly(const std::string& bytes, std::int32_t option) {
        x->lasttime = 0;
        midi_twin(x, bytes, option).run();
        return outcome();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fixture f;
    if (size > LARGEST) return 0;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    f.put(data, size);
    for (const std::int32_t option : {0, 1}) {
        if (f.read(option) != f.read_slowly(bytes, option)) std::abort();
    }
    return 0;
}
