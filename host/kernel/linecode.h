// host/kernel/linecode.h: message lines as bytes: what an atom buffer holds and what the binary form of a document carries.
// Layer: kernel. Called by the atom buffer and the two forms.
//
// A line is its atoms, one after the other, and an end mark. Each is one number, seven bits to a byte, the low ones first,
// the high bit set on all bytes but the last; its two lowest bits tell what the rest is:
//   0  an integer: 2n for n >= 0, -2n-1 for n < 0, so that small numbers of either sign are short
//   1  a float: its 32 bits
//   2  a symbol: its index in the table beside the lines
//   3  the end of the line; the rest is 0
// So no atom takes more than five bytes, and an event line takes about fifteen.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

enum line_mark : unsigned { MARK_LONG = 0, MARK_FLOAT = 1, MARK_SYMBOL = 2, MARK_END = 3 };

constexpr std::size_t MARK_BITS = 2;
constexpr std::size_t LONGEST_CODE = 5; // bytes of one atom

// Bytes that grow at the end. Reallocated as a whole, which the system does by moving pages once they are many.
class byte_store {
public:
    byte_store() = default;
    byte_store(byte_store&& other) noexcept
        : bytes(std::exchange(other.bytes, nullptr)), front(std::exchange(other.front, 0)),
          used(std::exchange(other.used, 0)), room(std::exchange(other.room, 0)) {}
    byte_store& operator=(byte_store&& other) noexcept {
        std::swap(bytes, other.bytes);
        std::swap(front, other.front);
        std::swap(used, other.used);
        std::swap(room, other.room);
        return *this;
    }
    ~byte_store() { std::free(bytes); }

    const unsigned char* data() const { return bytes + front; }
    std::size_t size() const { return used - front; }

    // Room for `more` bytes behind the last one, to be written there and then taken in by advance_to.
    unsigned char* reserve(std::size_t more) {
        if (room - used < more) grow(more);
        return bytes + used;
    }
    void advance_to(const unsigned char* end) { used = static_cast<std::size_t>(end - bytes); }
    void append(const void* from, std::size_t size) {
        if (size == 0) return;
        std::memcpy(reserve(size), from, size);
        used += size;
    }

    // The bytes behind these move when room is needed, not before.
    void drop_front(std::size_t size) { front += size; }

private:
    void grow(std::size_t more) {
        if (front != 0) {
            used -= front;
            std::memmove(bytes, bytes + front, used);
            front = 0;
            if (room - used >= more) return;
        }
        std::size_t wanted = room < 512 ? 1024 : room * 2;
        if (wanted - used < more) wanted = used + more;
        void* moved = std::realloc(bytes, wanted);
        if (!moved) throw std::bad_alloc();
        bytes = static_cast<unsigned char*>(moved);
        room = wanted;
    }

    unsigned char* bytes = nullptr;
    std::size_t front = 0; // what was dropped
    std::size_t used = 0;  // with it
    std::size_t room = 0;
};

// Writes one code; LONGEST_CODE bytes of room are enough. Gives the place behind it.
inline unsigned char* put_code(unsigned char* at, std::uint64_t code) {
    while (code >= 0x80) {
        *at++ = static_cast<unsigned char>(code | 0x80);
        code >>= 7;
    }
    *at++ = static_cast<unsigned char>(code);
    return at;
}

// The same for codes that mostly take one byte or two, without a branch that guesses which.
inline unsigned char* put_short_code(unsigned char* at, std::uint64_t code) {
    if (code >> 14) return put_code(at, code);
    const bool two = code >> 7 != 0;
    at[0] = static_cast<unsigned char>(code | static_cast<unsigned>(two) << 7);
    at[1] = static_cast<unsigned char>(code >> 7);
    return at + 1 + two;
}

inline std::uint64_t long_code(std::int32_t value) {
    const std::uint32_t folded =
        static_cast<std::uint32_t>(value) << 1 ^ static_cast<std::uint32_t>(value >> 31);
    return static_cast<std::uint64_t>(folded) << MARK_BITS | MARK_LONG;
}
inline std::uint64_t float_code(float value) {
    return static_cast<std::uint64_t>(std::bit_cast<std::uint32_t>(value)) << MARK_BITS | MARK_FLOAT;
}
inline std::uint64_t symbol_code(std::uint32_t index) {
    return static_cast<std::uint64_t>(index) << MARK_BITS | MARK_SYMBOL;
}

inline unsigned mark_of(std::uint64_t code) {
    return static_cast<unsigned>(code) & 3;
}
inline std::uint32_t rest_of(std::uint64_t code) {
    return static_cast<std::uint32_t>(code >> MARK_BITS);
}
inline std::int32_t long_of(std::uint64_t code) {
    const std::uint32_t folded = rest_of(code);
    return static_cast<std::int32_t>(folded >> 1 ^ (0U - (folded & 1)));
}
inline float float_of(std::uint64_t code) {
    return std::bit_cast<float>(rest_of(code));
}

// Reads one code that is known to be whole; moves `at` behind it. Nearly all are of one byte or two.
inline std::uint64_t get_code(const unsigned char*& at) {
    const std::uint64_t first = at[0];
    if (first < 0x80) {
        at += 1;
        return first;
    }
    const std::uint64_t second = at[1];
    std::uint64_t code = (first & 0x7F) | (second & 0x7F) << 7;
    at += 2;
    for (unsigned shift = 14; at[-1] >= 0x80; shift += 7) code |= (*at++ & std::uint64_t{0x7F}) << shift;
    return code;
}
