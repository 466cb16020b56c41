// view/bars.cpp: drawing bars, one or many.
// Layer: view, internal to the data area.
// Called by the drawing of events.
#include "view/bars.h"

#include <algorithm>
#include <array>

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

// The parts of a bar, each a box that holds all of its pixels; one that is missing is empty. They are disjoint but for
// the label, which lies over the others, and the mark.
enum bar_part : std::uint8_t { PART_HEAD, PART_BOX, PART_REST, PART_LABEL, PART_MARK, NPARTS };
constexpr std::uint8_t ALL_PARTS = (1 << NPARTS) - 1;

struct bar_parts {
    std::array<pixel_box, NPARTS> box{};
};

// How far text rises above its baseline and falls below it, and how wide the mark may be.
struct text_room {
    int ascent, descent, widest;
};

text_room measure_text() {
    FontInfo font;
    GetFontInfo(&font);
    return {font.ascent, font.descent, font.widMax};
}

// Where the zoom leaves a bar no height its middle row is its own, so that it is one pixel high, and three as the outline
// of a selected event.
bar_parts parts_of(const view_frame& f, const bar_look& look, const text_room& text) {
    const std::int32_t top = look.y - look.half;
    const std::int32_t bottom = look.y + look.half + (f.half == 0 ? 1 : 0);
    const std::int32_t right = look.left + look.length;
    bar_parts p;
    if (look.black_key) {
        const std::int32_t mark = look.left - SHARP_LEFT;
        const std::int32_t baseline = look.y + SHARP_BASELINE;
        p.box[PART_MARK] = {mark, baseline - text.ascent, mark + text.widest, baseline + text.descent};
    }
    if (!f.labels) {
        p.box[PART_HEAD] = {look.left, top, right, bottom};
        return p;
    }
    p.box[PART_HEAD] = {look.left, top, look.left + HEAD, bottom};
    const std::int32_t label = look.left + LABEL_LEFT;
    const std::int32_t baseline = look.y + LABEL_BASELINE;
    p.box[PART_LABEL] = {label, baseline - text.ascent, label + look.label_width, baseline + text.descent};
    if (look.length <= HEAD + 1) return p;
    const std::int32_t box_right = look.left + HEAD + look.label_width + 2;
    p.box[PART_BOX] = {look.left + HEAD, top, std::min(box_right, right), bottom};
    if (box_right <= right) p.box[PART_REST] = {box_right, top, right, bottom};
    return p;
}

// Selected events are outlines, others solid.
void fill(const bar_look& look, const pixel_box& box) {
    if (look.selected)
        t_framerect(box.left, box.top, box.right, box.bottom);
    else
        t_paintrect(box.left, box.top, box.right, box.bottom);
}

void draw_label(const view_frame& f, const bar_look& look) {
    char label[VALUE_SIZE];
    const int length = brisolan_labeltext(f.set.labelnotes != 0, look.label, label);
    MoveTo(look.left + LABEL_LEFT, look.y + LABEL_BASELINE);
    DrawText(label, 0, length);
}

// Draws the wanted ones of the parts, a bit each; the colour is left as the last one needed it.
void draw_parts(const view_frame& f, const bar_look& look, const bar_parts& p, std::uint8_t wanted) {
    const auto wants = [&](bar_part part) {
        return (wanted >> part & 1) != 0 && p.box[part].left < p.box[part].right;
    };
    if (wants(PART_HEAD) || wants(PART_REST)) {
        if (f.set.colorparam == PARAM_TRACK)
            brisolan_trackcolor(look.track - 1);
        else
            t_color(COLOR_FOREGROUND);
        if (wants(PART_HEAD)) fill(look, p.box[PART_HEAD]);
        if (wants(PART_REST)) fill(look, p.box[PART_REST]);
    }
    if (wants(PART_BOX)) {
        t_color(COLOR_GRID);
        fill(look, p.box[PART_BOX]);
    }
    if (!wants(PART_LABEL) && !wants(PART_MARK)) return;
    t_color(COLOR_FOREGROUND);
    if (wants(PART_LABEL)) draw_label(f, look);
    if (wants(PART_MARK)) t_drawstring("#", look.left - SHARP_LEFT, look.y + SHARP_BASELINE);
}

// The parts that are not hidden by what is drawn later, a bit each.
std::uint8_t seen_parts(const bar_parts& p, const cover_map& cover) {
    unsigned seen = 0;
    for (unsigned part = 0; part < NPARTS; ++part) {
        if (p.box[part].left < p.box[part].right && !cover.hides(p.box[part])) seen |= 1u << part;
    }
    return static_cast<std::uint8_t>(seen);
}

// What the bar sets for certain: its solid parts, or the rows of its outlines; text is left out.
void cover_bar(const bar_look& look, const bar_parts& p, cover_map* cover) {
    const pixel_box& head = p.box[PART_HEAD];
    const std::int32_t right = std::max({head.right, p.box[PART_BOX].right, p.box[PART_REST].right});
    if (!look.selected) {
        cover->add({head.left, head.top, right, head.bottom});
        return;
    }
    cover->add({head.left, head.top, right, head.top + 1});
    cover->add({head.left, head.bottom - 1, right, head.bottom});
}

} // namespace

void brisolan_beginbars() {
    t_textface(FACE_PLAIN);
    TextMode(srcOr);
}

void brisolan_drawbar(const view_frame& f, const bar_look& look) {
    draw_parts(f, look, parts_of(f, look, measure_text()), ALL_PARTS);
    t_color(COLOR_FOREGROUND);
}

void brisolan_drawbars(const view_frame& f, const std::vector<bar_look>& looks, cover_map* cover) {
    struct seen_bar {
        std::uint32_t at;
        std::uint8_t parts;
    };
    static std::vector<seen_bar> seen; // main level; kept for its storage
    const text_room text = measure_text();
    seen.clear();
    cover->begin(f.data);
    for (std::size_t i = looks.size(); i-- > 0;) {
        const bar_parts p = parts_of(f, looks[i], text);
        const std::uint8_t parts = seen_parts(p, *cover);
        if (!parts) continue;
        cover_bar(looks[i], p, cover);
        seen.push_back({static_cast<std::uint32_t>(i), parts});
    }
    for (std::size_t i = seen.size(); i-- > 0;) {
        const bar_look& look = looks[seen[i].at];
        draw_parts(f, look, parts_of(f, look, text), seen[i].parts);
    }
    t_color(COLOR_FOREGROUND);
}
