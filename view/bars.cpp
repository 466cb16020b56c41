// view/bars.cpp: drawing bars, one or many.
// Layer: view, internal to the data area.
// Called by the drawing of events.
#include "view/bars.h"

#include <algorithm>
#include <bit>

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

// The foreground colour while bars are drawn, which is set only where it changes.
class ink {
public:
    void be(int colour) {
        if (colour != now) t_color(colour);
        now = colour;
    }
    // Others have set it.
    void forget() { now = -1; }

private:
    int now = -1;
};

// What of a bar is drawn: some of its parts, of solid ones no more than these columns from its left on.
struct bar_sight {
    unsigned parts;
    std::int32_t from, to;
};
constexpr bar_sight WHOLE_BAR{ALL_PARTS, 0, INT32_MAX};

// Selected events are outlines, others solid.
void fill(const bar_look& look, const bar_edges& e, const bar_sight& sight, std::int32_t left,
          std::int32_t right) {
    if (left >= right) return;
    if (look.selected) {
        t_framerect(left, e.top, right, e.bottom);
        return;
    }
    const std::int32_t first = look.left + sight.from;
    const std::int64_t behind = std::int64_t{look.left} + sight.to;
    t_paintrect(std::max(left, first), e.top, static_cast<int>(std::min<std::int64_t>(right, behind)),
                e.bottom);
}

void draw_label(const view_frame& f, const bar_look& look) {
    char label[VALUE_SIZE];
    const int length = brisolan_labeltext(f.set.labelnotes != 0, look.label, label);
    MoveTo(look.left + LABEL_LEFT, look.y + LABEL_BASELINE);
    DrawText(label, 0, length);
}

// Draws the wanted ones of the parts.
void draw_parts(const view_frame& f, const bar_look& look, const bar_sight& sight, ink& colour) {
    const unsigned wanted = sight.parts;
    const bar_edges e(f, look);
    if (wanted & (PART_HEAD | PART_REST)) {
        colour.be(look.colour);
        if (wanted & PART_HEAD) fill(look, e, sight, look.left, e.head);
        if (wanted & PART_REST) fill(look, e, sight, e.box, e.right);
    }
    if (wanted & PART_BOX && e.head < e.box) {
        colour.be(COLOR_GRID);
        fill(look, e, sight, e.head, e.box);
    }
    if (!(wanted & (PART_LABEL | PART_MARK))) return;
    colour.be(COLOR_FOREGROUND);
    if (wanted & PART_LABEL && f.labels) draw_label(f, look);
    if (wanted & PART_MARK && look.black_key)
        t_drawstring("#", look.left - SHARP_LEFT, look.y + SHARP_BASELINE);
}

// The rows of a bar's label, half-open.
struct text_rows {
    std::int32_t top, bottom;
};

// ---- which parts stay in sight, and what they cover

// One bar beside what is drawn later, part by part, for bars of any length.
class any_bar {
public:
    any_bar(const view_frame& f, const bar_look& bar, const bar_edges& edges)
        : frame(f), look(bar), e(edges) {}

    unsigned seen(const text_rows& text, const cover_map& cover) const {
        const auto shows = [&](std::int32_t left, std::int32_t right) {
            return left < right && !cover.hides({left, e.top, right, e.bottom});
        };
        unsigned parts = 0;
        if (look.black_key) parts |= PART_MARK;
        if (shows(look.left, e.head)) parts |= PART_HEAD;
        if (shows(e.head, e.box)) parts |= PART_BOX;
        if (shows(e.box, e.right)) parts |= PART_REST;
        const std::int32_t label = look.left + LABEL_LEFT;
        const pixel_box behind_label{label, text.top, label + look.label_width(), text.bottom};
        return frame.labels && !cover.hides(behind_label) ? parts | PART_LABEL : parts;
    }
    // What the bar sets for certain: its solid parts, or the rows of its outlines; text is left out.
    void cover(cover_map* map) const {
        if (!look.selected) {
            map->add({look.left, e.top, e.right, e.bottom});
            return;
        }
        map->add({look.left, e.top, e.right, e.top + 1});
        map->add({look.left, e.bottom - 1, e.right, e.bottom});
    }

private:
    const view_frame& frame;
    const bar_look& look;
    const bar_edges& e;
};

