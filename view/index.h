// view/index.h: what the view remembers of the events in sight: where each was placed, and what was erased and drawn of
// them since the screen was last brought up to date.
// Layer: view, internal to the data area.
// Called by the drawing, the erasing and the hit test of events; invisible in what they draw.
//
// The memory has two states.
//   - Placed: every event whose bar reaches into the window stands in `entries` in list order, with the bar's look.
//     Holds as long as the frame and the three counters are those of then: list and values are changed in
//     between only through brisolan_eraseit, whose events are stale until they are drawn: nobody asks for their looks.
//     Erasing and drawing one event happen at once.
//   - Gathering: erasings, drawings, and where the marked ones are drawn are put down in `log`, in order, with all that is
//     needed to carry them out later; no event is marked. Ends in settling, which walks the sequence once, finds who was touched, and draws what shows;
//     without the walk where the drawings are all events that there are.
// An erasing is carried out at once while the memory is placed and few have been; otherwise it begins the gathering.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/sequence.h"
#include "view/bars.h"
#include "view/frame.h"
#include "view/idset.h"
#include "view/pile.h"
#include "view/touch.h"

// An event in sight, or one whose drawing was put off. `e` may be followed as long as the memory is placed; else it is only
// ever compared, since it may be gone.
struct placed_event {
    event* e;
    bar_look look;
    // In sight: its look has changed since the bands were made.
    bool loose;
    // Put off: something erased afterwards overlapped it; drawn then and there it would not stay in sight.
    bool touched, redundant;
};

// Many placed events by rows, for finding those near a box.
class placed_bands {
public:
    void clear() { made = false; }
    bool is_made() const { return made; }
    void make(const pile<placed_event>& entries, const view_frame& f);
    // Calls found(id) for each placed event that overlaps the box.
    template <class Found> void overlapping(const bar_box& box, Found found) const;

private:
    static constexpr int COLUMN = 32; // pixels; what is wider has a cell of its own
    struct item {
        bar_box box;
        std::uint32_t id;
    };
    int band_of(int v) const;
    int column_of(int h) const;
    std::size_t cell_of(const bar_box& box) const;
    template <class Found> void in_cells(int from, int to, const bar_box& box, Found found) const;

    // Cells lie band after band. A band's first cell holds what is too wide for columns, the others what begins in each.
    bool made = false;
    int top = 0, left = 0;
    int bands = 1, columns = 1;
    int highest = 0; // no box is higher, in rows
    std::vector<item> items;
    std::vector<std::uint32_t> first;      // of each cell's items; one more for the end
    std::vector<std::uint32_t> next;       // while they are made: where the cell's next item goes
    std::vector<std::uint32_t> cell_by_id; // and the cell of each entry
};

// One step of the log: an erasing, and the drawing that came next, by its number from 1; 0 when there was none. An empty
// box erases nothing. With FAR_ERASINGS it stands for several events that were erased out of sight, of which mostly nobody
// asks anything: those of `far_erased` from `erased.left` to before `erased.right`.
struct log_step {
    bar_box erased;
    std::uint32_t drawing;
};
constexpr std::uint32_t FAR_ERASINGS = UINT32_MAX;
// With this, for drawing all that are marked by then.
constexpr std::uint32_t MARKED_DRAWN = UINT32_MAX - 1;

struct view_index {
    view_frame frame;

    // Placed.
    bool placed = false;
    std::uint32_t relinked = 0, reshaped = 0;
    std::int32_t nevents = 0;
    pile<placed_event> entries;
    placed_bands bands;
    std::vector<std::uint32_t> loose; // entries whose box has changed since the bands were made
    id_set dirty;                     // entries that may be marked
    id_set stale;                     // those of them that were erased: their looks are of then
    bool strayed = false;             // a marked event may have come into sight that has no entry
    int erased = 0;                   // at once, since the last redraw

    // Gathering.
    bool gathering = false;
    pile<log_step> log;
    pile<bar_values> far_erased;
    pile<placed_event> drawings;
    std::uint32_t nmarked = 0; // how many steps of the log draw the marked ones
    // Whether every event so far was erased and drawn once, as it is. As long as that is so, the log is not written: it
    // would tell nothing that the drawings do not. Whether that was in the list's order, too; and which is next then.
    bool whole = false;
    bool in_order = false;
    const event* expected = nullptr;

