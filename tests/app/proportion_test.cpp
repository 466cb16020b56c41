// tests/app/proportion_test.cpp: what the densest files lead to in memory, held against what docs/security.md promises.
// Test layer.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/app/command_test.h"

namespace {

constexpr std::int64_t KB = 1024;

// Large against what the program takes by itself and in steps.
constexpr int MANY = 400'000;

class proportion : public command_test {
protected:
    void SetUp() override {
        command_test::SetUp();
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "was not tested: a sanitizer takes memory of its own";
#endif
    }

    // The most memory that a run of the program had in use, bytes; -1 when it failed.
    static std::int64_t peak_of(std::vector<std::string> words) {
        words.insert(words.begin(), BRISOLAN_PROGRAM);
        std::vector<char*> argv;
        for (std::string& w : words) argv.push_back(w.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t silent;
        posix_spawn_file_actions_init(&silent);
        posix_spawn_file_actions_addopen(&silent, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        pid_t id = -1;
        const int failed = posix_spawn(&id, BRISOLAN_PROGRAM, &silent, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&silent);
        int status = -1;
        rusage used{};
        if (failed || wait4(id, &status, 0, &used) != id || status != 0) return -1;
        return used.ru_maxrss * KB;
    }

    // What the run took beyond one that reads next to nothing.
    std::int64_t taken_by(const std::string& command, const std::string& small, const std::string& large,
                          const std::vector<std::string>& more = {}) const {
        const auto words = [&](const std::string& name) {
            std::vector<std::string> all{command, file(name)};
            all.insert(all.end(), more.begin(), more.end());
            return all;
        };
        const std::int64_t idle = peak_of(words(small));
        const std::int64_t busy = peak_of(words(large));
        EXPECT_GT(idle, 0);
        EXPECT_GT(busy, 0);
        return busy - idle;
    }

    static std::string midi(int notes) {
        std::string track("\0\x90\x3c\x40", 4);
        for (int i = 1; i < notes; ++i) track += std::string("\0\x3c\x40", 3); // running status
        track += std::string("\0\xff\x2f\0", 4);
        const std::size_t n = track.size();
        std::string length;
        for (int shift = 24; shift >= 0; shift -= 8) length += static_cast<char>(n >> shift & 0xff);
        return std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk", 18) + length + track;
    }

    static std::string document(int events) {
        std::string lines = "#N brisolan;\n#X restore;\n";
        for (int i = 0; i < events; ++i) lines += "#X 0 1;";
        return lines;
    }

    static std::string patch(int boxes) {
        std::string lines;
        for (int i = 0; i < boxes; ++i) lines += "#N brisolan;";
        return lines;
    }
};

TEST_F(proportion, a_midi_file_takes_64_bytes_an_event) {
    text("small.mid", midi(1));
    text("large.mid", midi(MANY));
    EXPECT_LE(taken_by("list", "small.mid", "large.mid"), std::int64_t{MANY} * 64 + 64 * KB);
}

TEST_F(proportion, a_document_takes_64_bytes_a_line_and_three_times_its_size) {
    text("small.kel", document(1));
    const std::string large = document(MANY);
    text("large.kel", large);
    EXPECT_LE(taken_by("list", "small.kel", "large.kel"),
              std::int64_t{MANY} * 64 + 3 * static_cast<std::int64_t>(large.size()));
}

TEST_F(proportion, a_patch_takes_4_kilobytes_a_box) {
    constexpr int BOXES = 2000;
    text("small.kel", patch(1));
    text("large.kel", patch(BOXES));
    EXPECT_LE(taken_by("patch", "small.kel", "large.kel", {"--for", "1"}), BOXES * 4 * KB);
}

} // namespace