// The bits of columns from..to-1 of a window; none when to <= from <= 64.
std::uint64_t columns(std::int32_t from, std::int32_t to) {
    const auto below = [](std::int32_t n) {
        return n < BITS ? (std::uint64_t{1} << n) - 1 : ~std::uint64_t{0};
    };
    return below(to) & ~below(from);
}

// The first and the last bit of a run.
std::uint64_t ends_of(std::uint64_t run) {
    return run & (~(run << 1) | ~(run >> 1));
}

// The same for a bar that fits a window of 64 columns, as nearly all do: in one look at each of its rows.
class short_bar {
public:
    // Bit 0 of every run is the bar's left column. Of an outline the rows between the first and the last hold only the
    // sides of each part; a solid bar has no rows but those.
    short_bar(const view_frame& f, const bar_look& bar, const bar_edges& edges)
        : frame(f), look(bar), e(edges), head(columns(0, e.head - look.left)),
          box(columns(e.head - look.left, e.box - look.left)),
          rest(columns(e.box - look.left, e.right - look.left)) {}

    // `visible` are the columns in which anything is seen of the rows that the bar and its label take.
    unsigned seen(std::uint64_t visible, const cover_map& cover) const {
        const std::int32_t border = look.selected ? 1 : 0;
        const std::uint64_t borders = look.selected ? cover.hidden(look.left, e.top, e.top + 1) &
                                                          cover.hidden(look.left, e.bottom - 1, e.bottom)
                                                    : ~std::uint64_t{0};
        const std::uint64_t middle = cover.hidden(look.left, e.top + border, e.bottom - border);
        const auto shows = [&](std::uint64_t run) { return (run & ~borders) | (middle_of(run) & ~middle); };
        unsigned parts = 0;
        if (look.black_key) parts |= PART_MARK;
        if (shows(head)) parts |= PART_HEAD;
        if (!frame.labels) return parts;
        if (shows(box)) parts |= PART_BOX;
        if (shows(rest)) parts |= PART_REST;
        const std::uint64_t label = columns(LABEL_LEFT, LABEL_LEFT + look.label_width());
        return label & visible ? parts | PART_LABEL : parts;
    }
    void cover(cover_map* map) const {
        const std::uint64_t all = head | box | rest;
        if (!look.selected) {
            map->cover(look.left, e.top, e.bottom, all);
            return;
        }
        map->cover(look.left, e.top, e.top + 1, all);
        map->cover(look.left, e.bottom - 1, e.bottom, all);
        map->cover(look.left, e.top + 1, e.bottom - 1, middle_of(head) | middle_of(box) | middle_of(rest));
    }

private:
    std::uint64_t middle_of(std::uint64_t run) const { return look.selected ? ends_of(run) : run; }

    const view_frame& frame;
    const bar_look& look;
    const bar_edges& e;
    std::uint64_t head, box, rest;
};

} // namespace

void brisolan_beginbars() {
    t_textface(FACE_PLAIN);
    TextMode(srcOr);
}

void brisolan_drawbar(const view_frame& f, const bar_look& look) {
    ++g_datadrawings;
    ink colour;
    draw_parts(f, look, WHOLE_BAR, colour);
    colour.be(COLOR_FOREGROUND);
}

void bar_pass::begin(const view_frame& f) {
    FontInfo font;
    GetFontInfo(&font);
    text_above = f.labels ? font.ascent - LABEL_BASELINE : 0;
    text_below = f.labels ? font.descent + LABEL_BASELINE : 0;
    frame = &f;
    cover.begin(f.data);
    erasings = 0;
    seen.clear();
    boxes.clear();
}

inline std::int32_t bar_pass::width_of(const bar_look& look) const {
    return std::max(look.length, frame->labels ? LABEL_LEFT + look.label_width() : 0);
}

inline bar_pass::bar_rows bar_pass::rows_of(const bar_look& look) const {
    const std::int32_t below = look.half + (frame->half == 0 ? 1 : 0);
    return {look.y - std::max<std::int32_t>(look.half, text_above), look.y + std::max(below, text_below)};
}

// A solid bar without a label: the look is all that there is to know.
inline bool bar_pass::is_plain(const bar_look& look) const {
    return !frame->labels && !look.selected && !look.black_key;
}
inline void bar_pass::add_plain(const bar_look& look, const bar_rows& rows, std::uint64_t visible) {
    cover.cover(look.left, rows.top, rows.bottom, columns(0, look.length));
    seen.push({&look, 0, PART_HEAD, static_cast<std::uint8_t>(std::countr_zero(visible)),
               static_cast<std::uint8_t>(BITS - std::countl_zero(visible))});
}

