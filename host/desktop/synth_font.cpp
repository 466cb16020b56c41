// host/desktop/synth_font.cpp: where sound fonts lie.
// Layer: desktop platform; asks the file system alone.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include <unistd.h>

#include "host/desktop/synth.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* FOLDERS[] = {"/usr/share/sounds/sf2", "/usr/share/sounds/sf3", "/usr/share/soundfonts"};

bool readable(const std::string& file) {
    std::error_code none;
    return !file.empty() && fs::is_regular_file(file, none) && access(file.c_str(), R_OK) == 0;
}

bool is_font(const fs::path& file) {
    const std::string ending = file.extension().string();
    return (ending == ".sf2" || ending == ".sf3") && readable(file.string());
}

// The font of this folder whose name comes first; empty when it has none.
std::string first_font(const char* folder) {
    std::vector<std::string> fonts;
    std::error_code none;
    for (const fs::directory_entry& file : fs::directory_iterator(folder, none)) {
        if (is_font(file.path())) fonts.push_back(file.path().string());
    }
    const auto first = std::min_element(fonts.begin(), fonts.end());
    return first == fonts.end() ? "" : *first;
}

// The named file, or nothing and the reason.
std::string named_font(const std::string& file, std::string& error) {
    if (readable(file)) return file;
    std::error_code none;
    const int why = access(file.c_str(), R_OK) != 0 ? errno : fs::is_directory(file, none) ? EISDIR : EINVAL;
    error = "sound font " + file + ": " + std::strerror(why);
    return "";
}

} // namespace

std::string synth_find_font(const std::string& asked, const std::string& usual, std::string& error) {
    if (!asked.empty()) return named_font(asked, error);
    if (const char* const set = std::getenv("BRISOLAN_SOUNDFONT"); set && *set) return named_font(set, error);
    if (readable(usual)) return usual;
    for (const char* const folder : FOLDERS) {
        if (const std::string font = first_font(folder); !font.empty()) return font;
    }
    error =
        "there is no sound font: install one (Debian: timgm6mb-soundfont), or name one with --soundfont or "
        "BRISOLAN_SOUNDFONT";
    return "";
}
