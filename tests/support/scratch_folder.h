// tests/support/scratch_folder.h: an empty folder that is the current one while a test runs.
// Test layer. Used by tests that read and write files.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

class scratch_folder {
public:
    // On the disk; or in memory where the machine has that, for tests that save so often that waiting for the disk would
    // take most of their time.
    explicit scratch_folder(bool in_memory = false) : before(std::filesystem::current_path()) {
        const std::filesystem::path memory = "/dev/shm";
        const bool there = in_memory && ::access(memory.c_str(), W_OK) == 0;
        std::string name =
            ((there ? memory : std::filesystem::temp_directory_path()) / "brisolan-test-XXXXXX").string();
        if (!mkdtemp(name.data())) std::abort();
        where = name;
        std::filesystem::current_path(where);
    }
    ~scratch_folder() {
        std::error_code ignored;
        std::filesystem::current_path(before);
        std::filesystem::permissions(where, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(where, ignored);
    }
    scratch_folder(const scratch_folder&) = delete;
    scratch_folder& operator=(const scratch_folder&) = delete;

    const std::filesystem::path& path() const { return where; }

    // The names in the folder, sorted.
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(where))
            all.push_back(entry.path().filename().string());
        std::sort(all.begin(), all.end());
        return all;
    }

private:
    std::filesystem::path before;
    std::filesystem::path where;
};

inline void put_file(const std::filesystem::path& name, const std::string& bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
}

inline std::string get_file(const std::filesystem::path& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
