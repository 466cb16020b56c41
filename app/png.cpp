// app/png.cpp: a port's pixels as a PNG file.
// Layer: program.
#include "app/png.h"

#include <functional>
#include <vector>

#include <png.h>

#include "host/kernel/newfile.h"
#include "host/toolbox/toolbox_host.h"

namespace {

constexpr file_type TYPE_PNG = host_type("PNGf");

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

// What is written is kept by whom it is written to, with what goes wrong; libpng has nothing to say.
void write_bytes(png_structp png, png_bytep bytes, png_size_t size) {
    static_cast<new_file*>(png_get_io_ptr(png))->write(bytes, size);
}
void write_no_more(png_structp) {}
[[noreturn]] void give_up(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}
void overhear(png_structp, png_const_charp) {}

// libpng reports errors, of which only a lack of memory is left, by a jump; nothing with a destructor lives in here.
bool encode(new_file& to, GrafPtr port, int scale, std::vector<png_byte>& row) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, give_up, overhear);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &to, write_bytes, write_no_more);
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
    new_file to;
    if (std::string why = to.open(file, TYPE_PNG); !why.empty()) return why;
    return encode(to, port, scale, row) ? to.finish() : "no memory";
}
