// view/draw.cpp: small drawing operations over the toolbox.
// Layer: view, its lowest.
// Called by everything that draws in the editor window.
#include "view/draw.h"

#include <cstdio>

#include "core/class.h"

namespace {

constexpr std::uint16_t MID_GREY = 32768;
constexpr std::uint16_t DARK_GREY = 28000;

// Room for a 32-bit number with its null.
constexpr std::size_t NUMBER_SIZE = 12;

struct pascal_string {
    unsigned char bytes[256];
    explicit pascal_string(const char* text) { host_ctopcpy(bytes, text); }
};

Rect rect_of(int left, int top, int right, int bottom) {
    Rect r;
    SetRect(&r, left, top, right, bottom);
    return r;
}

void shade(const Rect& r, std::uint16_t level) {
    RGBColor before{};
    GetForeColor(&before);
    const RGBColor grey{level, level, level};
    PenMode(adMin);
    RGBForeColor(&grey);
    PaintRect(&r);
    RGBForeColor(&before);
    PenNormal();
}

void format_number(char (&out)[NUMBER_SIZE], std::int32_t number) {
    std::snprintf(out, sizeof out, "%ld", static_cast<long>(number));
}

} // namespace

void t_drawline(int from_h, int from_v, int to_h, int to_v) {
    MoveTo(from_h, from_v);
    LineTo(to_h, to_v);
}

void t_framerect(int left, int top, int right, int bottom) {
    const Rect r = rect_of(left, top, right, bottom);
    FrameRect(&r);
}

void t_eraserect(int left, int top, int right, int bottom) {
    const Rect r = rect_of(left, top, right, bottom);
    EraseRect(&r);
}

void t_paintrect(int left, int top, int right, int bottom) {
    const Rect r = rect_of(left, top, right, bottom);
    PaintRect(&r);
}

// Kept: it darkens rather than inverts, so that shading twice is shading once.
void t_invertrect(int left, int top, int right, int bottom) {
    shade(rect_of(left, top, right, bottom), MID_GREY);
}

void t_darkenrect(const Rect& r) {
    shade(r, DARK_GREY);
}

void t_clipit(int left, int top, int right, int bottom) {
    const Rect r = rect_of(left, top, right, bottom);
    ClipRect(&r);
}

RgnHandle t_cliprect(int left, int top, int right, int bottom) {
    RgnHandle saved = t_getclip();
    t_clipit(left, top, right, bottom);
    return saved;
}

RgnHandle t_getclip() {
    RgnHandle saved = NewRgn();
    GetClip(saved);
    return saved;
}

void t_restoreclip(RgnHandle saved) {
    SetClip(saved);
    DisposeRgn(saved);
}

void t_color(int index) {
    host_forecolor(index, 1);
}

void t_textmode(int font, int face, int size) {
    TextFont(font);
    TextFace(face);
    TextSize(size);
}

void t_textface(int face) {
    t_textmode(TEXT_FONT, face, TEXT_SIZE);
}

int t_charwidth(int character) {
    return CharWidth(character);
}

int t_stringwidth(const char* text) {
    return StringWidth(pascal_string(text).bytes);
}

int t_numwidth(std::int32_t number) {
    char text[NUMBER_SIZE];
    format_number(text, number);
    return t_stringwidth(text);
}

void t_drawstring(const char* text, int h, int v) {
    const pascal_string string(text);
    MoveTo(h, v);
    DrawString(string.bytes);
}

void t_drawlong(std::int32_t number, int h, int v) {
    char text[NUMBER_SIZE];
    format_number(text, number);
    t_drawstring(text, h, v);
}

void t_setsysfont(std::int16_t* family, std::int16_t* size) {
    const std::int16_t old_family = LMGetSysFontFam();
    const std::int16_t old_size = LMGetSysFontSize();
    LMSetSysFontFam(*family);
    LMSetSysFontSize(*size);
    LMSetLastSPExtra(-1);
    *family = old_family;
    *size = old_size;
}

void brisolan_drawpic(brisolan*, int index, int left, int top) {
    if (index < 0 || index >= NPICTURES) return;
    const PicHandle picture = em_pic[static_cast<std::size_t>(index)];
    if (!picture) return;
    Rect bounds;
    QDGetPictureBounds(picture, &bounds);
    OffsetRect(&bounds, left - bounds.left, top - bounds.top);
    DrawPicture(picture, &bounds);
}

void brisolan_normalclip(brisolan* x) {
    t_clipit(0, 0, x->window->width - SCROLLBAR, x->window->height - SCROLLBAR);
}

void brisolan_unclip(brisolan* x) {
    t_clipit(0, 0, x->window->width, x->window->height);
}
