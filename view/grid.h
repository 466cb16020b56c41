// view/grid.h: which rows and columns of the data area carry grid lines.
// Layer: view, internal to the data area.
// Called by the drawing of the grid and by whoever puts parts of it back.
#pragma once

#include <cstdint>
#include <vector>

#include "view/frame.h"

// The grid's own top: it draws nothing above this row.
constexpr int GRID_TOP = 61;
constexpr int GRID_COLUMN = 40; // pixels from one vertical line to the next

// The rows of the window: for each the palette index of the horizontal line on it, 0 for none. Kept between calls while
// nothing that places the lines has changed. Valid until the next call. [main]
const std::vector<std::uint8_t>& brisolan_gridrows(const frame_settings& s);

// The first grid column at or right of window pixel `left`. [main]
std::int32_t brisolan_gridcolumn(std::int16_t hscroll, std::int32_t left);
