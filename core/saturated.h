// core/saturated.h: 32-bit sums that stop at the ends of the range.
// Layer: core. Used wherever times and values are added up, so that times never fall by running over.
#pragma once

#include <algorithm>
#include <cstdint>

// The value, or the end of the 32-bit range that it lies beyond. [both]
constexpr std::int32_t saturated(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
}
