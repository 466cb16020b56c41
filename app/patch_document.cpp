// app/patch_document.cpp: a patch opened on the desktop.
// Layer: program.
#include "app/patch_document.h"

#include <cstring>
#include <fstream>

#include "host/boxes/midi_device.h"
#include "host/kernel/atombuf.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/patchfile.h"

template <class Does> std::string patch_document::error_of(Does does) {
    constexpr std::string_view error = "error ";
    std::string last;
    const std::function<void(const std::string&)> before = console;
    console = [&](const std::string& line) {
        if (line.starts_with(error)) last = line.substr(error.size());
        if (before) before(line);
    };
    const bool done = does();
    console = before;
    return done ? "" : last.empty() ? path + ": failed" : last;
}

patch_document::patch_document(std::function<void(const std::string&)>& c)
    : console(c), patch(kel_patcher_new()) {}

patch_document::~patch_document() {
    for (host_object* x : kel_patcher_objects(patch)) {
        if (std::strcmp(kel_class_name(x->cls), "makenote") == 0) kel_send(x, host_symbol("stop"), {});
    }
    kel_patcher_free(patch);
}

bool patch_document::is_one(const std::string& file) {
    if (kel_filetype(file) != TYPE_TEXT) return false;
    std::ifstream in(file, std::ios::binary);
    std::string receiver;
    std::string selector;
    in >> receiver >> selector;
    return receiver == "#P" || (receiver == "#N" && selector != "brisolan" && selector != "brisolan;");
}

std::string patch_document::start(const std::string& from) {
    path = from;
    kel_files_protect(true); // the patch may come from anyone
    return error_of([&] { return kel_patch_read(patch, from.c_str(), host_default_path()); });
}

std::string patch_document::save(const std::string& to) {
    kel_file_allow(to);
    const int form = kel_typeofname(to.c_str()) == TYPE_KELB ? ATOMBUF_BINARY : ATOMBUF_TEXT;
    std::string why =
        error_of([&] { return kel_patch_write(patch, to.c_str(), host_default_path(), form) == HOST_OK; });
    if (why.empty()) path = to;
    return why;
}
