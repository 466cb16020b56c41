// host/kernel/systemcalls.cpp: the system's calls on files, with the host's error codes, each of which a test can make fail.
// Layer: kernel. Called by the file service.
#include "host/kernel/systemcalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "host/kernel/files.h"

namespace {

struct error_row {
    int system;
    host_err code;
};

constexpr error_row error_table[] = {
    {ENOENT, HOST_ERR_NOT_FOUND}, {ENOTDIR, HOST_ERR_NOT_FOUND}, {EACCES, HOST_ERR_PERMISSION},
    {EPERM, HOST_ERR_PERMISSION}, {EROFS, HOST_ERR_PERMISSION},  {EISDIR, HOST_ERR_BUSY},
    {EBUSY, HOST_ERR_BUSY},       {ETXTBSY, HOST_ERR_BUSY},      {ENXIO, HOST_ERR_BUSY},
    {EEXIST, HOST_ERR_EXISTS},    {ENOSPC, HOST_ERR_FULL},       {EDQUOT, HOST_ERR_FULL},
    {EFBIG, HOST_ERR_FULL},       {ENAMETOOLONG, HOST_ERR_NAME}, {EINVAL, HOST_ERR_NAME},
    {ELOOP, HOST_ERR_NAME},       {ENOMEM, HOST_ERR_MEMORY},     {EMFILE, HOST_ERR_MEMORY},
    {ENFILE, HOST_ERR_MEMORY},
};

// What a test has asked for. Main level.
int operations_to_fault = 0; // 0: none is to fail
host_err fault_code = HOST_OK;
bool fault_happened = false;

} // namespace

void kel_file_fault(int k, host_err code) {
    operations_to_fault = k;
    fault_code = code;
    fault_happened = false;
}

bool kel_file_faulted() {
    return fault_happened;
}

host_err operation_fault() {
    if (operations_to_fault == 0 || --operations_to_fault > 0) return HOST_OK;
    fault_happened = true;
    return fault_code;
}

host_err system_code(int error_number) {
    for (const error_row& row : error_table) {
        if (row.system == error_number) return row.code;
    }
    return HOST_ERR_IO;
}

const char* kel_filereason(host_err code) {
    switch (code) {
    case HOST_OK: return "no error";
    case HOST_ERR_FULL: return "no space left";
    case HOST_ERR_IO: return "reading or writing failed";
    case HOST_ERR_NAME: return "not a possible name";
    case HOST_ERR_NOT_FOUND: return "no such file or folder";
    case HOST_ERR_BUSY: return "a folder, or not to be opened as a file";
    case HOST_ERR_EXISTS: return "a file of that name exists";
    case HOST_ERR_PERMISSION: return "not allowed";
    case HOST_ERR_MEMORY: return "no memory";
    case HOST_ERR_FORMAT: return "the content is not what it should be";
    default: return "unknown error";
    }
}

host_err system_read(int fd, std::byte* into, std::size_t size, std::size_t* got) {
    *got = 0;
    if (const host_err e = operation_fault()) return e;
    for (;;) {
        const ssize_t n = ::read(fd, into, size);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return system_code(errno);
        *got = static_cast<std::size_t>(n);
        return HOST_OK;
    }
}

host_err system_write(int fd, const std::byte* from, std::size_t size) {
    while (size > 0) {
        if (const host_err e = operation_fault()) return e;
        const ssize_t n = ::write(fd, from, size);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return system_code(errno);
        from += n;
        size -= static_cast<std::size_t>(n);
    }
    return HOST_OK;
}

host_err system_seek(int fd, std::int64_t position) {
    if (const host_err e = operation_fault()) return e;
    return ::lseek(fd, position, SEEK_SET) < 0 ? HOST_ERR_IO : HOST_OK;
}

host_err system_sync(int fd) {
    if (const host_err e = operation_fault()) return e;
    return ::fsync(fd) != 0 ? system_code(errno) : HOST_OK;
}

host_err system_rename(const std::string& from, const std::string& to) {
    if (const host_err e = operation_fault()) return e;
    return ::rename(from.c_str(), to.c_str()) != 0 ? system_code(errno) : HOST_OK;
}

host_err system_open(const std::string& file, int flags, unsigned mode, int* fd) {
    if (const host_err e = operation_fault()) return e;
    do {
        *fd = ::open(file.c_str(), flags | O_CLOEXEC, mode);
    } while (*fd < 0 && errno == EINTR);
    return *fd < 0 ? system_code(errno) : HOST_OK;
}
