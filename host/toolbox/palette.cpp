// The palette's colours.
// Toolbox art.
// Called by the kernel's host_forecolor.
//
// The track colours were searched for by machine: of all 32 and the grounds they are drawn on (white, 22, 25) and black, any
// two lie at least 8 apart in CIEDE2000, to usual eyes and to eyes without red, green or blue cones alike; the first
// sixteen tracks at least 10. Earlier tracks took what is farthest from the ones before. A test holds these numbers.
#include "host/toolbox/palette.h"

#include <array>
#include <cstddef>

namespace {

// 0xRRGGBB.
constexpr uint32_t COLOURS[PALETTE_SIZE] = {
    0xF4F5F7, // 0 hidden button
    0x000000, // 1 foreground
    0xFFFFFF, // 2 background
    0x404850, // 3 dark grey
    0xC3C3B4, // 4 track 17
    0x784B00, // 5 track 18
    0x966996, // 6 track 19
    0x78874B, // 7 track 20
    0x003C4B, // 8 track 21
    0x4B5A4B, // 9 track 22
    0x3C9678, // 10 track 23
    0xC369FF, // 11 track 24
    0xFF4B69, // 12 track 25
    0x960F69, // 13 track 26
    0x4B3C2D, // 14 track 27
    0x4B4BA5, // 15 track 28
    0x87A5C3, // 16 track 29
    0x78693C, // 17 track 30
    0xA5A5A5, // 18 track 31
    0xC3B45A, // 19 track 32
    0xECEFF3, // 20 palest grey
    0xE5E9EF, // 21 pale grey
    0xDDE2EA, // 22 grid, label box, shown button
    0xD0D7E0, // 23 light grey
    0xC3CBD7, // 24 between the grids
    0xB4BECC, // 25 strong grid
    0x5F6670, // 26 text on a hidden button
    0x6E7883, // 27 neutral line
    0x8D96A1, // 28 grey
    0xA0A9B4, // 29 grey, lighter
    0x4F5761, // 30 grey, darker
    0x2A3038, // 31 nearly black
    0xE1C3FF, // 32 track 16
    0x8787C3, // 33 track 15
    0x2D00FF, // 34 track 14
    0x1E5A78, // 35 track 13
    0x96E196, // 36 track 12
    0xD2871E, // 37 track 11
    0x968796, // 38 track 10
    0xD296FF, // 39 track 9
    0x3C3C3C, // 40 track 8
    0x1E1EA5, // 41 track 7
    0x3CB487, // 42 track 6
    0x691E00, // 43 track 5
    0x696969, // 44 track 4
    0xFFC300, // 45 track 3
    0x966900, // 46 track 2
    0x2A6CD0, // 47 track 1
};

// Eight bits spread over sixteen, so that 0xFF becomes 0xFFFF.
constexpr uint16_t wide(uint32_t byte) {
    return static_cast<uint16_t>((byte & 0xFF) * 0x101);
}

constexpr std::array<RGBColor, PALETTE_SIZE> widened() {
    std::array<RGBColor, PALETTE_SIZE> out{};
    for (std::size_t i = 0; i < out.size(); i++) {
        const uint32_t c = COLOURS[i];
        out[i] = {wide(c >> 16), wide(c >> 8), wide(c)};
    }
    return out;
}
constexpr std::array<RGBColor, PALETTE_SIZE> WIDE = widened();

} // namespace

RGBColor palette_color(int i) {
    return WIDE[static_cast<std::size_t>(i >= 0 && i < PALETTE_SIZE ? i : 1)];
}
