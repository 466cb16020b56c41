// host/kernel/newfile.h: a file that the program itself writes because a person named it: a picture, a sound.
// Layer: kernel; over the file service. Called by the command line and by the platforms.
#pragma once

#include <cstddef>
#include <string>

#include "host/kel.h"

// The file grows beside its target, as host_file_create tells, and takes its place when it is finished; without that the
// target stays as it was. Nothing is said on the console.
class new_file {
public:
    new_file() = default;
    ~new_file();
    new_file(const new_file&) = delete;
    new_file& operator=(const new_file&) = delete;

    // Once. Empty, or why the file cannot be written. [main]
    std::string open(const std::string& name, file_type type);

    // Writes at the position. A failure is told by finish(). [main]
    void write(const void* from, std::size_t size);

    // Puts the position back to the file's beginning. A failure is told by finish(). [main]
    void rewind();

    // Puts the file in place. Empty, or why it could not be. [main]
    std::string finish();

private:
    host_file* file = nullptr;
};
