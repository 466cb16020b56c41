// app/pipes.h: standard input and output for commands that work on files.
// Layer: program.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/ending_signals.h"

// A temporary file, and the folder made for it if there is one: both go with the scope, and before a signal ends the
// program. Where a signal does something else already, it goes on doing that. One at a time. [main]
class temporary_file {
public:
    temporary_file(std::string name, std::string made_for_it);
    ~temporary_file();
    temporary_file(const temporary_file&) = delete;
    temporary_file& operator=(const temporary_file&) = delete;
    const std::string& path() const { return file; }

private:
    std::string file, folder;
    ending_actions before{};
};

// Standard input to its end, in a temporary file whose name's ending tells the kind that its first bytes show.
class spooled_input {
public:
    // `error` says why it could not be; else it is left empty, and there is a path.
    explicit spooled_input(std::string& error);
    const std::string& path() const { return file->path(); }

private:
    std::optional<temporary_file> file;
};

// A temporary file of this name in a folder of its own, not made yet: for output that is then copied.
class spooled_output {
public:
    // As spooled_input.
    spooled_output(const std::string& name, std::string& error);
    const std::string& path() const { return file->path(); }

    // Copies the file, which goes at once, to standard output; an empty string, or why it could not. Once.
    std::string copy_out();

private:
    std::optional<temporary_file> file;
};

// Has `write` write the file `out`; where that is "-", a temporary one called `name`, which is then copied to standard
// output. An empty string, or why it could not be: in the words of `write`, behind "standard output: " for "-".
// [main]
std::string write_out(const std::string& out, const std::string& name,
                      const std::function<std::string(const std::string&)>& write);
