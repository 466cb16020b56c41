// The rasteriser's lowest floor: fills a rectangle of the bitmap through clip, pattern and transfer mode.
// Toolbox, internal: leans on host/toolbox.h. Pixels are written here and, those of glyphs, in text.cpp; nowhere else.
// Called by the drawing verbs.
#pragma once

#include "host/toolbox.h"

// What a fill leaves. In the copy mode set bits of the pattern give fore and clear ones back.
struct raster_ink {
    uint32_t fore = 0xFF000000u;
    uint32_t back = 0xFFFFFFFFu;
    int mode = patCopy;
    bool solid = true; // the pattern is all set bits
    Pattern pattern{{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}};
};

#ifndef NDEBUG
// The spans that were drawn, one for each row of a rectangle or glyph, counted in debug builds for the tests. Written at
// main level by whoever writes pixels; never set back.
inline uint64_t raster_spans = 0;
#endif

// So many spans are drawn. Nothing in a release build. [main]
inline void raster_countspans([[maybe_unused]] int spans) {
#ifndef NDEBUG
    raster_spans += static_cast<uint64_t>(spans);
#endif
}

// Ink of one colour in the copy mode. [main]
inline raster_ink raster_plain(uint32_t colour) {
    raster_ink ink;
    ink.fore = colour;
    return ink;
}

// The colour that ink leaves where `was` was, for a set and for a clear bit of its pattern. [main]
uint32_t raster_blend(const raster_ink& ink, bool set, uint32_t was);

// Draws the one-pixel outline of r, which is not empty, where clip and ink are simple; false, and nothing is drawn, where
// they are not. [main]
bool raster_outline(GrafPort& port, const Rect& r, const raster_ink& ink);

// Fills the pixels of r that the port's drawable region holds, through clip, pattern and mode whatever they are; the faster
// routines beside it are for simple ones. [main]
void raster_rect(GrafPort& port, const Rect& r, const raster_ink& ink);
