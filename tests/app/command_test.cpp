// tests/app/command_test.cpp: the program run beside a test.
// Test layer.
#include "tests/app/command_test.h"

#include <fstream>
#include <sstream>

#include <unistd.h>

namespace fs = std::filesystem;

void command_test::SetUp() {
    before = fs::current_path();
    folder = fs::temp_directory_path() / ("brisolan-command-" + std::to_string(getpid()) + "-" +
                                          testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(folder);
}

void command_test::TearDown() {
    fs::current_path(before); // a test may have gone into its folder
    fs::remove_all(folder);
}

std::string command_test::text(const std::string& name, const std::string& contents) const {
    std::ofstream(folder / name, std::ios::binary) << contents;
    return file(name);
}

std::string command_test::score(const std::string& name, const std::vector<command_note>& notes) const {
    std::ostringstream lines;
    lines << "#N brisolan;\n#X restore;\n";
    int last = 0;
    for (const command_note& n : notes) {
        lines << "#X " << n.time - last << " " << n.pitch << " " << n.vel << " " << n.dur << " " << n.chan
              << " " << n.track << " 0 0;\n";
        last = n.time;
    }
    lines << "#X stop;\n";
    return text(name, lines.str());
}

std::string command_test::example(const std::string& name) {
    return std::string(BRISOLAN_SOURCE_DIR) + "/examples/" + name;
}

std::unique_ptr<process> command_test::start(const std::vector<std::string>& words) {
    std::vector<std::string> all{BRISOLAN_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    return std::make_unique<process>(folder, "program" + std::to_string(++programs), all);
}

namespace {

finished end_of(process& p) {
    const int status = p.wait(60'000);
    return {status, p.out(), p.err()};
}

} // namespace

finished command_test::run(const std::vector<std::string>& words) {
    return end_of(*start(words));
}

finished command_test::shell(const std::string& line) {
    process p(folder, "shell" + std::to_string(++programs),
              {"/bin/sh", "-c", "cd '" + folder.string() + "' && " + line, BRISOLAN_PROGRAM});
    return end_of(p);
}

std::vector<std::string> lines_of(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (line.find("no sound: ") == std::string::npos) lines.push_back(line);
    }
    return lines;
}
