// fuzz/clipboard.cpp: any text on the clipboard, pasted into a score that has some events; all of it copied, pasted, cut and
// pasted again.
// Fuzz layer; leans on the headless host.
#include <string>

#include "app/script.h"
#include "fuzz/support/drive.h"

namespace {

constexpr std::size_t LARGEST = 1 << 14;

struct fixture {
    script_runner runner{"", [](const std::string&) {}};

    void line(const std::string& text) {
        if (!runner.run(text).empty()) std::abort();
        brisolan_checkinvariants(runner.addressed());
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fixture& f = *new fixture; // never taken down: what it draws with may be gone by then
    if (size > LARGEST) return 0;
    f.line("clear");
    // Drawing takes most of the time and is fuzzed by the scripts too: seen in one of eight.
    f.line(size % 8 == 0 ? "open" : "wclose");
    for (const char* made : {"record", "0 60 100", "10 62 100", "stop"}) f.line(made);
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (text.find('\0') != std::string::npos) return 0; // no clipboard text holds one
    f.line(":clipboard " + script_quote(text));
    f.line(":edit paste");
    const std::int32_t pasted = f.runner.addressed()->nevents;
    // A copy's text gives as many events again, now selected; cut and pasted they are as many once more.
    for (const char* told : {":edit selectall", ":edit copy", ":edit paste"}) f.line(told);
    if (f.runner.addressed()->nevents != 2 * pasted) std::abort();
    for (const char* told : {":edit cut", ":key 8"}) f.line(told);
    if (f.runner.addressed()->nevents != pasted) std::abort();
    f.line(":edit paste");
    if (f.runner.addressed()->nevents != 2 * pasted) std::abort();
    return 0;
}
