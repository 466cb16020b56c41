// Coordinates held within 16 bits.
// Toolbox, internal: leans on nothing.
// Called wherever the toolbox stores a coordinate that it was given as an int.
#pragma once

#include <algorithm>
#include <cstdint>

constexpr int16_t pin16(int64_t x) {
    return static_cast<int16_t>(std::clamp<int64_t>(x, INT16_MIN, INT16_MAX));
}
