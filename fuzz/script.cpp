// fuzz/script.cpp: any text as a script, line by line: each line is carried out or refused with a reason, and what always
// holds of a score still holds after it.
// Fuzz layer; leans on the script runner.
#include <string>

#include "app/script.h"
#include "fuzz/support/drive.h"

namespace {

constexpr std::size_t LARGEST = 4096;
constexpr int LONGEST_WAIT_MS = 1000; // a longer one only takes longer
constexpr int WINDOW_MOST = 1000;

// Lines that would take long rather than find something: time and windows without bounds.
bool too_long(const std::string& line) {
    std::string why;
    const std::vector<script_word> words = script_split(line, why);
    if (words.empty()) return false;
    const bool wait = words[0].text == ":wait";
    if (!wait && words[0].text != ":resize" && words[0].text != ":png") return false;
    if (words[0].text == ":png") return true; // writes where it was told to
    for (std::size_t i = 1; i < words.size(); ++i) {
        std::string error;
        const std::optional<atom> a = script_atom(words[i], error);
        if (a && a->type == A_LONG && a->l > (wait ? LONGEST_WAIT_MS : WINDOW_MOST)) return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > LARGEST) return 0;
    script_runner runner("", [](const std::string&) {});
    fence_in();
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string line = text.substr(at, end - at);
        at = end + 1;
        if (too_long(line)) continue;
        runner.run(line);
        if (const brisolan* x = runner.addressed()) brisolan_checkinvariants(x);
    }
    return 0;
}
