// view/patches.cpp: which pixels of the data area are to be put back to the bare grid.
// Layer: view, internal to the data area.
// Called when many events were erased.
#include "view/patches.h"

#include <algorithm>
#include <bit>

#include "view/bitruns.h"
#include "view/draw.h"
#include "view/grid.h"

std::uint64_t* grid_patches::row(int v) {
    return bits.data() + static_cast<std::size_t>(v - top) * static_cast<std::size_t>(words);
}

void grid_patches::begin(const view_frame& f) {
    set = f.set;
    left = f.data.left;
    right = std::max<int>(f.data.right, left);
    top = f.data.top;
    bottom = std::max<int>(f.data.bottom, top);
    words = words_for(right - left);
    bits.assign(static_cast<std::size_t>(bottom - top) * static_cast<std::size_t>(words), 0);
    pending.assign(static_cast<std::size_t>(bottom - top), 0);
    columns.assign(static_cast<std::size_t>(words), 0);
    for (int h = brisolan_gridcolumn(set.hscroll, left); h < right; h += GRID_COLUMN)
        columns[static_cast<std::size_t>((h - left) / BITS)] |= std::uint64_t{1} << (h - left) % BITS;
    row_colour = brisolan_gridrows(set);
}

void grid_patches::add(const bar_box& erased) {
    const int behind = erased.bottom + 1; // the row that only lines reach
    const int from = std::max(erased.left, left) - left;
    const int to = std::min(erased.right, right) - left;
    const int to_line = std::min(erased.right, right - 1) + 1 - left;
    if (from >= to_line) return;
    const int first = std::max<int>(erased.top, top);
    const int area_end = std::min(behind, bottom);
    if (from < to) {
        const bit_run area(from, to);
        std::uint64_t* at = row(first);
        for (int v = first; v < area_end; ++v, at += words) area.set(at);
    }
    for (int v = first; v < std::min(behind + 1, bottom); ++v) pending[static_cast<std::size_t>(v - top)] = 1;
    add_lines(first, behind, from, to_line);
}

// The lines reach the column and the row behind the erased area; within it they are part of it.
void grid_patches::add_lines(int first, int behind, int from, int to) {
    const bit_run run(from, to);
    const int end = std::min(behind + 1, bottom);
    const int last_word = (to - 1) / BITS;
    const std::uint64_t edge = columns[static_cast<std::size_t>(last_word)] & std::uint64_t{1}
                                                                                  << (to - 1) % BITS;
    std::uint64_t* at = row(first);
    for (int v = first; v < end; ++v, at += words) {
        at[last_word] |= edge;
        if (row_colour[static_cast<std::size_t>(v)] != 0) run.set(at);
    }
    if (behind < first || behind >= bottom) return;
    at = row(behind);
    for (int w = run.first; w <= run.last; ++w) at[w] |= run.in(w)&columns[static_cast<std::size_t>(w)];
}

void grid_patches::draw_run(int v, int from, int to) {
    if (const std::uint8_t colour = row_colour[static_cast<std::size_t>(v)]) {
        t_color(colour);
        t_drawline(from, v, to - 1, v);
        return;
    }
    t_eraserect(from, v, to, v + 1);
    t_color(COLOR_GRID);
    for (int h = brisolan_gridcolumn(set.hscroll, from); h < to; h += GRID_COLUMN) t_drawline(h, v, h, v);
}

// Finds the runs of set bits, over the words' borders.
void grid_patches::draw_row(int v) {
    std::uint64_t* at = row(v);
    int begun = -1;
    for (int w = 0; w < words; ++w) {
        std::uint64_t rest = at[w];
        at[w] = 0;
        int h = 0;
        while (h < BITS) {
            const std::uint64_t ahead = rest >> h;
            const int same = begun < 0 ? std::countr_zero(ahead) : std::countr_one(ahead);
            h += std::min(same, BITS - h);
            if (h >= BITS) break;
            if (begun < 0) {
                begun = w * BITS + h;
            } else {
                draw_run(v, left + begun, left + w * BITS + h);
                begun = -1;
            }
        }
    }
    if (begun >= 0) draw_run(v, left + begun, right);
}

bool grid_patches::draw(int from, int to) {
    bool any = false;
    for (int v = std::max(from, top); v < std::min(to, bottom); ++v) {
        std::uint8_t& waits = pending[static_cast<std::size_t>(v - top)];
        if (!waits) continue;
        draw_row(v);
        waits = 0;
        any = true;
    }
    return any;
}
