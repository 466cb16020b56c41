// tests/support/host_test.cpp: fixtures for tests that need the host running.
// Test layer.
#include "tests/support/host_test.h"

#include <sstream>

#include "host/kernel/dispatch.h"

bool in_sequence(const brisolan* x, const event* e) {
    for (const event* at = x->events; at; at = at->next) {
        if (at == e) return true;
    }
    return false;
}

void host_test::SetUp() {
    machine.print = [this](const std::string& line) { lines.push_back(line); };
    headless_start(&machine);
}

void host_test::TearDown() {
    machine.print = nullptr;
    EXPECT_TRUE(headless_end()) << "small blocks are still alive";
}

std::vector<std::string> host_test::taken() {
    return std::exchange(lines, {});
}

std::vector<atom> atoms_of(const std::string& message) {
    std::string error;
    std::vector<atom> atoms;
    for (const script_word& w : script_split(message, error)) {
        const std::optional<atom> a = script_atom(w, error);
        if (!a) break;
        atoms.push_back(*a);
    }
    EXPECT_EQ(error, "") << message;
    return atoms;
}

void object_test::SetUp() {
    host_test::SetUp();
    load_brisolan();
    patcher = kel_patcher_new();
    kel_patcher_build(patcher);
    x = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {}));
    kel_run_queue();
}

void object_test::TearDown() {
    kel_patcher_free(patcher);
    host_test::TearDown();
}

void object_test::send(const std::string& message) {
    kel_message(x, atoms_of(message));
    kel_run_queue();
}

void script_test::SetUp() {
    runner = std::make_unique<script_runner>("", [this](const std::string& line) { lines.push_back(line); });
}

void script_test::TearDown() {
    runner.reset();
}

std::vector<std::string> script_test::run(const std::string& script) {
    lines.clear();
    std::istringstream in(script);
    for (std::string line; std::getline(in, line);) {
        const std::string why = runner->run(line);
        EXPECT_EQ(why, "") << line;
    }
    return lines;
}
