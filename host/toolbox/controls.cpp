// Scroll bars: their parts, their look, and following a press.
// Toolbox: implements the controls of host/toolbox.h and toolbox_host.h.
// Called by the view's scroll handling and by the kernel's windows.
#include "host/toolbox/control.h"

#include "host/toolbox/pin.h"
#include "host/toolbox/platform.h"
#include "host/toolbox/port.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int ARROW_LENGTH = 16; // along the bar, at each end
constexpr int THUMB_LENGTH = 16; // where nothing is known of the content in view; never shorter
constexpr int THUMB_SLOP =
    32; // a dragged thumb jumps back when the pointer strays farther than this from the bar

constexpr uint32_t EDGE = 0xFFA0A9B4u;
constexpr uint32_t TROUGH = 0xFFECEFF3u;
constexpr uint32_t FACE = 0xFFF4F5F7u;
constexpr uint32_t THUMB = 0xFFC3CBD7u;
constexpr uint32_t PRESSED = 0xFF8D96A1u;
constexpr uint32_t SIGN = 0xFF404850u;
constexpr uint32_t SIGN_OFF = 0xFFC3CBD7u;

bool vertical(const toolbox_control& c) {
    return c.bounds.bottom - c.bounds.top > c.bounds.right - c.bounds.left;
}

bool active(const toolbox_control& c) {
    return c.visible && !c.disabled && c.maximum > 0;
}

// Where things lie along the bar, in pixels from its start.
struct layout {
    int length = 0, thickness = 0;
    int arrow = 0;               // length of each arrow
    int thumb = 0, thumb_at = 0; // thumb 0: there is no room, or nothing to scroll
    int travel = 0;              // pixels that the thumb can move
};

layout lay_out(const toolbox_control& c) {
    layout l;
    int width = std::max(0, c.bounds.right - c.bounds.left),
        height = std::max(0, c.bounds.bottom - c.bounds.top);
    l.length = std::max(width, height);
    l.thickness = std::min(width, height);
    l.arrow = std::min(ARROW_LENGTH, l.length / 2);
    int trough = l.length - 2 * l.arrow;
    l.thumb_at = l.arrow + trough / 2;
    if (!active(c) || trough <= THUMB_LENGTH) return l;
    int64_t share = c.viewsize > 0 ? int64_t{trough} * c.viewsize / (int64_t{c.viewsize} + c.maximum) : 0;
    l.thumb = static_cast<int>(std::max<int64_t>(share, THUMB_LENGTH));
    l.travel = trough - l.thumb;
    l.thumb_at = l.arrow + static_cast<int>(int64_t{l.travel} * c.value / c.maximum);
    return l;
}

int along(const toolbox_control& c, Point pt) {
    return vertical(c) ? pt.v - c.bounds.top : pt.h - c.bounds.left;
}

int16_t part_at(const toolbox_control& c, Point pt) {
    if (!active(c) || !PtInRect(pt, &c.bounds)) return kControlNoPart;
    layout l = lay_out(c);
    int at = along(c, pt);
    if (at < l.arrow) return kControlUpButtonPart;
    if (at >= l.length - l.arrow) return kControlDownButtonPart;
    if (at < l.thumb_at) return kControlPageUpPart;
    return at < l.thumb_at + l.thumb ? kControlIndicatorPart : kControlPageDownPart;
}

// Draws one bar: everything is given along and across, and turned here.
struct painter {
    GrafPort& port;
    const toolbox_control& c;
    bool down = vertical(c);

    void fill(int from, int to, int across_from, int across_to, uint32_t colour) const {
        int h = c.bounds.left, v = c.bounds.top;
        Rect r;
        if (down)
            SetRect(&r, h + across_from, v + from, h + across_to, v + to);
        else
            SetRect(&r, h + from, v + across_from, h + to, v + across_to);
        raster_rect(port, r, raster_plain(colour));
    }

    // A triangle seven wide and four deep in the middle of from..to, its tip toward the start or the end.
    void triangle(int from, int to, int thickness, bool toward_start, uint32_t colour) const {
        int first = (from + to) / 2 - 2, middle = (thickness + 1) / 2;
        for (int i = 0; i < 4; i++) {
            int reach = toward_start ? i : 3 - i;
            fill(first + i, first + i + 1, middle - reach, middle + reach + 1, colour);
        }
    }
};

void paint(const painter& p, const layout& l) {
    const toolbox_control& c = p.c;
    bool on = active(c);
    uint32_t sign = on ? SIGN : SIGN_OFF;
    int first_end = l.arrow, last_start = l.length - l.arrow;
    auto face = [&](int16_t part) { return c.pressed == part ? PRESSED : FACE; };
    auto trough = [&](int16_t part) { return c.pressed == part ? THUMB : TROUGH; };
    p.fill(first_end, l.thumb_at, 1, l.thickness, on ? trough(kControlPageUpPart) : FACE);
    p.fill(l.thumb_at, last_start, 1, l.thickness, on ? trough(kControlPageDownPart) : FACE);
    p.fill(0, first_end, 1, l.thickness, face(kControlUpButtonPart));
    p.fill(last_start, l.length, 1, l.thickness, face(kControlDownButtonPart));
    p.triangle(0, first_end, l.thickness, true, sign);
    p.triangle(last_start, l.length, l.thickness, false, sign);
    p.fill(first_end - 1, first_end, 1, l.thickness, EDGE);
    p.fill(last_start, last_start + 1, 1, l.thickness, EDGE);
    if (l.thumb > 0) {
        int from = l.thumb_at, to = l.thumb_at + l.thumb;
        p.fill(from, to, 2, l.thickness - 1, SIGN);
        p.fill(from + 1, to - 1, 3, l.thickness - 2, c.pressed == kControlIndicatorPart ? PRESSED : THUMB);
    }
    p.fill(0, l.length, 0, 1, EDGE);
}

