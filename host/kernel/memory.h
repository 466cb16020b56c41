// host/kernel/memory.h: the small-block allocator as the rest of the kernel sees it.
// Layer: kernel. host_getbytes and host_freebytes are its interface to everyone else.
#pragma once

#include <cstddef>
#include <cstdint>

// Between two main-level calls: blocks freed at scheduler level become free for all, and the scheduler's stock is
// filled up; the console is told when a block was refused since. No walk of the main level may be under way. [main]
void kel_memory_quiescent();

// Blocks handed out and not yet freed; bytes taken from the system. [both]
std::int64_t kel_memory_blocks();
std::int64_t kel_memory_bytes();

// From now on the allocator takes at most this many bytes from the system (0: no limit); beyond it host_getbytes gives
// null. [main]
void kel_memory_limit(std::int64_t bytes);

// host_getbytes for what must go on when the limit is reached, such as a deferred call: may take a few megabytes more.
// [both]
void* kel_getbytes_reserved(std::size_t size);

// Gives every chunk back to the system; only when no block is alive. [main]
void kel_memory_reset();
