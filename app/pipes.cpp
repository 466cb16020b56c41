// app/pipes.cpp: standard input and output for commands that work on files.
// Layer: program.
#include "app/pipes.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

constexpr std::size_t PIECE = 65536;

// What a signal's handler takes away. Written where a temporary file comes, before a handler is there.
std::string file_to_clean;
std::string folder_to_clean;

void clean() {
    unlink(file_to_clean.c_str());
    if (!folder_to_clean.empty()) rmdir(folder_to_clean.c_str());
}

void clean_and_end(int which) {
    clean();
    std::signal(which, SIG_DFL);
    std::raise(which);
}

// Holds the signals that end the program back while it lasts.
class signals_wait {
public:
    signals_wait() {
        sigset_t held;
        sigemptyset(&held);
        for (const int which : ENDING_SIGNALS) sigaddset(&held, which);
        sigprocmask(SIG_BLOCK, &held, &before);
    }
    ~signals_wait() { sigprocmask(SIG_SETMASK, &before, nullptr); }
    signals_wait(const signals_wait&) = delete;
    signals_wait& operator=(const signals_wait&) = delete;

private:
    sigset_t before{};
};

std::string temporary_folder() {
    const char* named = std::getenv("TMPDIR");
    return named && *named ? named : "/tmp";
}

// The ending of the kind that these first bytes show.
const char* ending_of(std::string_view start) {
    if (start.starts_with("MThd")) return ".mid";
    return start.find('\0') == std::string_view::npos && !start.starts_with("kelb") ? ".kel" : ".kelb";
}

// Why there is no temporary file.
std::string no_temporary() {
    const int why = errno;
    return "nothing can be kept in " + temporary_folder() + ": " + std::strerror(why);
}

// Everything of `from` into `to`; false when reading or writing failed.
bool copy_all(FILE* from, FILE* to) {
    std::array<char, PIECE> piece;
    while (const std::size_t n = std::fread(piece.data(), 1, piece.size(), from)) {
        if (std::fwrite(piece.data(), 1, n, to) != n) return false;
    }
    return !std::ferror(from) && std::fflush(to) == 0;
}

} // namespace

temporary_file::temporary_file(std::string name, std::string made_for_it)
    : file(std::move(name)), folder(std::move(made_for_it)) {
    file_to_clean = file;
    folder_to_clean = folder;
    struct sigaction how {};
    how.sa_handler = clean_and_end;
    sigemptyset(&how.sa_mask);
    for (std::size_t i = 0; i < ENDING_SIGNALS.size(); ++i) {
        sigaction(ENDING_SIGNALS[i], nullptr, &before[i]);
        if (before[i].sa_handler == SIG_DFL) sigaction(ENDING_SIGNALS[i], &how, nullptr);
    }
}

temporary_file::~temporary_file() {
    clean();
    for (std::size_t i = 0; i < ENDING_SIGNALS.size(); ++i) {
        if (before[i].sa_handler == SIG_DFL) sigaction(ENDING_SIGNALS[i], &before[i], nullptr);
    }
}

spooled_input::spooled_input(std::string& error) {
    std::vector<char> start(PIECE);
    start.resize(std::fread(start.data(), 1, start.size(), stdin));
    const char* ending = ending_of({start.data(), start.size()});
    FILE* to = nullptr;
    {
        const signals_wait until_it_can_be_cleaned;
        std::string name = temporary_folder() + "/brisolan-XXXXXX" + ending;
        const int fd = mkstemps(name.data(), static_cast<int>(std::strlen(ending)));
        to = fd < 0 ? nullptr : fdopen(fd, "wb");
        if (!to) {
            error = no_temporary();
            return;
        }
        file.emplace(name, "");
    }
    const bool whole = std::fwrite(start.data(), 1, start.size(), to) == start.size() && copy_all(stdin, to);
    if (!whole) error = std::strerror(errno);
    std::fclose(to);
}

spooled_output::spooled_output(const std::string& name, std::string& error) {
    const signals_wait until_it_can_be_cleaned;
    std::string folder = temporary_folder() + "/brisolan-XXXXXX";
    if (mkdtemp(folder.data()))
        file.emplace(folder + "/" + name, folder);
    else
        error = no_temporary();
}

std::string spooled_output::copy_out() {
    FILE* from = std::fopen(path().c_str(), "rb");
    if (!from) return std::strerror(errno);
    // A reader who goes ends this program in the midst of the copying.
    file.reset();
    const bool whole = copy_all(from, stdout);
    const int why = errno;
    std::fclose(from);
    return whole ? "" : std::strerror(why);
}

std::string write_out(const std::string& out, const std::string& name,
                      const std::function<std::string(const std::string&)>& write) {
    if (out != "-") return write(out);
    std::string why;
    spooled_output spool(name, why);
    if (why.empty()) why = write(spool.path());
    if (why.empty()) why = spool.copy_out();
    return why.empty() ? "" : "standard output: " + why;
}
