// view/bars.cpp: drawing bars, one or many.
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

// The parts of a bar. They are disjoint but for the label, which lies over the others, and the mark.
enum bar_part : unsigned { PART_HEAD = 1, PART_BOX = 2, PART_REST = 4, PART_LABEL = 8, PART_MARK = 16 };
constexpr unsigned ALL_PARTS = 31;

// Where the parts end: the head begins at the bar's left, the box where the head ends, the rest where the box does. A part
// that is missing is empty. Where the zoom leaves a bar no height its middle row is its own, so that it is one pixel
// high, and three as the outline of a selected event.
struct bar_edges {
    std::int32_t top, bottom, head, box, right;
    bar_edges(const view_frame& f, const bar_look& look)
        : top(look.y - look.half), bottom(look.y + look.half + (f.half == 0 ? 1 : 0)),
          right(look.left + look.length) {
        head = f.labels ? look.left + HEAD : right;
        if (look.length <= HEAD + 1) right = head; // no box, and nothing behind it
        box = std::min(head + look.label_width() + 2, right);
    }
};

// Selected events are outlines, others solid.
void fill(const bar_look& look, const bar_edges& e, std::int32_t left, std::int32_t right) {
    if (left >= right) return;
    if (look.selected)
        t_framerect(left, e.top, right, e.bottom);
    else
        t_paintrect(left, e.top, right, e.bottom);
}

void draw_label(const view_frame& f, const bar_look& look) {
    char label[VALUE_SIZE];
    const int length = brisolan_labeltext(f.set.labelnotes != 0, look.label, label);
    MoveTo(look.left + LABEL_LEFT, look.y + LABEL_BASELINE);
    DrawText(label, 0, length);
}

// Draws the wanted ones of the parts; the colour is left as the last one needed it.
void draw_parts(const view_frame& f, const bar_look& look, unsigned wanted) {
    const bar_edges e(f, look);
    if (wanted & (PART_HEAD | PART_REST)) {
        if (f.set.colorparam == PARAM_TRACK)
            brisolan_trackcolor(std::max(look.track, 0) - 1);
        else
            t_color(COLOR_FOREGROUND);
        if (wanted & PART_HEAD) fill(look, e, look.left, e.head);
        if (wanted & PART_REST) fill(look, e, e.box, e.right);
    }
    if (wanted & PART_BOX && e.head < e.box) {
        t_color(COLOR_GRID);
        fill(look, e, e.head, e.box);
    }
    if (!(wanted & (PART_LABEL | PART_MARK))) return;
    t_color(COLOR_FOREGROUND);
    if (wanted & PART_LABEL && f.labels) draw_label(f, look);
    if (wanted & PART_MARK && look.black_key)
        t_drawstring("#", look.left - SHARP_LEFT, look.y + SHARP_BASELINE);
}

// How far text rises above its baseline and falls below it.
struct text_room {
    std::int32_t ascent, descent;
};

// The bits of columns from..to-1 of a window; from < to <= 64.
std::uint64_t columns(std::int32_t from, std::int32_t to) {
    return ~std::uint64_t{0} >> (64 - (to - from)) << from;
}

// The parts that are not hidden by what is drawn later, part by part.
unsigned seen_by_boxes(const view_frame& f, const bar_look& look, const bar_edges& e, const text_room& text,
                       const cover_map& cover) {
    const auto shows = [&](std::int32_t left, std::int32_t right) {
        return left < right && !cover.hides({left, e.top, right, e.bottom});
    };
    unsigned seen = 0;
    if (look.black_key) seen |= PART_MARK;
    if (shows(look.left, e.head)) seen |= PART_HEAD;
    if (shows(e.head, e.box)) seen |= PART_BOX;
    if (shows(e.box, e.right)) seen |= PART_REST;
    const std::int32_t label = look.left + LABEL_LEFT;
    const std::int32_t baseline = look.y + LABEL_BASELINE;
    const pixel_box behind_label{label, baseline - text.ascent, label + look.label_width(),
                                 baseline + text.descent};
    return f.labels && !cover.hides(behind_label) ? seen | PART_LABEL : seen;
}

