// io/bufferedfile.h: byte by byte reading and writing of one file at a time, over the host's file services.
// Layer: io. Called by the MIDI reader and writer and by the reading of documents.
#pragma once

#include <cstdint>

#include "host/kel.h"

constexpr int T_BUFSIZE = 1024; // both directions

// The one open file. Written by the routines below alone; all zero at first; the values stay as they were after a
// t_close. Main level: file messages are deferred, so no two files are ever open at once.
extern unsigned char* t_buf;      // the transfer buffer; lives from t_open to t_close
extern unsigned char* t_next;     // the next byte to read from, or to write into
extern unsigned char* t_readend;  // one past the last byte read
extern unsigned char* t_writeend; // the buffer is full when t_next gets here
extern std::int16_t t_eof;        // 1 at the end of the file or after a failure, until the next t_open
extern host_file* t_fh;
extern std::int16_t t_vol;   // the folder of the open file, for reference
extern std::int16_t t_write; // 1: created for writing

// Opens a file: for reading when the type is 0, else creates one of that type for writing in place of any of that name.
// The host's code; when it is not 0 nothing has happened. A file that is open must be closed first. [main]
host_err t_open(const char* name, std::int16_t path, file_type type);

// Reads the next piece of the file; its first byte, or -1 and t_eof set when there is none. For t_getc alone. [main]
int t_refill();

// Writes the full buffer out and empties it, written or not; 0, or -1 and t_eof set. For t_putc alone. [main]
int t_spill();

// The next byte, 0 to 255; -1 at the end of the file and after any failure, and from then on. [main]
inline int t_getc() {
    if (t_eof) return -1;
    if (t_next >= t_readend) return t_refill();
    return *t_next++;
}

// Up to `count` bytes: how many there were. [main]
int t_fread(void* dest, int count);

// Appends one byte: 0, or -1 when the full buffer could not be written; the byte is then not taken. [main]
inline int t_putc(unsigned char byte) {
    if (t_next >= t_writeend && t_spill() != 0) return -1;
    *t_next++ = byte;
    return 0;
}

// Appends bytes: `count`, or the index of the one at which the full buffer could not be written. [main]
int t_fwrite(const void* src, int count);

// Writes what waits in the buffer; failures are not told. Only while writing. [main]
void t_flush();

// The same, then moves to a position in bytes from the file's start: the host's code; or tells the position. Only while
// writing: in the middle of reading they would write the read bytes back. [main]
host_err t_seek(std::int32_t position);
std::int32_t t_tell();

// Writes what waits, when writing, and closes the file. [main]
void t_close();
