// host/kernel/newfile.cpp: a file that the program itself writes.
// Layer: kernel.
#include "host/kernel/newfile.h"

#include <algorithm>
#include <utility>

#include "host/kernel/files.h"

namespace {

constexpr std::size_t MOST_AT_ONCE = 1 << 30; // the service counts a call's bytes in 32 bits

std::string reason(host_err code) {
    return code ? kel_filereason(code) : "";
}

} // namespace

new_file::~new_file() {
    if (file) kel_file_discard(file);
}

std::string new_file::open(const std::string& name, file_type type) {
    kel_file_allow(name);
    return reason(host_file_create(name.c_str(), host_default_path(), type, &file));
}

// The service keeps the first failure of a file and returns it at its end, so that none is looked at before.
void new_file::write(const void* from, std::size_t size) {
    const auto* at = static_cast<const std::byte*>(from);
    while (size > 0) {
        auto n = static_cast<std::int32_t>(std::min(size, MOST_AT_ONCE));
        size -= static_cast<std::size_t>(n);
        const auto* const now = std::exchange(at, at + n);
        (void)host_file_write(file, &n, now);
    }
}

void new_file::rewind() {
    (void)host_file_setpos(file, 0);
}

std::string new_file::finish() {
    return reason(kel_file_finish(std::exchange(file, nullptr)));
}