    // Kept for their storage.
    touch_map touches;
    bar_pass pass;
    pile<std::uint32_t> wanted;       // entries to be drawn, in order
    pile<std::uint32_t> ranks;        // of the entries among the drawings
    std::vector<std::uint32_t> drawn; // the entry of each drawing
    std::vector<bar_outlook> outlooks;
};

// Whether the event, of which this is the look, is drawn at all. [main]
inline bool brisolan_shows(const brisolan* x, const view_index& ix, const event& e, const bar_look& look) {
    return brisolan_inspan(ix.frame, look) && brisolan_trackisshown(x, e.track);
}
// The instance's memory, made at the first use, its frame brought up to date. [main]
view_index& brisolan_index(brisolan* x);
// Whether the memory is placed still. [main]
bool brisolan_isplaced(const brisolan* x, const view_index& ix);
// The entry of an event, by its id; -1 when it has none. The memory must be placed. [main]
std::int64_t brisolan_entryof(const view_index& ix, const event* e);
// The drawing that waits for an event whose `place` this is; null when there is none. [main]
placed_event* brisolan_drawingof(view_index& ix, const event* e, std::uint32_t place);
// The memory is placed by what follows: for the list as it is now; for the list that it was placed for last. [main]
void brisolan_beginplaces(const brisolan* x, view_index& ix);
void brisolan_clearplaces(view_index& ix);
// Places every event in sight anew and calls each(e, look, place) for those, `look` being in its entry, which is the last
// one, and `place` the event's old one. [main]
template <class Each> void brisolan_placeall(brisolan* x, view_index& ix, Each each);
// Makes sure that the bands are made and most of the entries stand in them. The memory must be placed. [main]
void brisolan_makebands(view_index& ix);
// Calls found(id) for each entry whose box overlaps this, in no order. The memory must be placed. [main]
template <class Found> void brisolan_overlapping(view_index& ix, const bar_box& box, Found found);
// Marks, in a memory that is placed, every event in sight whose box overlaps this. [main]
void brisolan_marktouched(view_index& ix, const bar_box& erased);
// The id of the entry made last. [main]
inline std::uint32_t brisolan_lastentry(const view_index& ix) {
    return static_cast<std::uint32_t>(ix.entries.size() - 1);
}
// Adds the wanted entries to the pass; draws them and nothing else, the clip being the data area. [main]
void brisolan_addwanted(view_index& ix);
void brisolan_drawwanted(view_index& ix);
// An event was drawn in this place: its entry follows. [main]
void brisolan_entrymoved(view_index& ix, const event* e, const bar_look& look);

template <class Found> void placed_bands::in_cells(int from, int to, const bar_box& box, Found found) const {
    const std::uint32_t end = first[static_cast<std::size_t>(to) + 1];
    for (std::uint32_t i = first[static_cast<std::size_t>(from)]; i < end; ++i) {
        brisolan_countstep();
        if (items[i].box.overlaps(box)) found(items[i].id);
    }
}

template <class Found> void placed_bands::overlapping(const bar_box& box, Found found) const {
    const int from = column_of(box.left - COLUMN);
    const int to = column_of(box.right);
    for (int band = band_of(box.top - highest); band <= band_of(box.bottom); ++band) {
        const int cells = band * columns;
        in_cells(cells, cells, box, found);
        in_cells(cells + from, cells + to, box, found);
    }
}

template <class Found> void brisolan_overlapping(view_index& ix, const bar_box& box, Found found) {
    brisolan_makebands(ix);
    ix.bands.overlapping(box, [&](std::uint32_t id) {
        if (!ix.entries[id].loose) found(id);
    });
    for (const std::uint32_t id : ix.loose) {
        brisolan_countstep();
        if (brisolan_touchedbox(ix.frame, ix.entries[id].look).overlaps(box)) found(id);
    }
}

template <class Each> void brisolan_placeall(brisolan* x, view_index& ix, Each each) {
    brisolan_beginplaces(x, ix);
    ix.entries.clear();
    for (event* e : brisolan_each(x)) {
        if (brisolan_isfaraway(ix.frame, *e)) continue;
        placed_event& entry = ix.entries.push();
        entry = {e, brisolan_look(ix.frame, *e), false, false, false};
        if (entry.look.left > ix.frame.set.width || entry.look.right() < ix.frame.data.left) {
            ix.entries.pop();
            continue;
        }
        const std::uint32_t place = e->place;
        const std::uint32_t now = brisolan_lastentry(ix) + 1;
        if (place != now) e->place = now; // mostly it is, and the event need not be written
        each(e, entry.look, place);
    }
}
