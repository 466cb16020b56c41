// app/patch_files.cpp: the patches that come with the program.
// Layer: program.
#include "app/patch_files.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> places() {
    std::vector<fs::path> all;
    if (const char* named = std::getenv("BRISOLAN_PATCHES"); named && *named) all.emplace_back(named);
    std::error_code failed;
    const fs::path program = fs::read_symlink("/proc/self/exe", failed);
    if (failed) return all;
    const fs::path folder = program.parent_path();
    all.push_back(folder / "patches");
    all.push_back(folder / "../share/brisolan/patches");
    all.push_back(folder / "../../patches"); // build/PRESET/brisolan in a source tree
    return all;
}

std::optional<std::string> whole_file(const fs::path& file) {
    std::error_code failed;
    if (!fs::is_regular_file(file, failed)) return std::nullopt;
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in || !text) return std::nullopt;
    return text.str();
}

} // namespace

patch_text own_patch(const char* name) {
    const std::string file_name = std::string(name) + ".kel";
    for (const fs::path& folder : places()) {
        const fs::path file = folder / file_name;
        if (std::optional<std::string> text = whole_file(file))
            return {file.lexically_normal().string(), std::move(*text)};
    }
    for (const built_in_patch& p : built_in_patches()) {
        if (p.name == name) return {file_name, std::string(p.text)};
    }
    return {file_name, ""};
}
