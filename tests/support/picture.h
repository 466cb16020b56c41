// tests/support/picture.h: PNG files as pixels, compared.
// Test layer. Used by tests that hold a picture against a kept one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; // 0xRRGGBB, row after row

    bool operator==(const picture&) const = default;
};

// Reads a PNG; an empty picture when the file is none.
picture read_picture(const std::string& file);

// Writes a PNG; false when it could not.
bool write_picture(const picture& p, const std::string& file);

// How many pixels differ; pixels that only one of the two has count.
std::size_t differing_pixels(const picture& a, const picture& b);

// The kept picture, the new one, and below each other where they differ: red on the kept one's grey.
picture difference(const picture& kept, const picture& made);
