// tests/support/host_test.h: fixtures for tests that need the host running.
// Test layer. Used by every room's tests.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "app/script.h"
#include "app/session.h"

// Whether the event is in the instance's sequence: a walk.
bool in_sequence(const brisolan* x, const event* e);

// A message written as in a script; one that is none fails the test.
std::vector<atom> atoms_of(const std::string& message);

// The host on the played machine, with the lines that it prints. Ends with no small block alive.
class host_test : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The lines printed since the last call.
    std::vector<std::string> taken();

    headless machine;
    std::vector<std::string> lines;
};

// The same with the object's class loaded and one instance in a patcher.
class object_test : public host_test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Sends a message to the instance's left inlet, written as in a script, then carries out what is queued.
    void send(const std::string& message);

    host_patcher* patcher = nullptr;
    brisolan* x = nullptr;
};

// The script runner, asked line by line.
class script_test : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Runs the lines and gives what they print; a line that is not understood fails the test.
    std::vector<std::string> run(const std::string& script);
    brisolan* x() { return runner->addressed(); }

    std::unique_ptr<script_runner> runner;
    std::vector<std::string> lines;
};
