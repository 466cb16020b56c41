// host/kernel/memory.cpp: small blocks in pools by size, one side for each level, without a lock between them.
// Layer: kernel. Called through host_getbytes and host_freebytes by everything that allocates while playing.
//
// Each level takes blocks from stacks of its own. What the scheduler frees goes onto a stack that the main level empties
// between two of its calls: by then no walk over events stands on such a block. What the scheduler needs, the main level
// lays out for it in advance, so that playing and recording reach the system only when the main level has stalled for
// long. A debug build keeps a block's size in front of it and checks it when it comes back.
#include "host/kernel/memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/kel.h"
#include "host/kernel/level.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(p, n) ((void)(p), (void)(n))
#define ASAN_UNPOISON_MEMORY_REGION(p, n) ((void)(p), (void)(n))
#endif

namespace {

constexpr std::size_t STEP = 16;     // block sizes are multiples of this, which also aligns them
constexpr std::size_t LARGEST = 256; // larger ones come from the system each
constexpr std::size_t NCLASSES = LARGEST / STEP;
constexpr std::size_t CHUNK = 64 * 1024; // what is taken from the system at a time
// The same once the main level holds many: of the size and at the places of the system's large pages. A sequence of a
// million events else costs twelve thousand page faults, most of the time of reading it.
constexpr std::size_t LARGE_CHUNK = 2 * 1024 * 1024;
constexpr std::size_t MANY_CHUNKS = 16;
constexpr std::int64_t RESERVE = 4 * 1024 * 1024; // beyond the limit, for what must go on
constexpr std::size_t PAGE = 4096;
constexpr std::size_t STOCK = 512; // blocks laid out for the scheduler of each size that it uses

#ifdef NDEBUG
constexpr std::size_t GUARD = 0;
#else
constexpr std::size_t GUARD = STEP; // room for the size in front of a block
constexpr unsigned char FREED = 0xDD;
#endif

struct free_block {
    free_block* next;
};

// The free blocks of one size.
struct pool {
    free_block* main_free = nullptr;            // main level alone
    std::vector<free_block*> main_chains;       // further chains, main level alone
    free_block* scheduler_free = nullptr;       // scheduler level alone
    std::atomic<free_block*> stock{nullptr};    // laid out by main, taken whole by the scheduler
    std::atomic<free_block*> returned{nullptr}; // freed by the scheduler, taken whole by main
    std::atomic<bool> wanted{false};            // the scheduler uses this size
};

std::array<pool, NCLASSES> pools;
std::array<std::atomic<std::int64_t>, 2> blocks_alive{}; // by level, each written by its level alone
std::atomic<std::int64_t> bytes_taken{0};
std::atomic<std::int64_t> bytes_limit{0};
std::array<bool, 2> beyond_limit{}; // by level: what is asked for now may come out of the reserve
std::atomic<bool> refused{false};   // a block was asked for in vain
std::int64_t blocks_when_told = 0;  // 0: the console may be told of the next refusal; main level alone

// The rest of the chunk that a level is cutting blocks from.
struct chunk_rest {
    char* at = nullptr;
    std::size_t left = 0;
};
std::array<chunk_rest, 2> rests; // by level

// What stands in a chunk's first bytes. All chunks are linked, for the reset.
struct chunk_head {
    chunk_head* next;
    std::size_t size;
};
static_assert(sizeof(chunk_head) <= STEP);
std::atomic<chunk_head*> chunks{nullptr};
std::size_t main_chunks = 0; // how many the main level has taken; main level alone

bool take_from_system(std::size_t bytes) {
    const auto n = static_cast<std::int64_t>(bytes);
    const std::int64_t limit = bytes_limit.load(std::memory_order_relaxed);
    const std::int64_t more = beyond_limit[static_cast<std::size_t>(kel_current_level())] ? RESERVE : 0;
    if (limit && bytes_taken.load(std::memory_order_relaxed) + n > limit + more) return false;
    bytes_taken.fetch_add(n, std::memory_order_relaxed);
    return true;
}

std::size_t class_of(std::size_t size) {
    return size == 0 ? 0 : (size - 1) / STEP;
}
std::size_t class_bytes(std::size_t c) {
    return (c + 1) * STEP + GUARD;
}

void* system_chunk(std::size_t size) {
    if (!take_from_system(size)) return nullptr;
    void* memory = size == LARGE_CHUNK ? std::aligned_alloc(LARGE_CHUNK, LARGE_CHUNK) : std::malloc(size);
    if (!memory) bytes_taken.fetch_sub(static_cast<std::int64_t>(size), std::memory_order_relaxed);
#ifdef MADV_HUGEPAGE
    if (memory && size == LARGE_CHUNK) (void)::madvise(memory, size, MADV_HUGEPAGE);
#endif
#ifdef MADV_POPULATE_WRITE
    if (memory && size == CHUNK) {
        const std::uintptr_t from = (reinterpret_cast<std::uintptr_t>(memory) + PAGE - 1) & ~(PAGE - 1);
        const std::uintptr_t to = (reinterpret_cast<std::uintptr_t>(memory) + size) & ~(PAGE - 1);
        (void)::madvise(reinterpret_cast<void*>(from), to - from, MADV_POPULATE_WRITE);
    }
#endif
    return memory;
}

bool new_chunk(kel_level level, chunk_rest& rest) {
    // The reserve goes in small chunks, since what is left of one serves whoever asks.
    const bool many = level == kel_level::main && !beyond_limit[static_cast<std::size_t>(level)] &&
                      main_chunks++ >= MANY_CHUNKS;
    std::size_t size = many ? LARGE_CHUNK : CHUNK;
    void* memory = system_chunk(size);
    if (!memory && many) memory = system_chunk(size = CHUNK);
    if (!memory) return false;
    auto* head = new (memory) chunk_head{chunks.load(std::memory_order_relaxed), size};
    while (!chunks.compare_exchange_weak(head->next, head, std::memory_order_release,
                                         std::memory_order_relaxed)) {
    }
    rest = {static_cast<char*>(memory) + STEP, size - STEP};
    return true;
}

void* cut(kel_level level, std::size_t c) {
    chunk_rest& rest = rests[static_cast<std::size_t>(level)];
    const std::size_t bytes = class_bytes(c);
    if (rest.left < bytes && !new_chunk(level, rest)) return nullptr;
    void* block = rest.at;
    rest.at += bytes;
    rest.left -= bytes;
    return block;
}

void* pop(free_block*& head) {
    free_block* b = head;
    ASAN_UNPOISON_MEMORY_REGION(b, sizeof *b);
    head = b->next;
    return b;
}

void* take_main(pool& p, std::size_t c) {
    if (!p.main_free && !p.main_chains.empty()) {
        p.main_free = p.main_chains.back();
        p.main_chains.pop_back();
    }
    return p.main_free ? pop(p.main_free) : cut(kel_level::main, c);
}

void* take_scheduler(pool& p, std::size_t c) {
    if (!p.scheduler_free) {
        p.scheduler_free = p.stock.exchange(nullptr, std::memory_order_acquire);
        p.wanted.store(true, std::memory_order_relaxed);
    }
    return p.scheduler_free ? pop(p.scheduler_free) : cut(kel_level::scheduler, c);
}

void give_main(pool& p, void* block, std::size_t bytes) {
    p.main_free = new (block) free_block{p.main_free};
    ASAN_POISON_MEMORY_REGION(block, bytes);
}

void give_scheduler(pool& p, void* block) {
    auto* b = new (block) free_block{p.returned.load(std::memory_order_relaxed)};
    while (
        !p.returned.compare_exchange_weak(b->next, b, std::memory_order_release, std::memory_order_relaxed)) {
    }
}

void* large_block(std::size_t size) {
    if (!take_from_system(size + STEP)) return nullptr;
    void* memory = std::malloc(size + GUARD);
    if (!memory) bytes_taken.fetch_sub(static_cast<std::int64_t>(size + STEP), std::memory_order_relaxed);
    return memory;
}

void count_blocks(std::int64_t by) {
    std::atomic<std::int64_t>& n = blocks_alive[static_cast<std::size_t>(kel_current_level())];
    n.store(n.load(std::memory_order_relaxed) + by, std::memory_order_relaxed);
}

// What a debug build adds around a block.
void* hand_out(void* raw, [[maybe_unused]] std::size_t size) {
    ASAN_UNPOISON_MEMORY_REGION(raw, (size + STEP - 1) / STEP * STEP + GUARD);
    count_blocks(1);
#ifndef NDEBUG
    std::memcpy(raw, &size, sizeof size);
#endif
    return static_cast<char*>(raw) + GUARD;
}

void* take_back(void* block, [[maybe_unused]] std::size_t size) {
    void* raw = static_cast<char*>(block) - GUARD;
    count_blocks(-1);
#ifndef NDEBUG
    std::size_t had = 0;
    std::memcpy(&had, raw, sizeof had);
    if (had != size) {
        std::fprintf(stderr, "host_freebytes: a block of %zu bytes given back as %zu\n", had, size);
        std::abort();
    }
    // Walks of the main level may still stand on what the scheduler frees; the main level's own frees may not be read.
    if (kel_current_level() == kel_level::main) std::memset(raw, FREED, size + GUARD);
#endif
    return raw;
}

// Lays blocks out for the scheduler where it has used up what lay there.
void fill_stock(pool& p, std::size_t c) {
    if (!p.wanted.load(std::memory_order_relaxed) || p.stock.load(std::memory_order_relaxed)) return;
    free_block* chain = nullptr;
    for (std::size_t i = 0; i < STOCK; ++i) {
        void* block = take_main(p, c);
        if (!block) break;
        chain = new (block) free_block{chain};
    }
    p.stock.store(chain, std::memory_order_release);
}

// One line for as long as memory stays short: a patch that goes on asking would else fill the console.
void tell_of_refusal() {
    const std::int64_t alive = kel_memory_blocks();
    if (alive < blocks_when_told - blocks_when_told / 10) blocks_when_told = 0;
    if (!refused.exchange(false, std::memory_order_relaxed) || blocks_when_told) return;
    blocks_when_told = std::max<std::int64_t>(alive, 1);
    host_error("host: no memory left: %lld MB are in use", static_cast<long long>(kel_memory_bytes() >> 20));
}

} // namespace

