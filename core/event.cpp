// core/event.cpp: the eight parameters' fixed description.
// Layer: core; plain lookups without state.
// Called by construction and whoever asks for a parameter's nature rather than an instance's setting.
#include "core/event.h"

namespace {

struct param_description {
    const char* name;
    std::int32_t mode, draw, def, min, max, scale, interval;
};

constexpr std::array<param_description, NPARAMS> descriptions{{
    {"Time", ROLE_TIME, 1, 0, 0, 999999, 200, 1000},
    {"Pitch", ROLE_VERTICAL, 1, 60, 0, 127, 4, 12},
    {"Vel", ROLE_LABEL, 1, 64, 0, 127, 4, 12},
    {"Dur", ROLE_LENGTH, 1, 200, 1, 99999, 200, 800},
    {"Chan", ROLE_NONE, 1, 1, 1, 16, 1, 8},
    {"Track", ROLE_NONE, 1, 1, 1, 32, 1, 8},
    {"X1", ROLE_NONE, 1, 0, 0, 999, 20, 80},
    {"X2", ROLE_NONE, 1, 0, 0, 999, 20, 80},
}};

// What every lookup answers for an index that is none.
constexpr param_description no_parameter{"boop", -1, -1, -1, -1, -1, -1, -1};

const param_description& describe(int index) {
    if (index < 0 || index >= NPARAMS) return no_parameter;
    return descriptions[static_cast<std::size_t>(index)];
}

} // namespace

const char* e_paramnames(int index) {
    return describe(index).name;
}
std::int32_t e_parammodes(int index) {
    return describe(index).mode;
}
std::int32_t e_paramdraw(int index) {
    return describe(index).draw;
}
std::int32_t e_paramdefs(int index) {
    return describe(index).def;
}
std::int32_t e_parammins(int index) {
    return describe(index).min;
}
std::int32_t e_parammaxs(int index) {
    return describe(index).max;
}
std::int32_t e_paramscales(int index) {
    return describe(index).scale;
}
std::int32_t e_paramintervals(int index) {
    return describe(index).interval;
}