// Mostly nothing of it is seen, which one look at all that it may set tells.
void bar_pass::add(const bar_look& look) {
    const std::int32_t width = width_of(look);
    if (width > BITS || !cover.in_reach(look.left)) {
        add_long(look);
        return;
    }
    const bar_rows rows = rows_of(look);
    const std::uint64_t visible = columns(0, width) & ~cover.hidden(look.left, rows.top, rows.bottom);
    if (!visible && !look.black_key) return;
    if (is_plain(look))
        add_plain(look, rows, visible);
    else
        add_short(look, visible);
}

void bar_pass::add(const bar_look& look, const bar_outlook& outlook) {
    if (!outlook.known) {
        add(look);
        return;
    }
    if (!is_plain(look)) {
        if (!outlook.buried) add_short(look, outlook.columns);
        return;
    }
    const std::uint64_t visible = outlook.columns & columns(0, look.length);
    if (visible) add_plain(look, rows_of(look), visible);
}

void bar_pass::add_short(const bar_look& look, std::uint64_t visible) {
    const bar_edges e(*frame, look);
    const short_bar bar(*frame, look, e);
    const unsigned parts = bar.seen(visible, cover);
    if (!parts) return;
    bar.cover(&cover);
    seen.push({&look, 0, static_cast<std::uint8_t>(parts), 0, 0});
}

void bar_pass::add_long(const bar_look& look) {
    const bar_edges e(*frame, look);
    const any_bar bar(*frame, look, e);
    const unsigned parts = bar.seen({look.y - text_above, look.y + text_below}, cover);
    if (!parts) return;
    bar.cover(&cover);
    seen.push({&look, 0, static_cast<std::uint8_t>(parts), 0, 0});
}

// The lines of the grid reach one pixel beyond what is erased.
void bar_pass::add_erasing(const bar_box& erased) {
    const std::int32_t bottom = erased.bottom + 1;
    const std::int32_t width = erased.right - erased.left;
    if (width < BITS && cover.in_reach(erased.left)) {
        const std::uint64_t hidden = cover.hidden(erased.left, erased.top, bottom + 1);
        if (!(columns(0, width + 1) & ~hidden)) return;
        cover.cover(erased.left, erased.top, bottom, columns(0, width));
    } else {
        if (cover.hides({erased.left, erased.top, erased.right + 1, bottom + 1})) return;
        cover.add({erased.left, erased.top, erased.right, bottom});
    }
    ++erasings;
    seen.push({nullptr, static_cast<std::uint32_t>(boxes.size()), 0, 0, 0});
    boxes.push(erased);
}

bar_outlook bar_pass::outlook(const bar_look& look) const {
    const std::int32_t width = look.right() - look.left;
    const std::int32_t top = look.y - std::max<std::int32_t>(look.half, text_above);
    const std::int32_t bottom = look.y + std::max(look.half + 2, text_below); // as far as an erasing's lines
    const Rect& data = frame->data;
    const bool inside =
        look.left >= data.left && look.left + width < data.right && top >= data.top && bottom <= data.bottom;
    if (!inside || width >= BITS || frame->half == 0 || look.black_key) return {false, false, false, 0};
    const std::uint64_t hidden = cover.hidden(look.left, top, bottom);
    const std::uint64_t visible = columns(0, width + 1) & ~hidden;
    return {true, visible == 0, (columns(0, width) & hidden) != 0, visible};
}

void bar_pass::draw(const view_frame& f) {
    if (!seen.empty()) ++g_datadrawings;
    ink colour;
    if (erasings > 0) patches.begin(f);
    for (std::size_t i = seen.size(); i-- > 0;) {
        const step& s = seen[i];
        if (s.look) {
            const bar_look& look = *s.look;
            if (erasings > 0 && patches.draw(look.y - BAR_REACH, look.y + BAR_REACH)) colour.forget();
            draw_parts(f, look, {s.parts, s.from, s.to ? s.to : INT32_MAX}, colour);
            continue;
        }
        patches.add(boxes[s.box]);
        if (--erasings == 0 && patches.draw(f.data.top, f.data.bottom)) colour.forget();
    }
    t_color(COLOR_FOREGROUND);
}
