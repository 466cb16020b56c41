// io/bufferedfile.cpp: byte by byte reading and writing of one file at a time, over the host's file services.
// Layer: io. Called by the MIDI reader and writer and by the reading of documents.
#include "io/bufferedfile.h"

#include <algorithm>
#include <cstring>

unsigned char* t_buf = nullptr;
unsigned char* t_next = nullptr;
unsigned char* t_readend = nullptr;
unsigned char* t_writeend = nullptr;
std::int16_t t_eof = 0;
host_file* t_fh = nullptr;
std::int16_t t_vol = 0;
std::int16_t t_write = 0;

host_err t_open(const char* name, std::int16_t path, file_type type) {
    // The buffer first: a created file that is closed again at once would replace the old one with nothing.
    unsigned char* buffer = static_cast<unsigned char*>(host_newptr(T_BUFSIZE));
    if (!buffer) return HOST_ERR_MEMORY;
    host_file* file = nullptr;
    const host_err e = type ? host_file_create(name, path, type, &file) : host_file_open(name, path, &file);
    if (e) {
        host_freeptr(buffer);
        return e;
    }
    t_vol = path;
    t_write = type != 0;
    t_eof = 0;
    t_fh = file;
    t_buf = t_next = t_readend = buffer;
    t_writeend = buffer + T_BUFSIZE;
    return HOST_OK;
}

int t_refill() {
    std::int32_t count = T_BUFSIZE;
    (void)host_file_read(t_fh, &count, t_buf); // a failure counts as the end of the file
    if (count < 1) {
        t_eof = 1;
        return -1;
    }
    t_next = t_buf;
    t_readend = t_buf + count;
    return *t_next++;
}

int t_spill() {
    std::int32_t count = T_BUFSIZE;
    const host_err e = host_file_write(t_fh, &count, t_buf);
    t_next = t_buf;
    if (e == HOST_OK) return 0;
    t_eof = 1;
    return -1;
}

int t_fread(void* dest, int count) {
    unsigned char* to = static_cast<unsigned char*>(dest);
    for (int i = 0; i < count; ++i) {
        const int byte = t_getc();
        if (byte < 0) return i;
        to[i] = static_cast<unsigned char>(byte);
    }
    return count;
}

// As if byte by byte.
int t_fwrite(const void* src, int count) {
    const unsigned char* from = static_cast<const unsigned char*>(src);
    int done = 0;
    while (done < count) {
        if (t_next >= t_writeend && t_spill() != 0) return done;
        const int now = std::min(count - done, static_cast<int>(t_writeend - t_next));
        std::memcpy(t_next, from + done, static_cast<std::size_t>(now));
        t_next += now;
        done += now;
    }
    return count;
}

void t_flush() {
    std::int32_t count = static_cast<std::int32_t>(t_next - t_buf);
    t_next = t_buf;
    if (count != 0) (void)host_file_write(t_fh, &count, t_buf);
}

host_err t_seek(std::int32_t position) {
    t_flush();
    return host_file_setpos(t_fh, position);
}

std::int32_t t_tell() {
    t_flush();
    std::int32_t position = 0;
    (void)host_file_getpos(t_fh, &position);
    return position;
}

void t_close() {
    if (t_write) t_flush();
    (void)host_file_close(t_fh);
    host_freeptr(t_buf);
}
