// app/source.cpp: reading a file into an instance for a command.
// Layer: program.
#include "app/source.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/pipes.h"
#include "app/target.h"
#include "host/kernel/atombuf.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "io/midiread.h"

namespace {

using console_printer = std::function<void(const std::string&)>;

// Why the file cannot even be opened, in the words of the system; empty when it can.
std::string why_unreadable(const std::string& file) {
    const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return std::strerror(errno);
    struct stat info {};
    const bool known = fstat(fd, &info) == 0;
    close(fd);
    if (!known) return std::strerror(errno);
    if (S_ISDIR(info.st_mode)) return std::strerror(EISDIR);
    if (!S_ISREG(info.st_mode)) return "not a regular file";
    return info.st_size == 0 ? "the file is empty" : "";
}

const char* ending_reason(midi_ending e) {
    switch (e) {
    case midi_ending::cut: return "the file is cut off";
    case midi_ending::funky: return "the file is cut off or broken: a delta time below 0";
    case midi_ending::bad: return "bad midi file";
    default: return "";
    }
}

// What is wrong with a document's form, over which the object passes in silence; empty when it is whole.
std::string why_no_document(const std::string& file, file_type type) {
    kel_document document;
    std::string why;
    kel_document_read(file.c_str(), host_default_path(), type == TYPE_KELB, &document, &why);
    return why;
}

std::string named(const std::string& file, const std::string& why) {
    return why.empty() ? "" : file + ": " + why;
}

// The console's lines while something runs: errors are failures, the rest is passed on to standard error.
class console_catch {
public:
    explicit console_catch(console_printer& p) : print(p), before(p) {
        print = [this](const std::string& line) { hear(line); };
    }
    ~console_catch() { print = before; }
    console_catch(const console_catch&) = delete;
    console_catch& operator=(const console_catch&) = delete;

    std::string error;

private:
    void hear(const std::string& line) {
        constexpr std::string_view prefix = "error ";
        if (error.empty() && line.starts_with(prefix)) error = line.substr(prefix.size());
    }
    console_printer& print;
    console_printer before;
};

// The console's error with the file called as the user calls it, whatever the line calls it and whether it does.
std::string told_of(const std::string& shown, const std::string& file, std::string_view error) {
    for (const std::string& start : {std::string("brisolan: "), file + ": "}) {
        if (error.starts_with(start)) error.remove_prefix(start.size());
    }
    return named(shown, std::string(error));
}

std::string read_named(console_printer& print, brisolan* x, const std::string& file, const std::string& shown,
                       int import_option) {
    kel_files_protect(true); // what is read may come from anyone
    if (const std::string why = why_unreadable(file); !why.empty()) return named(shown, why);
    const file_type type = kel_filetype(file);
    if (type != TYPE_MIDI && type != TYPE_TEXT && type != TYPE_KELB) {
        return named(shown, std::string("not a kind that can be read: ") + WANTED_ENDINGS);
    }
    console_catch console(print);
    const std::int32_t serial = x->serial;
    const atom arguments[] = {atom(host_symbol(file.c_str())), atom(import_option)};
    kel_send(x, host_symbol("read"), arguments);
    kel_run_queue();
    if (!console.error.empty()) return told_of(shown, file, console.error);
    if (type == TYPE_MIDI) return named(shown, ending_reason(g_midi_ending));
    // A new serial shows that lines were carried out. Where none needed one, the file is read once more to tell whether
    // there were any to carry out.
    return x->serial != serial ? "" : named(shown, why_no_document(file, type));
}

} // namespace

std::string read_into(headless_session& session, brisolan* x, const std::string& file, int import_option) {
    return read_into(session.machine.print, x, file, import_option);
}

std::string read_into(console_printer& print, brisolan* x, const std::string& file, int import_option) {
    if (file != "-") return read_named(print, x, file, file, import_option);
    std::string error;
    const spooled_input input(error);
    if (!error.empty()) return named("standard input", error);
    return read_named(print, x, input.path(), "standard input", import_option);
}
