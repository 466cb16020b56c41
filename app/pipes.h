// app/pipes.h: standard input and output for commands that work on files.
// Layer: program.
#pragma once

#include <functional>
#include <string>

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
};

// Has `write` write the file `out`; where that is "-", a temporary one called `name`, which is then copied to standard
// output. An empty string, or why it could not be: in the words of `write`, behind "standard output: " for "-".
// [main]
std::string write_out(const std::string& out, const std::string& name,
                      const std::function<std::string(const std::string&)>& write);
