// view/bars.h: drawing bars, one or many.
// Layer: view, internal to the data area.
// Called by the drawing of events.
#pragma once

#include <cstdint>

#include "view/cover.h"
#include "view/frame.h"
#include "view/patches.h"
#include "view/pile.h"

// Sets the text state that bars are drawn with. Before the first bar of a pass. [main]
void brisolan_beginbars();
// Draws a measured bar with its label and mark and leaves the foreground colour. [main]
void brisolan_drawbar(const view_frame& f, const bar_look& look);
// What stays in sight of all that drawing and erasing a bar sets, told at one look.
struct bar_outlook {
    bool known;            // false where it takes more than that; nothing of what follows is so then
    bool buried;           // it lies below bars altogether
    bool overlain;         // in some of its columns it does
    std::uint64_t columns; // the others, from its left on
};

// Many bars and erasings, later ones over earlier ones, of which only what stays in sight is drawn: with many bars in
// sight most of them show little more than their heads, and what was erased and drawn over shows nothing at all. Fed from
// the last to the first. The looks must stay where they are until they are drawn.
class bar_pass {
public:
    // The port must be the window's. [main]
    void begin(const view_frame& f);
    // A measured bar, or the grid put in the place of one, in front of all that was added so far. [main]
    void add(const bar_look& look);
    void add_erasing(const bar_box& erased);
    // What of a bar would stay in sight if it was drawn, or erased, in front of what was added so far. [main]
    bar_outlook outlook(const bar_look& look) const;
    // Adds a bar of which no more than this stays in sight. [main]
    void add(const bar_look& look, const bar_outlook& outlook);
    // Draws what was added, in its order, and leaves the foreground colour. The clip must be the data area. [main]
    void draw(const view_frame& f);

private:
    struct step {
        // Of which these parts are seen; null for an erasing, of the box with this number.
        const bar_look* look;
        std::uint32_t box;
        std::uint8_t parts;
        // Of its solid parts nothing is seen outside of these columns from its left on; to 0: all are.
        std::uint8_t from, to;
    };
    struct bar_rows {
        std::int32_t top, bottom;
    };
    std::int32_t width_of(const bar_look& look) const; // columns and rows that it and its label take
    bar_rows rows_of(const bar_look& look) const;
    bool is_plain(const bar_look& look) const;
    void add_plain(const bar_look& look, const bar_rows& rows, std::uint64_t visible);
    void add_short(const bar_look& look, std::uint64_t visible);
    void add_long(const bar_look& look);
    const view_frame* frame = nullptr;
    std::int32_t text_above = 0, text_below = 0; // rows of a label from the bar's middle on; 0 without labels
    cover_map cover;
    std::int32_t erasings = 0; // steps that are, and are still to be drawn
    grid_patches patches;
    pile<step> seen;
    pile<bar_box> boxes;
};

// No bar, label or mark sets a pixel further than this above or below its middle.
constexpr int BAR_REACH = 16;
