// view/index.cpp: what the view remembers of the events in sight.
// Layer: view, internal to the data area.
// Called by the drawing, the erasing and the hit test of events.
#include "view/index.h"

#include <algorithm>

#include "view/events.h"

namespace {

constexpr int BAND_SHIFT = 3; // 8 rows
constexpr int MARGIN = 32;    // rows beyond the data area that have bands of their own
constexpr std::size_t MANY_LOOSE = 64;

// The view was moved or its settings changed while erasings and drawings waited: all of it is being drawn anew, so
// nothing of them counts any more but that whoever is in sight may be marked.
void drop_gathered(brisolan* x, view_index& ix) {
    ix.gathering = false;
    ix.log.clear();
    ix.nmarked = 0;
    ix.far_erased.clear();
    ix.drawings.clear();
    for (event* e : brisolan_each(x)) e->needsdraw = std::uint8_t{1};
}

} // namespace

int placed_bands::band_of(int v) const {
    return std::clamp((v - top) >> BAND_SHIFT, 0, bands - 1);
}

int placed_bands::column_of(int h) const {
    return h < left ? 1 : std::min((h - left) / COLUMN + 1, columns - 1);
}

inline std::size_t placed_bands::cell_of(const bar_box& box) const {
    const bool wide = box.right - box.left > COLUMN || box.left < left;
    return static_cast<std::size_t>(band_of(box.top) * columns + (wide ? 0 : column_of(box.left)));
}

// The cell of each entry first, so that it is known where each cell begins; within a cell they stay in their order.
void placed_bands::make(const pile<placed_event>& entries, const view_frame& f) {
    top = f.data.top - MARGIN;
    left = f.data.left;
    bands = (std::max(f.data.bottom + MARGIN - top, 1) >> BAND_SHIFT) + 1;
    columns = std::max(f.set.width - left, 0) / COLUMN + 2;
    highest = std::max(2 * (f.half + 1), f.labels ? 2 * LABEL_REACH : SHARP_REACH_ABOVE + SHARP_REACH_BELOW);
    first.assign(static_cast<std::size_t>(bands * columns) + 1, 0);
    const std::size_t n = entries.size();
    if (cell_by_id.size() < n) cell_by_id.resize(n);
    for (std::size_t id = 0; id < n; ++id) {
        const std::size_t cell = cell_of(brisolan_touchedbox(f, entries[id].look));
        cell_by_id[id] = static_cast<std::uint32_t>(cell);
        ++first[cell + 1];
    }
    for (std::size_t c = 1; c < first.size(); ++c) first[c] += first[c - 1];
    next = first;
    if (items.size() < n) items.resize(n);
    for (std::size_t id = 0; id < n; ++id)
        items[next[cell_by_id[id]]++] = {brisolan_touchedbox(f, entries[id].look),
                                         static_cast<std::uint32_t>(id)};
    made = true;
}

view_index& brisolan_index(brisolan* x) {
    if (!x->index) x->index = new view_index;
    view_index& ix = *x->index;
    const frame_settings settings = brisolan_framesettings(x);
    if (settings == ix.frame.set) {
        if (!ix.frame.widths) ix.frame.widths = brisolan_commonwidths(settings.labelnotes != 0);
        return ix;
    }
    if (ix.gathering) drop_gathered(x, ix);
    ix.frame = brisolan_frame(settings);
    ix.placed = false;
    ix.entries.clear();
    return ix;
}

bool brisolan_isplaced(const brisolan* x, const view_index& ix) {
    return ix.placed && ix.relinked == x->relinked && ix.reshaped == x->reshaped && ix.nevents == x->nevents;
}

std::int64_t brisolan_entryof(const view_index& ix, const event* e) {
    const std::int64_t id = std::int64_t{e->place} - 1;
    if (id < 0 || id >= static_cast<std::int64_t>(ix.entries.size())) return -1;
    return ix.entries[static_cast<std::size_t>(id)].e == e ? id : -1;
}

placed_event* brisolan_drawingof(view_index& ix, const event* e, std::uint32_t place) {
    if (place == 0 || place > ix.drawings.size()) return nullptr;
    placed_event* d = &ix.drawings[place - 1];
    return d->e == e ? d : nullptr;
}

void brisolan_beginplaces(const brisolan* x, view_index& ix) {
    ix.relinked = x->relinked;
    ix.reshaped = x->reshaped;
    ix.nevents = x->nevents;
    brisolan_clearplaces(ix);
}

void brisolan_clearplaces(view_index& ix) {
    ix.bands.clear();
    ix.loose.clear();
    ix.dirty.clear();
    ix.stale.clear();
    ix.strayed = false;
    ix.erased = 0;
    ix.placed = true;
}

void brisolan_makebands(view_index& ix) {
    if (ix.bands.is_made() && ix.loose.size() <= MANY_LOOSE) return;
    for (const std::uint32_t id : ix.loose) ix.entries[id].loose = false;
    ix.loose.clear();
    ix.bands.make(ix.entries, ix.frame);
}

void brisolan_marktouched(view_index& ix, const bar_box& erased) {
    brisolan_overlapping(ix, erased, [&ix](std::uint32_t id) {
        event* e = ix.entries[id].e;
        if (e->needsdraw) return;
        e->needsdraw = std::uint8_t{1};
        ix.dirty.add(id);
    });
}

void brisolan_addwanted(view_index& ix) {
    for (std::size_t i = ix.wanted.size(); i-- > 0;) ix.pass.add(ix.entries[ix.wanted[i]].look);
}

void brisolan_drawwanted(view_index& ix) {
    ix.pass.begin(ix.frame);
    brisolan_addwanted(ix);
    ix.pass.draw(ix.frame);
}

void brisolan_entrymoved(view_index& ix, const event* e, const bar_look& look) {
    const std::int64_t id = brisolan_entryof(ix, e);
    if (id < 0) {
        ix.placed = false; // its rank in the list is not known
        return;
    }
    placed_event& p = ix.entries[static_cast<std::size_t>(id)];
    const bool moved =
        brisolan_touchedbox(ix.frame, look) != brisolan_touchedbox(ix.frame, p.look) || p.look.y != look.y;
    p.look = look;
    if (!moved) return;
    if (p.loose || !ix.bands.is_made()) return;
    p.loose = true;
    ix.loose.push_back(static_cast<std::uint32_t>(id));
}
