// app/pipes.h: standard input and output for commands that work on files.
// Layer: program.
#pragma once

#include <array>
#include <csignal>
#include <functional>
#include <optional>
#include <string>

// While it lasts, a signal that would end the program takes a temporary file away first, and the folder made for it, if
// any. Where a signal does something else already, it goes on doing that. One at a time. [main]
class cleaned_by_signals {
public:
    explicit cleaned_by_signals(const std::string& file, const std::string& folder = "");
    ~cleaned_by_signals();
    cleaned_by_signals(const cleaned_by_signals&) = delete;
    cleaned_by_signals& operator=(const cleaned_by_signals&) = delete;

private:
    std::array<struct sigaction, 3> before{};
};

// Standard input to its end, in a temporary file whose name's ending tells the kind that its first bytes show. The file
// goes with the scope.
class spooled_input {
public:
    // `error` says why it could not be; the path is then empty.
    explicit spooled_input(std::string& error);
    ~spooled_input();
    spooled_input(const spooled_input&) = delete;
    spooled_input& operator=(const spooled_input&) = delete;
    const std::string& path() const { return file; }

private:
    std::string file;
    std::optional<cleaned_by_signals> cleaned;
};

// A temporary folder that goes, with the one file in it, with the scope: for output that is then copied.
class spooled_output {
public:
    explicit spooled_output(const std::string& name, std::string& error);
    ~spooled_output();
    spooled_output(const spooled_output&) = delete;
    spooled_output& operator=(const spooled_output&) = delete;
    const std::string& path() const { return file; }

    // Copies the file, which goes at once, to standard output; an empty string, or why it could not. Once.
    std::string copy_out();

private:
    void clear();

    std::string folder;
    std::string file;
    std::optional<cleaned_by_signals> cleaned;
};

// Has `write` write the file `out`; where that is "-", a temporary one called `name`, which is then copied to standard
// output. An empty string, or why it could not be: in the words of `write`, behind "standard output: " for "-".
// [main]
std::string write_out(const std::string& out, const std::string& name,
                      const std::function<std::string(const std::string&)>& write);
