// host/kernel/text.cpp: from the host's texts, UTF-8, to the toolbox's, Latin-1 with a length byte.
// Layer: kernel. Called by the object and the kernel before text is measured or drawn.
#include "host/kel.h"

namespace {

constexpr int MOST_CHARACTERS = 255;
constexpr unsigned LAST_LATIN_1 = 0xFF;

bool is_continuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// How many bytes the character has that begins with this byte; 1 when it begins none.
int length_of(unsigned char first) {
    if (first >= 0xF0 && first < 0xF8) return 4;
    if (first >= 0xE0 && first < 0xF0) return 3;
    return first >= 0xC2 && first < 0xE0 ? 2 : 1;
}

// Takes one character off the text; a byte that is no UTF-8 stands for itself.
unsigned next_character(const unsigned char*& at) {
    const int length = length_of(*at);
    for (int i = 1; i < length; ++i) {
        if (!is_continuation(at[i])) return *at++;
    }
    if (length == 1) return *at++;
    unsigned character = *at & (0xFFU >> (length + 1));
    for (int i = 1; i < length; ++i) character = character << 6 | (at[i] & 0x3FU);
    at += length;
    return character;
}

} // namespace

void host_ctopcpy(unsigned char* to, const char* from) {
    int n = 0;
    for (const auto* at = reinterpret_cast<const unsigned char*>(from); *at && n < MOST_CHARACTERS;) {
        const unsigned character = next_character(at);
        to[++n] = static_cast<unsigned char>(character <= LAST_LATIN_1 ? character : '?');
    }
    to[0] = static_cast<unsigned char>(n);
}
