// view/bars.cpp: drawing one event's bar.
// Layer: view, internal to the data area.
// Called by the drawing of events.
#include "view/bars.h"

#include <algorithm>

#include "view/draw.h"
#include "view/events.h"
#include "view/format.h"

namespace {

// A bar with a label: the head in the track's colour, the label's box, the rest.
constexpr int HEAD = 4;
constexpr int LABEL_LEFT = 5;
constexpr int LABEL_BASELINE = 4;
// The "#" mark.
constexpr int SHARP_LEFT = 7;
constexpr int SHARP_BASELINE = 6;
constexpr int SHARP_ROOM = 16; // no glyph is wider

void set_track_colour(const view_frame& f, const bar_look& look) {
    if (f.set.colorparam == PARAM_TRACK)
        brisolan_trackcolor(look.track - 1);
    else
        t_color(COLOR_FOREGROUND);
}

// The bar's rows. Where the zoom leaves it no height its middle row is its own, so that it is one pixel high, and three
// as the outline of a selected event.
struct bar_rows {
    int top, bottom;
    bar_rows(const view_frame& f, const bar_look& look)
        : top(look.y - look.half), bottom(look.y + look.half + (f.half == 0 ? 1 : 0)) {}
};

// Selected events are outlines, others solid.
void fill(const bar_look& look, int left, const bar_rows& rows, int right) {
    if (look.selected)
        t_framerect(left, rows.top, right, rows.bottom);
    else
        t_paintrect(left, rows.top, right, rows.bottom);
}

// The label's box behind the head, and what of the bar is longer than it.
void draw_body(const view_frame& f, const bar_look& look, const bar_rows& rows) {
    const int box = look.label_width + 2;
    const int right = look.left + look.length;
    const bool shortened = look.length < box + HEAD;
    const int box_right = shortened ? right : look.left + HEAD + box;
    t_color(COLOR_GRID);
    fill(look, look.left + HEAD, rows, box_right);
    if (shortened) return;
    set_track_colour(f, look);
    fill(look, box_right, rows, right);
}

void draw_label(const view_frame& f, const bar_look& look) {
    char label[VALUE_SIZE];
    const int length = brisolan_labeltext(f.set.labelnotes != 0, look.label, label);
    t_color(COLOR_FOREGROUND);
    MoveTo(look.left + LABEL_LEFT, look.y + LABEL_BASELINE);
    DrawText(label, 0, length);
}

} // namespace

void brisolan_beginbars() {
    t_textface(FACE_PLAIN);
    TextMode(srcOr);
}

void brisolan_drawbar(const view_frame& f, const bar_look& look) {
    const bar_rows rows(f, look);
    set_track_colour(f, look);
    if (!f.labels) {
        fill(look, look.left, rows, look.left + look.length);
        t_color(COLOR_FOREGROUND);
    } else {
        fill(look, look.left, rows, look.left + HEAD);
        if (look.length > HEAD + 1) draw_body(f, look, rows);
        draw_label(f, look);
    }
    if (look.black_key) t_drawstring("#", look.left - SHARP_LEFT, look.y + SHARP_BASELINE);
}

bar_bounds brisolan_barbounds(const view_frame& f, const bar_look& look, int ascent, int descent) {
    const bar_rows rows(f, look);
    bar_bounds b{look.left, look.left + look.length, rows.top, rows.bottom};
    const auto add_text = [&](std::int32_t left, std::int32_t right, int baseline) {
        b.left = std::min(b.left, left);
        b.right = std::max(b.right, right);
        b.top = std::min(b.top, baseline - ascent);
        b.bottom = std::max(b.bottom, baseline + descent);
    };
    if (f.labels) {
        const std::int32_t text = look.left + LABEL_LEFT;
        add_text(text, text + look.label_width, look.y + LABEL_BASELINE);
    }
    if (look.black_key)
        add_text(look.left - SHARP_LEFT, look.left - SHARP_LEFT + SHARP_ROOM, look.y + SHARP_BASELINE);
    return b;
}

bar_bounds brisolan_barcover(const view_frame& f, const bar_look& look) {
    const bar_rows rows(f, look);
    const bool head_alone = f.labels && look.length <= HEAD + 1;
    return {look.left, look.left + (head_alone ? HEAD : look.length), rows.top, rows.bottom};
}

void brisolan_drawbars(const view_frame& f, const std::vector<bar_look>& looks, cover_map* cover) {
    static std::vector<std::uint32_t> seen; // main level; kept for its storage
    seen.clear();
    cover->begin(f);
    for (std::size_t i = looks.size(); i-- > 0 && !cover->is_full();) {
        if (cover->hides(f, looks[i])) continue;
        cover->add(f, looks[i]);
        seen.push_back(static_cast<std::uint32_t>(i));
    }
    for (std::size_t i = seen.size(); i-- > 0;) brisolan_drawbar(f, looks[seen[i]]);
}