// The same for a bar that fits a window, in one look at each of its rows.
unsigned seen_in_window(const view_frame& f, const bar_look& look, const bar_edges& e, const text_room& text,
                        const cover_map& cover) {
    const auto shows = [](std::uint64_t hidden, std::int32_t from, std::int32_t to) {
        return from < to && (~hidden & columns(from, to)) != 0;
    };
    const std::uint64_t bar = cover.hidden(look.left, e.top, e.bottom);
    unsigned seen = 0;
    if (look.black_key) seen |= PART_MARK;
    if (shows(bar, 0, e.head - look.left)) seen |= PART_HEAD;
    if (shows(bar, e.head - look.left, e.box - look.left)) seen |= PART_BOX;
    if (shows(bar, e.box - look.left, e.right - look.left)) seen |= PART_REST;
    if (!f.labels) return seen;
    const std::int32_t baseline = look.y + LABEL_BASELINE;
    // The text is higher than the bar, or as high; its own rows are those above and below.
    const std::uint64_t behind_label = bar & cover.hidden(look.left, baseline - text.ascent, e.top) &
                                       cover.hidden(look.left, e.bottom, baseline + text.descent);
    return shows(behind_label, LABEL_LEFT, LABEL_LEFT + look.label_width()) ? seen | PART_LABEL : seen;
}

unsigned seen_parts(const view_frame& f, const bar_look& look, const bar_edges& e, const text_room& text,
                    const cover_map& cover) {
    const std::int32_t width = std::max(e.right - look.left, LABEL_LEFT + look.label_width());
    const bool fits = width <= 64 && cover.in_reach(look.left);
    return fits ? seen_in_window(f, look, e, text, cover) : seen_by_boxes(f, look, e, text, cover);
}

// What the bar sets for certain: its solid parts, or the rows of its outlines; text is left out.
void cover_bar(const bar_look& look, const bar_edges& e, cover_map* cover) {
    if (!look.selected) {
        cover->add({look.left, e.top, e.right, e.bottom});
        return;
    }
    cover->add({look.left, e.top, e.right, e.top + 1});
    cover->add({look.left, e.bottom - 1, e.right, e.bottom});
}

} // namespace

void brisolan_beginbars() {
    t_textface(FACE_PLAIN);
    TextMode(srcOr);
}

void brisolan_drawbar(const view_frame& f, const bar_look& look) {
    ++g_datadrawings;
    draw_parts(f, look, ALL_PARTS);
    t_color(COLOR_FOREGROUND);
}

void bar_pass::begin(const view_frame& f) {
    FontInfo font;
    GetFontInfo(&font);
    ascent = font.ascent;
    descent = font.descent;
    frame = &f;
    cover.begin(f.data);
    erasings = 0;
    count = 0;
}

inline void bar_pass::push(const void* what, unsigned parts) {
    constexpr std::size_t MORE = 1024;
    if (count == seen.size()) seen.resize(count * 2 + MORE);
    seen[count++] = {what, parts};
}

void bar_pass::add(const bar_look& look) {
    const bar_edges e(*frame, look);
    const unsigned parts = seen_parts(*frame, look, e, {ascent, descent}, cover);
    if (!parts) return;
    cover_bar(look, e, &cover);
    push(&look, parts);
}

// The lines of the grid reach one pixel beyond what is erased.
void bar_pass::add_erasing(const bar_box& erased) {
    const std::int32_t bottom = erased.bottom + 1;
    if (cover.hides({erased.left, erased.top, erased.right + 1, bottom + 1})) return;
    cover.add({erased.left, erased.top, erased.right, bottom});
    ++erasings;
    push(&erased, 0);
}

void bar_pass::draw(const view_frame& f) {
    if (count > 0) ++g_datadrawings;
    if (erasings > 0) patches.begin(f);
    for (std::size_t i = count; i-- > 0;) {
        const step& s = seen[i];
        if (s.parts) {
            const bar_look& look = *static_cast<const bar_look*>(s.what);
            if (erasings > 0) patches.draw(look.y - BAR_REACH, look.y + BAR_REACH);
            draw_parts(f, look, s.parts);
            continue;
        }
        patches.add(*static_cast<const bar_box*>(s.what));
        if (--erasings == 0) patches.draw(f.data.top, f.data.bottom);
    }
    t_color(COLOR_FOREGROUND);
}
