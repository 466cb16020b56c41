// app/say.cpp: the program's lines.
// Layer: program.
#include "app/say.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "app/commands.h"
#include "app/live.h"
#include "app/script_words.h"

namespace {

// Why standard output first took no more, as errno; 0: it does. Written and read here, main level.
int output_error = 0;

} // namespace

void say(const std::string& what) {
    std::fprintf(stderr, "brisolan: %s\n", one_line(what).c_str());
}

void say_console(const std::string& line) {
    say(console_text(line));
}

int fail(const std::string& why) {
    say(why);
    return EXIT_FAILED;
}

int misuse(const std::string& why) {
    say(why);
    return EXIT_MISUSE;
}

void print_text(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && !output_error)
        output_error = errno;
}

void print_line(const std::string& line) {
    print_text(one_line(line) + "\n");
}

bool flush_output() {
    if (std::fflush(stdout) != 0 && !output_error) output_error = errno;
    if (std::ferror(stdout) && !output_error) output_error = EIO; // seen too late to know better
    return !output_error;
}

int finish_output(int status) {
    if (flush_output() || status != EXIT_DONE) return status;
    return fail(std::string("standard output: ") + std::strerror(output_error));
}

void keep_standard_streams() {
    // The lowest number that is free is the one given.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}
