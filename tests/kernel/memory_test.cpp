// tests/kernel/memory_test.cpp: small blocks, their levels and their limit.
// Test layer.
#include "tests/support/host_test.h"

#include <cstring>
#include <set>

#include "host/kernel/level.h"
#include "host/kernel/memory.h"

namespace {

class memory : public host_test {};

void* get_at(kel_level level, std::size_t size) {
    const at_level here(level);
    return host_getbytes(size);
}

void free_at(kel_level level, void* block, std::size_t size) {
    const at_level here(level);
    host_freebytes(block, size);
}

TEST_F(memory, gives_aligned_blocks_of_every_size_that_do_not_overlap) {
    std::vector<std::pair<char*, std::size_t>> blocks;
    for (std::size_t size = 1; size <= 600; size += 7) {
        for (int i = 0; i < 50; ++i) {
            auto* b = static_cast<char*>(host_getbytes(size));
            ASSERT_EQ(reinterpret_cast<std::uintptr_t>(b) % 16, 0U);
            std::memset(b, static_cast<int>(blocks.size() % 251), size);
            blocks.emplace_back(b, size);
        }
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto [b, size] = blocks[i];
        ASSERT_EQ(static_cast<unsigned char>(b[0]), i % 251);
        ASSERT_EQ(static_cast<unsigned char>(b[size - 1]), i % 251);
        host_freebytes(b, size);
    }
}

TEST_F(memory, hands_a_block_freed_at_main_level_out_again) {
    void* a = host_getbytes(48);
    host_freebytes(a, 48);
    void* b = host_getbytes(40); // the same class of sizes
    EXPECT_EQ(a, b);
    host_freebytes(b, 40);
}

TEST_F(memory, keeps_a_block_freed_by_the_scheduler_until_the_main_call_has_ended) {
    void* a = host_getbytes(48);
    free_at(kel_level::scheduler, a, 48);
    std::set<void*> got;
    for (int i = 0; i < 3000; ++i) got.insert(get_at(i % 2 ? kel_level::main : kel_level::scheduler, 48));
    EXPECT_FALSE(got.contains(a));
    kel_memory_quiescent();
    for (int i = 0; i < 3000; ++i) got.insert(get_at(i % 2 ? kel_level::main : kel_level::scheduler, 48));
    EXPECT_TRUE(got.contains(a));
    for (void* b : got) host_freebytes(b, 48);
}

TEST_F(memory, takes_nothing_from_the_system_for_a_warm_scheduler) {
    std::vector<void*> blocks;
    const auto round = [&] {
        for (int i = 0; i < 100; ++i) blocks.push_back(get_at(kel_level::scheduler, 48));
        for (void* b : blocks) free_at(kel_level::scheduler, b, 48);
        blocks.clear();
        kel_memory_quiescent();
    };
    for (int i = 0; i < 20; ++i) round();
    const std::int64_t warm = kel_memory_bytes();
    for (int i = 0; i < 2000; ++i) round();
    EXPECT_EQ(kel_memory_bytes(), warm);
}

TEST_F(memory, gives_null_at_its_limit_and_goes_on_after_it) {
    kel_memory_limit(kel_memory_bytes() + 1'000'000);
    std::vector<void*> blocks;
    while (void* b = host_getbytes(64)) blocks.push_back(b);
    EXPECT_GT(blocks.size(), 5'000U);
    EXPECT_LT(blocks.size(), 20'000U);
    EXPECT_EQ(host_getbytes(100'000), nullptr);
    for (void* b : blocks) host_freebytes(b, 64);
    void* b = host_getbytes(64);
    EXPECT_NE(b, nullptr);
    host_freebytes(b, 64);
    kel_memory_limit(0);
}

#ifndef NDEBUG
TEST_F(memory, stops_a_debug_build_that_gives_a_wrong_size_back) {
    void* b = host_getbytes(48);
    EXPECT_DEATH(host_freebytes(b, 16), "a block of 48 bytes given back as 16");
    host_freebytes(b, 48);
}
#endif

} // namespace
