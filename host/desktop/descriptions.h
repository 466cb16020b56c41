// host/desktop/descriptions.h: the descriptions of an object's parameters, asked for by "pstate" and given by "setparam".
// Layer: desktop platform; knows no Qt.
// Called by the inspector and the editor's documents.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/kel.h"

struct parameter_description {
    std::string name;
    std::int32_t role = 0; // 0 none, 1 time axis, 2 vertical axis, 3 label, 4 bar length
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t value = 0;    // the default, which new notes get
    std::int32_t interval = 0; // between grid lines and labels
    std::int32_t scale = 1;    // units per 8 pixels on an axis
    bool note_names = false;
    bool operator==(const parameter_description&) const = default;
};

struct described_object {
    std::vector<parameter_description> parameters;
    int chosen = 0; // the one for which the inspector was opened
};

// What the object tells; empty when it tells nothing of the kind. [main]
described_object ask_descriptions(host_object* x);

// Describes one parameter anew. A role that stays as it was stays. [main]
void send_description(host_object* x, int index, const parameter_description& description);
