// tests/desktop/process.cpp: another program, run beside a test.
// Test layer.
#include "tests/support/process.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string contents(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// In the child: its output to files, its end with the test's, the program in its place.
[[noreturn]] void become(const char* out, const char* err, char** words) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int o = open(out, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int e = open(err, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int i = open("/dev/null", O_RDONLY);
    dup2(i, 0);
    dup2(o, 1);
    dup2(e, 2);
    execvp(words[0], words);
    _exit(127);
}

} // namespace

void sleep_ms(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

process::process(const std::filesystem::path& folder, const std::string& name,
                 const std::vector<std::string>& words)
    : files(folder / name) {
    const std::string out_file = files.string() + ".out";
    const std::string err_file = files.string() + ".err";
    std::vector<std::string> copy = words;
    std::vector<char*> argv;
    for (std::string& w : copy) argv.push_back(w.data());
    argv.push_back(nullptr);
    id = fork();
    if (id == 0) become(out_file.c_str(), err_file.c_str(), argv.data());
}

process::~process() {
    if (wait(0) != -1) return;
    send(SIGTERM);
    if (wait(5000) != -1) return;
    send(SIGKILL);
    wait(5000);
}

void process::send(int signal) const {
    if (status == -1 && id > 0) kill(id, signal);
}

int process::wait(int ms) {
    holds_within(ms, [this] {
        if (status != -1) return true;
        int how = 0;
        if (waitpid(id, &how, WNOHANG) == id)
            status = WIFEXITED(how) ? WEXITSTATUS(how) : 128 + WTERMSIG(how);
        return status != -1;
    });
    return status;
}

std::string process::out() const {
    return contents(files.string() + ".out");
}
std::string process::err() const {
    return contents(files.string() + ".err");
}
