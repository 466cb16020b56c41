// Runs a fuzz target over saved inputs, one after the other, where no fuzzer is linked.
// Tests layer. Called by ctest with the corpus folder, or by a person with single files.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

// Every regular file under path, or path itself when it is one.
std::vector<fs::path> inputs_at(const fs::path& path) {
    if (!fs::is_directory(path)) return {path};
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
        if (entry.is_regular_file()) found.push_back(entry.path());
    return found;
}

bool replay(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "replay: cannot read %s\n", path.c_str());
        return false;
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::printf("%s\n", path.c_str()); // before the run, so that a crash names its input
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path& path : inputs_at(argv[i])) {
            if (!replay(path)) return 1;
            ++count;
        }
    }
    if (count == 0) {
        std::fprintf(stderr, "replay: no inputs\n"); // a corpus that went missing must not pass
        return 1;
    }
    std::printf("%zu inputs\n", count);
    return 0;
}
