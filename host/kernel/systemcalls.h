// host/kernel/systemcalls.h: the system's calls on files, with the host's error codes, each of which a test can make fail.
// Layer: kernel. Used by the file service.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/kel.h"

// The host's code for one of the system's error numbers; HOST_ERR_IO for those that it has no code for. [both]
host_err system_code(int error_number);

// Counts one operation of the file service; the code it is to fail with when a test wants this one to fail, else HOST_OK.
// [main]
host_err operation_fault();

// Each is one operation, repeated when a signal interrupts it, and gives HOST_OK or why it failed. [main]

// At most `size` bytes; *got is 0 at the end of the file.
host_err system_read(int fd, std::byte* into, std::size_t size, std::size_t* got);
// All of them, in as many operations as it takes.
host_err system_write(int fd, const std::byte* from, std::size_t size);
host_err system_seek(int fd, std::int64_t position);
// Waits until the disk has what was written.
host_err system_sync(int fd);
host_err system_rename(const std::string& from, const std::string& to);
// *fd is the caller's to close.
host_err system_open(const std::string& file, int flags, unsigned mode, int* fd);
