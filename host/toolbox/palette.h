// The host's colour palette: an RGB for each of the indices 0..47.
// Toolbox art: leans on host/toolbox.h.
// Called by the kernel's host_forecolor and by the tests that hold its colours apart.
#pragma once

#include "host/toolbox.h"

constexpr int PALETTE_SIZE = 48;

// Colour of palette index i: 0 hidden button, 1 foreground, 22 grid, label box and shown button, 25 strong grid, 26 text on
// 0, 27 neutral line, 47 down to 32 tracks 1 to 16, 4 up to 19 tracks 17 to 32. An index outside 0..47 is the
// foreground. [main]
RGBColor palette_color(int i);
