// tests/app/command_test.h: the program run beside a test, in a folder of its own.
// Test layer.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/process.h"

// A note of a score that a test writes, times in milliseconds.
struct command_note {
    int time = 0;
    int pitch = 60;
    int vel = 100;
    int dur = 100;
    int chan = 1;
    int track = 1;
};

// What a run of the program gave.
struct finished {
    int status = -1;
    std::string out;
    std::string err;
};

class command_test : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Writes a file into the folder, or a document of these notes; its path.
    std::string text(const std::string& name, const std::string& contents) const;
    std::string score(const std::string& name, const std::vector<command_note>& notes) const;
    std::string file(const std::string& name) const { return (folder / name).string(); }
    static std::string example(const std::string& name);

    // Starts the program with these words behind its name; runs it to its end.
    std::unique_ptr<process> start(const std::vector<std::string>& words);
    finished run(const std::vector<std::string>& words);

    // Runs a line of the shell in the folder, in which "$0" is the program.
    finished shell(const std::string& line);

    std::filesystem::path folder;

private:
    std::filesystem::path before; // the current one
    int programs = 0;
};

// The lines of a text that do not tell of sound, which is there on some machines and not on others.
std::vector<std::string> lines_of(const std::string& text);
