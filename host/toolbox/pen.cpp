// Pen, colours and patterns of the current port: state only, nothing is drawn here.
// Toolbox: implements the pen calls of host/toolbox.h.
// Called by the view and by the kernel's host_forecolor.
#include "host/toolbox/pin.h"
#include "host/toolbox/port.h"

#include <algorithm>

namespace {

// The system's pattern list, number 0, from black to white in even steps of grey.
constexpr Pattern SYSTEM_PATTERNS[] = {
    {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}}, // 1 black
    {{0xDD, 0xFF, 0x77, 0xFF, 0xDD, 0xFF, 0x77, 0xFF}}, // 2 dark grey, seven eighths
    {{0xDD, 0x77, 0xDD, 0x77, 0xDD, 0x77, 0xDD, 0x77}}, // 3 three quarters
    {{0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55}}, // 4 grey, one half
    {{0x88, 0x22, 0x88, 0x22, 0x88, 0x22, 0x88, 0x22}}, // 5 light grey, one quarter
    {{0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}}, // 6 white
};

} // namespace

void MoveTo(int h, int v) {
    if (toolbox_thePort) SetPt(&toolbox_thePort->pen, h, v);
}

void GetPen(Point* pt) {
    if (toolbox_thePort) *pt = toolbox_thePort->pen;
}

void PenSize(int width, int height) {
    if (!toolbox_thePort) return;
    toolbox_thePort->pen_width = pin16(width);
    toolbox_thePort->pen_height = pin16(height);
}

void PenMode(int mode) {
    if (toolbox_thePort) toolbox_thePort->pen_ink.mode = mode;
}

void PenPat(const Pattern* pattern) {
    if (!toolbox_thePort) return;
    raster_ink& ink = toolbox_thePort->pen_ink;
    ink.pattern = *pattern;
    ink.solid =
        std::all_of(std::begin(pattern->pat), std::end(pattern->pat), [](uint8_t b) { return b == 0xFF; });
}

void PenNormal() {
    PenSize(1, 1);
    PenMode(patCopy);
    PenPat(&SYSTEM_PATTERNS[0]);
}

void GetForeColor(RGBColor* color) {
    if (toolbox_thePort) *color = toolbox_thePort->fore;
}

void GetBackColor(RGBColor* color) {
    if (toolbox_thePort) *color = toolbox_thePort->back;
}

void RGBForeColor(const RGBColor* color) {
    if (!toolbox_thePort) return;
    toolbox_thePort->fore = *color;
    toolbox_thePort->pen_ink.fore = port_pixel(*color);
}

void RGBBackColor(const RGBColor* color) {
    if (!toolbox_thePort) return;
    toolbox_thePort->back = *color;
    toolbox_thePort->pen_ink.back = port_pixel(*color);
}

void GetIndPattern(Pattern* pattern, int list, int index) {
    if (list == 0 && index >= 1 && index <= static_cast<int>(std::size(SYSTEM_PATTERNS))) {
        *pattern = SYSTEM_PATTERNS[index - 1];
    }
}
