// app/saved_form.cpp: what a score's file would hold, as one number.
// Layer: program.
#include "app/saved_form.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include <unistd.h>

#include "app/target.h"
#include "host/kernel/files.h"

namespace {

// FNV-1a over 64 bits, whole numbers at a time.
class digest {
public:
    void add(std::uint64_t value) {
        sum = (sum ^ value) * 0x100000001B3U;
        sum ^= sum >> 29;
    }
    void add(std::string_view text) {
        add(text.size());
        for (const char c : text) add(static_cast<unsigned char>(c));
    }
    std::uint64_t value() const { return sum; }

private:
    std::uint64_t sum = 0xCBF29CE484222325U;
};

std::uint64_t pair_of(std::int32_t a, std::int32_t b) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(a)) << 32 | static_cast<std::uint32_t>(b);
}

// A name for a file that lives for a moment; empty when there is no folder for it.
std::string scratch_file() {
    std::error_code failed;
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR"); // in memory on most machines
    std::filesystem::path folder = runtime && access(runtime, W_OK) == 0
                                       ? std::filesystem::path(runtime)
                                       : std::filesystem::temp_directory_path(failed);
    if (failed) return "";
    return (folder / ("brisolan-" + std::to_string(getpid()) + ".mid")).string();
}

} // namespace

std::uint64_t score_digest(const brisolan* x) {
    digest d;
    for (const event* e = x->events; e; e = e->next) {
        for (int i = 0; i < NPARAMS; i += 2) d.add(pair_of(event_param(*e, i), event_param(*e, i + 1)));
    }
    for (const param_record& p : x->params) {
        d.add(p.name->name);
        d.add(pair_of(p.min, p.max));
        d.add(pair_of(p.defvalue, p.interval));
        d.add(pair_of(p.scale, p.mode << 8 | p.notenames));
    }
    return d.value();
}

std::uint64_t midi_digest(std::function<void(const std::string&)>& console, brisolan* x) {
    const std::string file = scratch_file();
    if (file.empty() || !write_from(console, x, {file, TYPE_MIDI}).empty()) return 0;
    std::ifstream in(file, std::ios::binary);
    digest d;
    d.add(std::string(std::istreambuf_iterator<char>(in), {}));
    std::error_code failed;
    std::filesystem::remove(file, failed);
    return d.value();
}
