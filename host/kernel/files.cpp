// host/kernel/files.cpp: the file service: buffered, typed, and never a half-written file in a target's place.
// Layer: kernel. Called by the object through host/kel.h, and by the kernel's own documents.
#include "host/kernel/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

#include "host/kernel/filetypes.h"
#include "host/kernel/systemcalls.h"

namespace {

// Large enough that a program which reads or writes a kilobyte at a time costs one system call in 64.
constexpr std::size_t BUFFER_SIZE = 65536;

// How much is written before the disk is told to begin with it.
constexpr std::int64_t WRITE_OUT_EVERY = 1 << 20;

// Symbolic links followed from a target before it counts as a loop.
constexpr int MAX_LINKS = 40;

// ---------------------------------------------------------------------------------------------------------------------
// Process-wide state. Written by the routines of files.h; survives every file. Main level.

// By path identifier; the first is the current directory.
std::vector<std::string>& folders() {
    static std::vector<std::string> list{""};
    return list;
}

std::vector<std::int16_t> search_path;

bool protecting = false;
std::vector<std::filesystem::path> allowed; // whole paths, without links

// ---------------------------------------------------------------------------------------------------------------------
// The place beside a target

std::string folder_of(const std::string& file) {
    const std::size_t slash = file.rfind('/');
    return slash == std::string::npos ? "" : file.substr(0, slash + 1);
}

// The file that the name leads to through symbolic links, which need not exist.
host_err follow_links(std::string* file) {
    for (int i = 0; i < MAX_LINKS; ++i) {
        std::array<char, HOST_NAME_SIZE> to;
        const ssize_t n = ::readlink(file->c_str(), to.data(), to.size());
        if (n < 0) return errno == EINVAL || errno == ENOENT ? HOST_OK : system_code(errno);
        std::string target(to.data(), static_cast<std::size_t>(n));
        *file = target.starts_with('/') ? target : folder_of(*file) + target;
    }
    return HOST_ERR_NAME;
}

// Opens a new file in the target's folder. The length of its name does not depend on the target's, which may be as long
// as a name can be.
host_err open_beside(const std::string& target, mode_t mode, std::string* temporary, int* fd) {
    static unsigned counter = 0;
    for (int attempt = 0; attempt < 10000; ++attempt) {
        *temporary = folder_of(target) + std::string(BEING_WRITTEN_PREFIX) + std::to_string(::getpid()) +
                     "-" + std::to_string(counter++) + std::string(BEING_WRITTEN_ENDING);
        const host_err e = system_open(*temporary, O_RDWR | O_CREAT | O_EXCL, mode, fd);
        if (e != HOST_ERR_EXISTS) return e;
    }
    return HOST_ERR_EXISTS;
}

// A file that grows past the process's limit shall be an error like any other, not the end of the program.
void expect_size_limit() {
    static bool done = false;
    if (done) return;
    done = true;
    struct sigaction now {};
    if (::sigaction(SIGXFSZ, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) {
        now.sa_handler = SIG_IGN;
        (void)::sigaction(SIGXFSZ, &now, nullptr);
    }
}

void sync_folder_of(const std::string& file) {
    const std::string folder = folder_of(file);
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    (void)::fsync(fd); // not every file system can; the file itself is whole
    (void)::close(fd);
}

} // namespace

// Bytes on their way. The one given back last is kept for the next file: for a small one to ask for so much memory, and to
// give it back, takes as long as a call of the system.
class file_buffer {
public:
    file_buffer()
        : bytes(kept ? std::move(kept) : std::make_unique_for_overwrite<std::byte[]>(BUFFER_SIZE)) {}
    ~file_buffer() { kept = std::move(bytes); }
    file_buffer(const file_buffer&) = delete;
    file_buffer& operator=(const file_buffer&) = delete;
    std::byte* data() { return bytes.get(); }

private:
    static std::unique_ptr<std::byte[]> kept; // main level
    std::unique_ptr<std::byte[]> bytes;
};
std::unique_ptr<std::byte[]> file_buffer::kept;

// An open file. Read: bytes next to end of the buffer are still to be given. Written: bytes 0 to end are still to go.
struct host_file {
    int fd = -1;
    std::int64_t position = 0; // the system's, behind what is read, in front of what waits to be written
    std::size_t next = 0;
    std::size_t end = 0;
    std::int64_t size = 0;  // read: of a regular file when it was opened; else 0
    std::int64_t begun = 0; // how much of what was written the disk was told to begin with
    bool writing = false;
    host_err failed = HOST_OK; // the first failure while writing; the target is then left alone
    file_type type = 0;
    std::string name;      // as the caller gave it, for the console
    std::string target;    // where the file is to lie
    std::string temporary; // where it lies while it is written
    file_buffer buffer;
};

namespace {

// Has the disk begun with what was written, so that the wait for it at the end is short. Costs nothing where the system
// cannot.
void start_writing_out(host_file* f) {
#ifdef SYNC_FILE_RANGE_WRITE
    if (f->position - f->begun < WRITE_OUT_EVERY) return;
    (void)::sync_file_range(f->fd, f->begun, f->position - f->begun, SYNC_FILE_RANGE_WRITE);
    f->begun = f->position;
#else
    (void)f;
#endif
}

host_err flush(host_file* f) {
    const std::size_t waiting = std::exchange(f->end, 0);
    if (f->failed || waiting == 0) return f->failed;
    f->failed = system_write(f->fd, f->buffer.data(), waiting);
    f->position += static_cast<std::int64_t>(waiting);
    start_writing_out(f);
    return f->failed;
}

// Puts what was written into the target's place.
host_err settle(host_file* f) {
    if (const host_err e = flush(f)) return e;
    keep_type(f->fd, f->type);
    if (const host_err e = system_sync(f->fd)) return e;
    if (const host_err e = system_rename(f->temporary, f->target)) return e;
    sync_folder_of(f->target);
    return HOST_OK;
}

// Puts it in place, or takes away what was written when it failed before or does now.
host_err end_written(host_file* f, host_err failure) {
    if (!failure) failure = settle(f);
    (void)::close(f->fd);
    if (failure) (void)::unlink(f->temporary.c_str());
    return failure;
}

host_err close_written(host_file* f, host_err failure) {
    failure = end_written(f, failure);
    if (failure) host_error("%s was not saved: %s", f->name.c_str(), kel_filereason(failure));
    return failure;
}

host_err fill(host_file* f) {
    f->next = f->end = 0;
    // A file that was read as far as it reached when it was opened need not be asked whether that is its end.
    if (f->size != 0 && f->position == f->size) return HOST_OK;
    const host_err e = system_read(f->fd, f->buffer.data(), BUFFER_SIZE, &f->end);
    f->position += static_cast<std::int64_t>(f->end);
    return e;
}

enum class found_there { nothing, file, directory };

found_there look(const std::string& file) {
    struct stat about;
    if (::stat(file.c_str(), &about) != 0) return found_there::nothing;
    return S_ISDIR(about.st_mode) ? found_there::directory : found_there::file;
}

// The place itself, whatever way leads there. Empty when that cannot be told.
std::filesystem::path place_of(const std::string& file) {
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(file, failed);
    if (failed) return {};
    const std::filesystem::path place = std::filesystem::weakly_canonical(absolute, failed);
    return failed ? std::filesystem::path{} : place;
}

bool may_write(const std::string& target) {
    if (!protecting) return true;
    const std::filesystem::path place = place_of(target);
    if (place.empty()) return false;
    return std::any_of(allowed.begin(), allowed.end(), [&place](const std::filesystem::path& a) {
        return std::mismatch(a.begin(), a.end(), place.begin(), place.end()).first == a.end();
    });
}

} // namespace

void kel_setsearchpath(const std::vector<std::string>& list) {
    search_path.clear();
    for (const std::string& folder : list) search_path.push_back(kel_folder(folder));
}

std::int16_t kel_folder(const std::string& folder) {
    std::vector<std::string>& list = folders();
    const auto at = std::find(list.begin(), list.end(), folder);
    if (at != list.end()) return static_cast<std::int16_t>(at - list.begin());
    if (list.size() > INT16_MAX) return 0;
    list.push_back(folder);
    return static_cast<std::int16_t>(list.size() - 1);
}

std::string kel_filepath(const char* name, std::int16_t path) {
    const std::vector<std::string>& list = folders();
    if (name[0] == '/' || path <= 0 || static_cast<std::size_t>(path) >= list.size()) return name;
    const std::string& folder = list[static_cast<std::size_t>(path)];
    return folder + (folder.ends_with('/') ? "" : "/") + name;
}

void kel_files_protect(bool on) {
    protecting = on;
    if (!on) allowed.clear();
}

void kel_file_allow(const std::string& file) {
    if (!protecting || file.empty()) return;
    std::string target = file;
    if (follow_links(&target)) return;
    if (target.size() > 1 && target.ends_with('/')) target.pop_back();
    const std::filesystem::path place = place_of(target);
    if (!place.empty()) allowed.push_back(place);
}

host_err host_file_locate(const char* name, std::int16_t* path, file_type* type,
                          std::span<const file_type> types) {
    if (const host_err e = operation_fault()) return e;
    if (name[0] == '\0') return HOST_ERR_NAME;
    const std::size_t places = name[0] == '/' ? 1 : 1 + search_path.size();
    // A folder of that name is only found when there is no file; opening it then tells what it is. With a single place to
    // look in either will do.
    const bool any = places == 1;
    for (const found_there wanted : {found_there::file, found_there::directory}) {
        for (std::size_t i = 0; i < places; ++i) {
            const std::int16_t place = i == 0 ? std::int16_t{0} : search_path[i - 1];
            const std::string file = kel_filepath(name, place);
            if (!any && look(file) != wanted) continue;
            const type_sought sought = sought_type(file);
            if (std::find(types.begin(), types.end(), sought.type) == types.end()) continue;
            if (any && !sought.there && look(file) == found_there::nothing) continue;
            *path = place;
            *type = sought.type;
            return HOST_OK;
        }
    }
    return HOST_ERR_NOT_FOUND;
}

host_err host_file_open(const char* name, std::int16_t path, host_file** file) {
    *file = nullptr;
    if (const host_err e = operation_fault()) return e;
    if (name[0] == '\0') return HOST_ERR_NAME;
    const std::string where = kel_filepath(name, path);
    int fd = -1;
    if (const host_err e = system_open(where, O_RDONLY, 0, &fd)) return e;
    struct stat about;
    const bool known = ::fstat(fd, &about) == 0;
    if (known && S_ISDIR(about.st_mode)) {
        (void)::close(fd);
        return HOST_ERR_BUSY;
    }
    *file = new host_file;
    (*file)->fd = fd;
    (*file)->size = known && S_ISREG(about.st_mode) ? about.st_size : 0;
    (*file)->name = name;
    return HOST_OK;
}

host_err host_file_create(const char* name, std::int16_t path, file_type type, host_file** file) {
    *file = nullptr;
    if (const host_err e = operation_fault()) return e;
    std::string target = kel_filepath(name, path);
    if (name[0] == '\0' || target.ends_with('/')) return HOST_ERR_NAME;
    if (const host_err e = follow_links(&target)) return e;
    if (!may_write(target)) {
        host_error("host: %s: not written: you did not name this file", name);
        return HOST_ERR_PERMISSION;
    }
    struct stat about;
    const bool replaces = ::stat(target.c_str(), &about) == 0;
    if (!replaces && errno != ENOENT) return system_code(errno);
    if (replaces && !S_ISREG(about.st_mode)) return HOST_ERR_BUSY;
    // A file that its owner protected from writing is not to be replaced behind its back.
    if (replaces && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return system_code(errno);
    expect_size_limit();
    int fd = -1;
    std::string temporary;
    if (const host_err e = open_beside(target, 0666, &temporary, &fd)) return e;
    if (replaces) (void)::fchmod(fd, about.st_mode & 0777);
    *file = new host_file;
    (*file)->fd = fd;
    (*file)->writing = true;
    (*file)->type = type;
    (*file)->name = name;
    (*file)->target = std::move(target);
    (*file)->temporary = std::move(temporary);
    return HOST_OK;
}

host_err host_file_read(host_file* f, std::int32_t* count, void* into) {
    const std::size_t wanted = static_cast<std::size_t>(std::max(*count, 0));
    *count = 0;
    if (const host_err e = operation_fault()) return e;
    if (f->writing) return HOST_ERR_PERMISSION;
    std::byte* to = static_cast<std::byte*>(into);
    std::size_t got = 0;
    host_err failure = HOST_OK;
    while (got < wanted && !failure) {
        if (f->next == f->end && wanted - got >= BUFFER_SIZE) {
            std::size_t n = 0;
            failure = system_read(f->fd, to + got, wanted - got, &n);
            f->position += static_cast<std::int64_t>(n);
            got += n;
            if (n == 0) break;
            continue;
        }
        if (f->next == f->end) failure = fill(f);
        if (f->next == f->end) break; // the end of the file, or a failure
        const std::size_t n = std::min(wanted - got, f->end - f->next);
        std::memcpy(to + got, f->buffer.data() + f->next, n);
        f->next += n;
        got += n;
    }
    *count = static_cast<std::int32_t>(got);
    return failure;
}

host_err host_file_write(host_file* f, std::int32_t* count, const void* from) {
    const std::size_t wanted = static_cast<std::size_t>(std::max(*count, 0));
    *count = 0;
    if (!f->writing) return HOST_ERR_PERMISSION;
    if (!f->failed) f->failed = operation_fault();
    const std::byte* at = static_cast<const std::byte*>(from);
    if (f->end + wanted > BUFFER_SIZE) flush(f);
    if (f->failed) return f->failed;
    if (wanted > BUFFER_SIZE) {
        f->failed = system_write(f->fd, at, wanted);
        f->position += static_cast<std::int64_t>(wanted);
    } else {
        std::memcpy(f->buffer.data() + f->end, at, wanted);
        f->end += wanted;
    }
    if (!f->failed) *count = static_cast<std::int32_t>(wanted);
    return f->failed;
}

host_err host_file_getpos(host_file* f, std::int32_t* position) {
    *position = 0;
    if (const host_err e = operation_fault()) {
        // Who writes by positions would now write to the wrong place.
        if (f->writing && !f->failed) f->failed = e;
        return e;
    }
    const std::int64_t waiting = static_cast<std::int64_t>(f->end - f->next);
    *position = static_cast<std::int32_t>(f->position + (f->writing ? waiting : -waiting));
    return HOST_OK;
}

host_err host_file_setpos(host_file* f, std::int32_t position) {
    host_err failure = operation_fault();
    if (!failure && position < 0) failure = HOST_ERR_IO;
    if (!failure && f->writing) failure = flush(f);
    if (!failure) failure = system_seek(f->fd, position);
    if (failure) {
        // What would be written next belongs elsewhere.
        if (f->writing && !f->failed) f->failed = failure;
        return failure;
    }
    f->position = position;
    f->next = f->end = 0;
    return HOST_OK;
}

host_err host_file_close(host_file* f) {
    const std::unique_ptr<host_file> owned(f);
    const host_err failure = operation_fault();
    if (f->writing) return close_written(f, failure);
    (void)::close(f->fd);
    return failure;
}

host_err kel_file_finish(host_file* f) {
    const std::unique_ptr<host_file> owned(f);
    return end_written(f, operation_fault());
}

void kel_file_discard(host_file* f) {
    const std::unique_ptr<host_file> owned(f);
    (void)end_written(f, HOST_CANCELLED);
}

std::int16_t host_default_path() {
    return 0;
}