void* host_getbytes(std::size_t size) {
    void* raw = nullptr;
    if (size > LARGEST) {
        raw = large_block(size);
    } else {
        const std::size_t c = class_of(size);
        raw = kel_current_level() == kel_level::main ? take_main(pools[c], c) : take_scheduler(pools[c], c);
    }
    if (!raw) refused.store(true, std::memory_order_relaxed);
    return raw ? hand_out(raw, size) : nullptr;
}

void* kel_getbytes_reserved(std::size_t size) {
    bool& beyond = beyond_limit[static_cast<std::size_t>(kel_current_level())];
    beyond = true;
    void* const block = host_getbytes(size);
    beyond = false;
    return block;
}

void host_freebytes(void* block, std::size_t size) {
    if (!block) return;
    void* raw = take_back(block, size);
    if (size > LARGEST) {
        bytes_taken.fetch_sub(static_cast<std::int64_t>(size + STEP), std::memory_order_relaxed);
        std::free(raw);
        return;
    }
    const std::size_t c = class_of(size);
    if (kel_current_level() == kel_level::main)
        give_main(pools[c], raw, class_bytes(c));
    else
        give_scheduler(pools[c], raw);
}

void kel_memory_quiescent() {
    tell_of_refusal();
    for (std::size_t c = 0; c < NCLASSES; ++c) {
        pool& p = pools[c];
        if (p.returned.load(std::memory_order_relaxed)) {
            p.main_chains.push_back(p.returned.exchange(nullptr, std::memory_order_acquire));
        }
        fill_stock(p, c);
    }
}

