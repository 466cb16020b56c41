// host/kernel/filetypes.h: what type a file has: kept beside it where the file system can, else told by its name's ending.
// Layer: kernel. Used by the file service.
#pragma once

#include <string>
#include <string_view>

#include "host/kel.h"

// What a file is called while it is written: it begins and ends so. One that a killed program left behind may have got its
// type already, and is never a document all the same.
constexpr std::string_view BEING_WRITTEN_PREFIX = ".brisolan-";
constexpr std::string_view BEING_WRITTEN_ENDING = ".part";

// A type, 0 for none, and whether finding it has shown that the file is there, which then need not be asked.
struct type_sought {
    file_type type;
    bool there;
};

// The type of a file, which need not exist. [main]
type_sought sought_type(const std::string& file);

// Keeps an open file's type beside it. File systems without extended attributes leave the type to the name's ending. [main]
void keep_type(int fd, file_type type);
