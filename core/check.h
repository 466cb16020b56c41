// core/check.h: what always holds of an instance between two calls, asserted.
// Layer: core. Called by debug builds of the script runner after every line, and by tests.
#pragma once

#include "core/instance.h"

// The first broken invariant of those at the head of core/instance.h, as a sentence; null when all hold. Walks the
// whole sequence. [main]
const char* brisolan_brokeninvariant(const brisolan* x);

// Stops the program with that sentence on standard error when there is one. [main]
void brisolan_checkinvariants(const brisolan* x);