std::int64_t kel_memory_blocks() {
    return blocks_alive[0].load(std::memory_order_relaxed) + blocks_alive[1].load(std::memory_order_relaxed);
}

std::int64_t kel_memory_bytes() {
    return bytes_taken.load(std::memory_order_relaxed);
}
void kel_memory_limit(std::int64_t bytes) {
    bytes_limit.store(bytes, std::memory_order_relaxed);
    refused.store(false, std::memory_order_relaxed);
    blocks_when_told = 0;
}

void kel_memory_reset() {
    for (pool& p : pools) {
        p.main_free = p.scheduler_free = nullptr;
        p.main_chains.clear();
        p.stock.store(nullptr, std::memory_order_relaxed);
        p.returned.store(nullptr, std::memory_order_relaxed);
        p.wanted.store(false, std::memory_order_relaxed);
    }
    rests = {};
    main_chunks = 0;
    chunk_head* c = chunks.exchange(nullptr, std::memory_order_acquire);
    while (c) {
        chunk_head* following = c->next;
        bytes_taken.fetch_sub(static_cast<std::int64_t>(c->size), std::memory_order_relaxed);
        ASAN_UNPOISON_MEMORY_REGION(c, c->size);
        std::free(c);
        c = following;
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// Larger and relocatable blocks: the toolbox's and the system's

Handle host_newhandle(std::size_t size) {
    return NewHandle(static_cast<std::int32_t>(size));
}

bool host_growhandle(Handle h, std::size_t size) {
    SetHandleSize(h, static_cast<std::int32_t>(size));
    return MemError() == noErr;
}

void* host_newptr(std::size_t size) {
    return std::malloc(size ? size : 1);
}
void host_freeptr(void* block) {
    std::free(block);
}
void host_copyptr(const void* from, void* to, std::size_t size) {
    std::memmove(to, from, size);
}
