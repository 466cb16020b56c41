// app/png.cpp: a port's pixels as a PNG file.
// Layer: program.
#include "app/png.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include <png.h>

#include "host/toolbox/toolbox_host.h"

namespace {

// One row as three bytes a pixel, each pixel `scale` times.
void fill_row(const std::uint32_t* pixels, int width, int scale, std::vector<png_byte>& row) {
    std::size_t at = 0;
    for (int h = 0; h < width; ++h) {
        const std::uint32_t p = pixels[h];
        for (int i = 0; i < scale; ++i) {
            row[at++] = static_cast<png_byte>(p >> 16 & 0xFF);
            row[at++] = static_cast<png_byte>(p >> 8 & 0xFF);
            row[at++] = static_cast<png_byte>(p & 0xFF);
        }
    }
}

// libpng reports errors by a jump; nothing with a destructor lives in here.
bool encode(FILE* to, GrafPtr port, int scale, std::vector<png_byte>& row) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, to);
    const int width = toolbox_port_width(port);
    const int height = toolbox_port_height(port);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width * scale), static_cast<png_uint_32>(height * scale),
                 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    const std::uint32_t* pixels = toolbox_port_pixels(port);
    for (int v = 0; v < height; ++v) {
        fill_row(pixels + static_cast<std::ptrdiff_t>(v) * toolbox_port_rowpixels(port), width, scale, row);
        for (int i = 0; i < scale; ++i) png_write_row(png, row.data());
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

std::string write_png(GrafPtr port, const std::string& file, int scale) {
    std::vector<png_byte> row(static_cast<std::size_t>(toolbox_port_width(port) * scale) * 3);
    if (file == "-")
        return encode(stdout, port, scale, row) && std::fflush(stdout) == 0 ? "" : std::strerror(errno);
    FILE* to = std::fopen(file.c_str(), "wb");
    if (!to) return std::strerror(errno);
    const bool encoded = encode(to, port, scale, row);
    const int why = errno;
    if (std::fclose(to) == 0 && encoded) return "";
    std::remove(file.c_str());
    return std::strerror(encoded ? errno : why);
}
