// Makes the example files from their sources: NAME.mid in the one folder from NAME.notes in the other.
// Developer tool; no part of the program.
// Started by the build's target "examples", and with --check by the test that the files are what the sources say.
#include "examples/src/midi_bytes.h"
#include "examples/src/notes_reader.h"
#include "examples/src/read_back.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>

using namespace examples;
namespace fs = std::filesystem;

static std::vector<fs::path> files_ending(const fs::path& folder, const char* ending) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ending) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

static bool holds(const fs::path& file, const std::vector<std::uint8_t>& wanted) {
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> there{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    return in && std::equal(there.begin(), there.end(), wanted.begin(), wanted.end(),
                            [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

static bool write(const fs::path& file, const std::vector<std::uint8_t>& data) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
    out.close();
    return bool(out);
}

static void report(const fs::path& file, const piece& p) {
    size_t notes = 0;
    for (const voice& v : p.voices) notes += v.notes.size();
    std::printf("%s: format %d, %zu voices, %zu notes, %.1f s\n", file.filename().c_str(), p.format,
                p.voices.size(), notes, heard_ms(p, p.end) / 1000);
}

// One source to its file, or compared with it. False, having said why, when something is not as it should be.
static bool make(const fs::path& source, const fs::path& target, bool check) {
    const piece p = read_notes_file(source);
    const std::vector<std::uint8_t> data = midi_bytes(p);
    const std::vector<std::string> wrong = differences(p, data);
    for (const std::string& line : wrong)
        std::fprintf(stderr, "%s: %s\n", source.filename().c_str(), line.c_str());
    if (!wrong.empty()) return false;
    if (check && !holds(target, data)) {
        std::fprintf(stderr, "%s: not what its source makes\n", target.filename().c_str());
        return false;
    }
    if (!check && !write(target, data)) {
        std::fprintf(stderr, "%s: cannot be written\n", target.c_str());
        return false;
    }
    report(target, p);
    return true;
}

static bool make_all(const fs::path& sources, const fs::path& targets, bool check) {
    bool good = true;
    std::set<fs::path> made;
    for (const fs::path& source : files_ending(sources, ".notes")) {
        const fs::path target = targets / source.stem().concat(".mid");
        good = make(source, target, check) && good;
        made.insert(target);
    }
    for (const fs::path& file : files_ending(targets, ".mid")) {
        if (made.contains(file)) continue;
        std::fprintf(stderr, "%s: has no source\n", file.filename().c_str());
        good = false;
    }
    if (made.empty()) std::fprintf(stderr, "%s: no sources\n", sources.c_str());
    return good && !made.empty();
}

int main(int argc, char** argv) {
    const bool check = argc == 4 && std::string(argv[1]) == "--check";
    if (argc != 3 && !check) {
        std::fprintf(stderr, "usage: make_examples [--check] SOURCES TARGETS\n");
        return 2;
    }
    try {
        return make_all(argv[argc - 2], argv[argc - 1], check) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
