// tests/support/used_up.h: a host that has no memory of a certain size left.
// Test layer. Used by the tests of what the object does then.
#pragma once

#include <cstddef>
#include <vector>

#include "host/kel.h"
#include "host/kernel/memory.h"

// While it lives, the host has no small block of this size to give but those that were given back.
class used_up {
public:
    explicit used_up(std::size_t block_size) : size(block_size) {
        kel_memory_limit(1);
        while (void* b = host_getbytes(size)) blocks.push_back(b);
    }
    ~used_up() {
        kel_memory_limit(0);
        for (void* b : blocks) host_freebytes(b, size);
    }
    used_up(const used_up&) = delete;
    used_up& operator=(const used_up&) = delete;

    // From now on the host has one block more.
    void give_back_one() {
        host_freebytes(blocks.back(), size);
        blocks.pop_back();
    }

private:
    std::size_t size;
    std::vector<void*> blocks;
};
