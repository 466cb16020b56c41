// host/kernel/filetypes.cpp: what type a file has: kept beside it where the file system can, else told by its name's ending.
// Layer: kernel. Called by the file service.
#include "host/kernel/filetypes.h"

#include <sys/xattr.h>

#include <cerrno>

#include "host/kernel/files.h"

namespace {

// The extended attribute that keeps a file's type, four bytes.
constexpr const char* TYPE_ATTRIBUTE = "user.brisolan.type";

file_type type_of_bytes(const unsigned char* four) {
    return static_cast<file_type>(four[0]) << 24 | static_cast<file_type>(four[1]) << 16 |
           static_cast<file_type>(four[2]) << 8 | static_cast<file_type>(four[3]);
}

file_type type_by_ending(std::string_view file) {
    struct row {
        std::string_view ending;
        file_type type;
    };
    static constexpr row rows[] = {{".mid", TYPE_MIDI}, {".midi", TYPE_MIDI}, {".smf", TYPE_MIDI},
                                   {".kar", TYPE_MIDI}, {".kelb", TYPE_KELB}, {".kel", TYPE_TEXT},
                                   {".txt", TYPE_TEXT}};
    // A name that is nothing but an ending has none.
    const std::size_t base = file.rfind('/') + 1; // 0 when there is no slash
    const std::size_t dot = file.rfind('.');
    if (dot == std::string_view::npos || dot <= base) return 0;
    std::string ending(file.substr(dot));
    for (char& c : ending) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    for (const row& r : rows) {
        if (ending == r.ending) return r.type;
    }
    return 0;
}

bool is_being_written(std::string_view file) {
    const std::string_view name = file.substr(file.rfind('/') + 1); // from 0 when there is no slash
    return name.starts_with(BEING_WRITTEN_PREFIX) && name.ends_with(BEING_WRITTEN_ENDING);
}

} // namespace

type_sought sought_type(const std::string& file) {
    if (is_being_written(file)) return {0, false};
    unsigned char four[4];
    if (::getxattr(file.c_str(), TYPE_ATTRIBUTE, four, sizeof four) == sizeof four)
        return {type_of_bytes(four), true};
    return {type_by_ending(file), errno == ENODATA};
}

void keep_type(int fd, file_type type) {
    const unsigned char four[4] = {static_cast<unsigned char>(type >> 24),
                                   static_cast<unsigned char>(type >> 16),
                                   static_cast<unsigned char>(type >> 8), static_cast<unsigned char>(type)};
    (void)::fsetxattr(fd, TYPE_ATTRIBUTE, four, sizeof four, 0);
}

file_type kel_filetype(const std::string& file) {
    return sought_type(file).type;
}

file_type kel_typeofname(const char* name) {
    return type_by_ending(name);
}
