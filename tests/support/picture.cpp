// tests/support/picture.cpp: PNG files as pixels, compared.
// Test layer.
#include "tests/support/picture.h"

#include <algorithm>

#include <png.h>

namespace {

constexpr std::uint32_t RED = 0xE00000;
constexpr std::uint32_t GAP_COLOUR = 0x404040;
constexpr int GAP = 4; // rows between the three parts of a difference

std::uint32_t at(const picture& p, int h, int v) {
    if (h >= p.width || v >= p.height) return GAP_COLOUR;
    return p.pixels[static_cast<std::size_t>(v) * static_cast<std::size_t>(p.width) +
                    static_cast<std::size_t>(h)];
}

// The pixel's lightness, pale, so that red stands out on it.
std::uint32_t pale(std::uint32_t p) {
    const std::uint32_t grey = 160 + ((p >> 16 & 0xFF) + (p >> 8 & 0xFF) + (p & 0xFF)) / 9;
    return grey << 16 | grey << 8 | grey;
}

} // namespace

picture read_picture(const std::string& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, file.c_str())) return {};
    image.format = PNG_FORMAT_BGRA;
    picture p{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    p.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    if (!png_image_finish_read(&image, nullptr, p.pixels.data(), 0, nullptr)) return {};
    for (std::uint32_t& pixel : p.pixels) pixel &= 0xFFFFFF;
    return p;
}

bool write_picture(const picture& p, const std::string& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(p.width);
    image.height = static_cast<png_uint_32>(p.height);
    image.format = PNG_FORMAT_BGRA;
    std::vector<std::uint32_t> opaque = p.pixels;
    for (std::uint32_t& pixel : opaque) pixel |= 0xFF000000;
    return png_image_write_to_file(&image, file.c_str(), 0, opaque.data(), 0, nullptr) != 0;
}

std::size_t differing_pixels(const picture& a, const picture& b) {
    std::size_t n = 0;
    for (int v = 0; v < std::max(a.height, b.height); ++v) {
        for (int h = 0; h < std::max(a.width, b.width); ++h) n += at(a, h, v) != at(b, h, v);
    }
    return n;
}

picture difference(const picture& kept, const picture& made) {
    const int width = std::max(kept.width, made.width);
    const int height = std::max(kept.height, made.height);
    picture out{width, height * 3 + GAP * 2, {}};
    out.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(out.height), GAP_COLOUR);
    for (int v = 0; v < height; ++v) {
        for (int h = 0; h < width; ++h) {
            const std::uint32_t parts[] = {at(kept, h, v), at(made, h, v),
                                           at(kept, h, v) == at(made, h, v) ? pale(at(kept, h, v)) : RED};
            for (int part = 0; part < 3; ++part) {
                const int row = v + part * (height + GAP);
                out.pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                           static_cast<std::size_t>(h)] = parts[part];
            }
        }
    }
    return out;
}
