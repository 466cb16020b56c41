// core/saturated.h: 32-bit results of sums that may need more: held at the ends of the range, or wrapped around.
// Layer: core. Held wherever times and values are added up, so that times never fall by running over; wrapped in MIDI
// files and saved lines, whose integers have always done so.
#pragma once

#include <algorithm>
#include <cstdint>

// The value, or the end of the 32-bit range that it lies beyond. [both]
constexpr std::int32_t saturated(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
}

// The value's low 32 bits. [both]
constexpr std::int32_t wrapped(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}