// Sets the part shown as pressed.
void press(toolbox_control& c, int16_t part) {
    if (std::exchange(c.pressed, part) != part) Draw1Control(&c);
}

// One turn of the press: whether the button is still down, and where the pointer is, in the port's coordinates.
bool next_turn(const toolbox_control& c, Point* where) {
    const toolbox_platform& p = platform_hooks();
    if (!p.track) return false;
    Point global{pin16(where->v + c.port->origin.v), pin16(where->h + c.port->origin.h)};
    bool down = p.track(p.user, &global);
    SetPt(where, global.h - c.port->origin.h, global.v - c.port->origin.v);
    return down;
}

int16_t track_thumb(toolbox_control& c, Point pt) {
    const int16_t value_before = c.value;
    layout l = lay_out(c);
    const int grip = along(c, pt) - l.thumb_at;
    Rect near = c.bounds;
    InsetRect(&near, -THUMB_SLOP, -THUMB_SLOP);
    bool down = true;
    do {
        down = next_turn(c, &pt);
        int value = value_before;
        if (PtInRect(pt, &near) && l.travel > 0) {
            int64_t moved = std::clamp(along(c, pt) - grip - l.arrow, 0, l.travel);
            // The thumb left where it was gives the value that it had, not the nearest that a pixel tells.
            bool unmoved = l.arrow + moved == l.thumb_at;
            if (!unmoved) value = static_cast<int>((moved * c.maximum + l.travel / 2) / l.travel);
        }
        SetControlValue(&c, value);
    } while (down);
    return PtInRect(pt, &near) ? kControlIndicatorPart : kControlNoPart;
}

int16_t track_part(toolbox_control& c, Point pt, int16_t part, ControlActionUPP action) {
    if (action) action(&c, part);
    while (next_turn(c, &pt)) {
        bool inside = part_at(c, pt) == part;
        press(c, inside ? part : kControlNoPart);
        if (inside && action) action(&c, part);
    }
    return part_at(c, pt) == part ? part : kControlNoPart;
}

} // namespace

ControlActionUPP NewControlActionUPP(ControlActionProcPtr routine) {
    return routine;
}

int16_t FindControl(Point pt, GrafPtr port, ControlHandle* control) {
    *control = nullptr;
    if (!port) return kControlNoPart;
    for (const auto& c : port->controls) {
        if (!PtInRect(pt, &c->bounds)) continue;
        *control = c.get();
        return part_at(*c, pt);
    }
    return kControlNoPart;
}

int16_t TrackControl(ControlHandle control, Point pt, ControlActionUPP action) {
    if (!control) return kControlNoPart;
    int16_t part = part_at(*control, pt);
    if (part == kControlNoPart) return part;
    GrafPtr before = toolbox_thePort;
    press(*control, part);
    int16_t released =
        part == kControlIndicatorPart ? track_thumb(*control, pt) : track_part(*control, pt, part, action);
    press(*control, kControlNoPart);
    toolbox_thePort = before;
    return released;
}

int16_t GetControlValue(ControlHandle control) {
    return control ? control->value : int16_t{0};
}
int16_t GetControlMaximum(ControlHandle control) {
    return control ? control->maximum : int16_t{0};
}

void SetControlValue(ControlHandle control, int value) {
    if (!control) return;
    int16_t held = pin16(std::clamp(value, 0, int{control->maximum}));
    if (std::exchange(control->value, held) != held) Draw1Control(control);
}

void SetControlMaximum(ControlHandle control, int maximum) {
    if (!control) return;
    int16_t held = pin16(std::max(maximum, 0));
    if (std::exchange(control->maximum, held) == held) return;
    control->value = std::min(control->value, held);
    Draw1Control(control);
}

void ShowControl(ControlHandle control) {
    if (control && !std::exchange(control->visible, true)) Draw1Control(control);
}

void HideControl(ControlHandle control) {
    if (!control || !std::exchange(control->visible, false)) return;
    InvalWindowRect(control->port, &control->bounds);
}

void HiliteControl(ControlHandle control, int state) {
    bool off = state == 255;
    if (control && std::exchange(control->disabled, off) != off) Draw1Control(control);
}

void Draw1Control(ControlHandle control) {
    if (!control || !control->visible) return;
    // A control is drawn whole, whatever the content's clip is at the moment.
    GrafPort& port = *control->port;
    port_lay_out(port);
    toolbox_region clip = std::exchange(port.clip, region_of(control->bounds));
    port_reclip(port);
    paint({port, *control}, lay_out(*control));
    port.clip = std::move(clip);
    port_reclip(port);
}

Rect* GetControlBounds(ControlHandle control, Rect* r) {
    *r = control ? control->bounds : Rect{0, 0, 0, 0};
    return r;
}

ControlHandle toolbox_control_new(GrafPtr port, const Rect* bounds) {
    auto control = std::make_unique<toolbox_control>();
    control->port = port;
    control->bounds = *bounds;
    port->controls.push_back(std::move(control));
    return port->controls.back().get();
}

void toolbox_control_free(ControlHandle control) {
    if (!control) return;
    std::erase_if(control->port->controls, [control](const auto& c) { return c.get() == control; });
}

void toolbox_control_setbounds(ControlHandle control, const Rect* bounds) {
    control->bounds = *bounds;
}

void toolbox_control_setviewsize(ControlHandle control, int viewsize) {
    control->viewsize = std::max(viewsize, 0);
}

bool toolbox_control_isvertical(ControlHandle control) {
    return vertical(*control);
}

void toolbox_drawcontrols(GrafPtr port) {
    for (const auto& c : port->controls) Draw1Control(c.get());
}
