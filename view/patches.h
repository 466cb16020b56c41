// view/patches.h: which pixels of the data area are to be put back to the bare grid.
// Layer: view, internal to the data area.
// Called when many events were erased, in place of drawing the grid once for each.
#pragma once

#include <cstdint>
#include <vector>

#include "view/frame.h"

// Adding costs as many steps as the box has rows; drawing as many as there are separate runs of pixels.
class grid_patches {
public:
    // Empties the map and fits it to the frame. [main]
    void begin(const view_frame& f);
    // Adds every pixel that erasing this box and drawing the grid in its place sets: the lines reach one pixel beyond.
    // [main]
    void add(const bar_box& erased);
    // Draws what was added in rows from..to-1 of the window, and takes it out; whether anything was, and the foreground
    // colour is another. The clip must be the data area. [main]
    bool draw(int from, int to);

private:
    std::uint64_t* row(int v);
    void add_lines(int first, int behind, int from, int to);
    void draw_row(int v);
    void draw_run(int v, int from, int to);

    frame_settings set{};
    int left = 0, right = 0, top = 0, bottom = 0;
    int words = 0;
    std::vector<std::uint64_t> bits;
    std::vector<std::uint64_t> columns;   // the vertical lines
    std::vector<std::uint8_t> row_colour; // the horizontal ones, by window row
    std::vector<std::uint8_t> pending;    // rows, from `top` on, that may have something added
};
