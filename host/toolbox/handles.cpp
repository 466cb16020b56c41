// Relocatable memory.
// Toolbox: implements the memory calls of host/toolbox.h.
// Called by the object's clipboard and by the kernel's host_newhandle.
#include "host/toolbox/toolbox_host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

// The master pointer comes first, so that the block's address is its Handle.
struct block {
    char* data = nullptr;
    int32_t size = 0;
    bool locked = false;
};

// Written by every call of this file, read by MemError.
OSErr last_error = noErr;

// The largest block that there is memory for. Written by toolbox_handle_limit.
int32_t largest = INT32_MAX;

block* block_of(Handle h) {
    return reinterpret_cast<block*>(h);
}

// Room for size bytes; at least one, so that an empty block has an address too.
size_t room(int32_t size) {
    return static_cast<size_t>(std::max(size, 1));
}

bool usable(Handle h) {
    last_error = h ? OSErr{noErr} : nilHandleErr;
    return h != nullptr;
}

} // namespace

void toolbox_handle_limit(int32_t bytes) {
    largest = bytes;
}

Handle NewHandle(int32_t size) {
    char* data = size < 0 || size > largest ? nullptr : static_cast<char*>(std::calloc(room(size), 1));
    last_error = data ? OSErr{noErr} : memFullErr;
    if (!data) return nullptr;
    return reinterpret_cast<Handle>(new block{data, size, false});
}

void SetHandleSize(Handle handle, int32_t size) {
    if (!usable(handle)) return;
    block& b = *block_of(handle);
    if (size < 0 || size > largest || (b.locked && size > b.size)) {
        last_error = memFullErr;
        return;
    }
    if (!b.locked) {
        char* data = static_cast<char*>(std::realloc(b.data, room(size)));
        if (!data) {
            last_error = memFullErr;
            return;
        }
        b.data = data;
        if (size > b.size) std::memset(data + b.size, 0, static_cast<size_t>(size - b.size));
    }
    b.size = size;
}

int32_t GetHandleSize(Handle handle) {
    return usable(handle) ? block_of(handle)->size : 0;
}

void HLock(Handle handle) {
    if (usable(handle)) block_of(handle)->locked = true;
}

void HUnlock(Handle handle) {
    if (usable(handle)) block_of(handle)->locked = false;
}

void DisposeHandle(Handle handle) {
    last_error = noErr;
    if (!handle) return;
    block* b = block_of(handle);
    std::free(b->data);
    delete b;
}

OSErr MemError() {
    return last_error;
}
