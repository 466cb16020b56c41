// view/touch.h: which parts of the window were erased, as maps that answer whether a bar was touched, and when last.
// Layer: view, internal to the data area.
// Called when many events were erased, in place of comparing each with each.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "view/frame.h"

// Where a box lies in such a map.
class touch_places {
protected:
    struct row_range {
        int from, to;
    };
    void fit(const view_frame& f);
    row_range rows_of(const bar_box& box) const;
    // The columns of the box that the map has; none when to <= from.
    row_range columns_of(const bar_box& box) const {
        return {std::max(box.left, left) - left, std::min(box.right, right) - left};
    }
    bool is_inside(const bar_box& box) const { return box.left >= left && box.right <= right; }

    int left = 0, right = 0; // the columns that the map has
    int top = 0;             // the first row
    int rows = 0;
    int scale = 1; // map rows for a pixel row: 2 where bars may have no height, to keep lines and rows apart
    // Two that are lines do not overlap, so lines have a map of their own.
    bool is_line(const bar_box& box) const { return scale == 2 && box.top == box.bottom; }
};

// Adding a box and asking for one cost as many steps as the box has rows, whatever was added before.
class touch_map : touch_places {
public:
    // Empties the map and fits it to the frame. [main]
    void begin(const view_frame& f);
    // Adds what was erased. [main]
    void add(const bar_box& erased);
    // Whether anything added overlaps the box of an event that may show. [main]
    bool touched(const bar_box& box) const;

private:
    // Rows of one kind of erased boxes.
    struct plane {
        std::vector<std::uint64_t> bits; // of words-column w, the word of row v is w * rows + v
        // What reaches beyond the sides is told by its ends as well: how far right boxes reach that begin left of the map,
        // and how far left those that end right of it.
        std::vector<std::int32_t> from_left, from_right;
        void begin(std::size_t rows, std::size_t words);
    };
    void add(plane* p, const bar_box& erased) const;
    bool touched(const plane& p, const bar_box& box) const;

    plane areas, lines;
};

// As touch_map, but tells which erasing was the last; costs as many steps as the box has pixels.
class last_touch_map : touch_places {
public:
    // Empties the map and fits it to the frame. [main]
    void begin(const view_frame& f);
    // Adds what was erased in a step, counted from 1, none before those added already. [main]
    void add(const bar_box& erased, std::uint32_t step);
    // The last step that overlaps the box of an event that may show; 0 when none does. [main]
    std::uint32_t last(const bar_box& box) const;

private:
    struct outside {
        bar_box box;
        std::uint32_t step;
    };
    std::vector<std::uint32_t>& plane_of(const bar_box& box) { return is_line(box) ? lines : areas; }
    std::uint32_t last_in(const std::vector<std::uint32_t>& plane, const bar_box& box) const;

    std::vector<std::uint32_t> areas, lines; // row after row
    std::vector<outside> reaching_out;       // what has a part beyond the sides
};
