// app/command_edit.cpp: `brisolan` and `brisolan edit`: the desktop editor, which is a program of its own.
// Layer: program.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "app/commands.h"
#include "app/say.h"

namespace {

namespace fs = std::filesystem;

bool is_set(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value;
}

bool has_display() {
    // A platform chosen by name may need neither.
    return is_set("DISPLAY") || is_set("WAYLAND_DISPLAY") || is_set("QT_QPA_PLATFORM");
}

// The editor's program: beside this one, as it is built, or where an install puts what people do not start themselves.
std::string editor_program() {
    std::error_code failed;
    const fs::path self = fs::read_symlink("/proc/self/exe", failed);
    for (const char* place : {"brisolan-editor", "../libexec/brisolan/brisolan-editor"}) {
        const fs::path program = (self.parent_path() / place).lexically_normal();
        if (!failed && access(program.c_str(), X_OK) == 0) return program.string();
    }
    return "";
}

// Why a file cannot be opened, told where the command was typed; what is wrong inside of it, the editor tells.
std::string why_unreadable(const std::string& file) {
    const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return std::strerror(errno);
    close(fd);
    return fs::is_directory(file) ? std::strerror(EISDIR) : "";
}

int run_edit(const std::vector<std::string>& files) {
    if (std::find(files.begin(), files.end(), "-") != files.end())
        return misuse("edit: the editor opens files, not standard input");
    if (!BRISOLAN_HAVE_QT)
        return fail(
            "this program was built without its editor, which needs Qt 6; --help tells what else it does");
    for (const std::string& file : files) {
        if (const std::string why = why_unreadable(file); !why.empty()) return fail(file + ": " + why);
    }
    if (!has_display())
        return fail(
            "the editor needs a display, and neither DISPLAY nor WAYLAND_DISPLAY is set; --help tells "
            "what works without one");
    const std::string program = editor_program();
    if (program.empty()) return fail("the editor's program brisolan-editor is not where it was installed");
    std::vector<char*> words{const_cast<char*>("brisolan")};
    for (const std::string& file : files) words.push_back(const_cast<char*>(file.c_str()));
    words.push_back(nullptr);
    execv(program.c_str(), words.data());
    return fail(program + ": " + std::strerror(errno));
}

} // namespace

void add_edit_command(CLI::App& program, int& status) {
    CLI::App* c = program.add_subcommand("edit", "Open files in the editor; without a file a new one");
    auto files = std::make_shared<std::vector<std::string>>();
    c->add_option("FILE", *files, "MIDI files or documents");
    c->callback([files, &status] { status = run_edit(*files); });
}
