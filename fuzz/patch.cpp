// fuzz/patch.cpp: any bytes as a patch: read line by line, run for a moment, saved, and what was saved is read again
// without complaint about its form. Nothing of it may write a file or stay behind.
// Fuzz layer; leans on the headless host.
#include <string>
#include <string_view>

#include "app/session.h"
#include "fuzz/support/drive.h"
#include "host/boxes/boxes.h"
#include "host/kernel/patchfile.h"
#include "tests/support/atombuf_text.h"

namespace {

// Beyond this a patch only takes longer.
constexpr std::size_t LARGEST = 2048;
constexpr int MOMENT_MS = 20;
constexpr int CLOCKS = 200;

// What the patch saves itself as, in text form; reads it, lets it run, and checks it on the way.
std::string run(std::string_view text, bool must_parse) {
    host_patcher* const p = kel_patcher_new();
    if (!kel_patch_parse(p, text, "fuzzed") && must_parse) std::abort();
    kel_run_queue();
    wait_a_little(MOMENT_MS, CLOCKS);
    check_scores(p);
    const std::string saved = text_of(p);
    kel_patcher_free(p);
    kel_run_queue();
    return saved;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > LARGEST) return 0;
    headless machine;
    headless_start(&machine);
    load_brisolan();
    boxes_load();
    fence_in();
    const std::string saved = run({reinterpret_cast<const char*>(data), size}, false);
    run(saved, true);
    if (!headless_end()) std::abort(); // a small block stayed behind
    return 0;
}
