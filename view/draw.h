// view/draw.h: small drawing operations over the toolbox: plain coordinates and null-terminated strings.
// Layer: view, its lowest; leans on the toolbox and the class's pictures.
// Called by everything that draws in the editor window.
//
// All coordinates are pixels of the current port, rectangles are left, top, right, bottom. Strings are Latin-1 and at most
// 255 characters long; what is longer is cut there.
#pragma once

#include <cstdint>

#include "core/instance.h"
#include "host/toolbox.h"

// The editor's one font, and its faces.
constexpr int TEXT_FONT = 3;
constexpr int TEXT_SIZE = 9;
constexpr int FACE_PLAIN = kFacePlain;
constexpr int FACE_BOLD = kFaceBold;
constexpr int FACE_UNDERLINE = kFaceUnderline;

// Indices of the host's palette.
constexpr int COLOR_HIDDEN = 0;       // the face of a hidden track's button
constexpr int COLOR_FOREGROUND = 1;   // text, rulers
constexpr int COLOR_GRID = 22;        // grid lines, label boxes, the face of a shown track's button
constexpr int COLOR_INTERVAL = 25;    // grid lines on a multiple of the interval
constexpr int COLOR_HIDDEN_TEXT = 26; // the number of a hidden track's button
constexpr int COLOR_NEUTRAL = 27; // the line of a shown track's button when bars are not coloured by track

// The strips at the window's right and bottom that the scroll bars take, in pixels.
constexpr int SCROLLBAR = 15;
constexpr int BOTTOM_MARGIN = 30; // scroll bar and track buttons: the data area ends above

// Picture table indices.
enum picture_index : int {
    PIC_TOOLS = 0,
    PIC_TIME = 1,  // in front of the tracked Time
    PIC_VALUE = 2, // in front of the tracked value
    PIC_ZOOM = 3,
    PIC_ROLES = 4 // and on, by role
};

// A line with the current pen, both ends included. [main]
void t_drawline(int from_h, int from_v, int to_h, int to_v);
// Frame, background fill and pen fill of a rectangle. [main]
void t_framerect(int left, int top, int right, int bottom);
void t_eraserect(int left, int top, int right, int bottom);
void t_paintrect(int left, int top, int right, int bottom);
// Darkens the rectangle to mid grey where it is lighter; again changes nothing more. The foreground colour comes back and
// the pen is normal afterwards. [main]
void t_invertrect(int left, int top, int right, int bottom);
// The same with dark grey: a pressed button. [main]
void t_darkenrect(const Rect& r);

// Clips to the rectangle; the clip before is lost. [main]
void t_clipit(int left, int top, int right, int bottom);
// Clips to the rectangle and gives the clip before, which the caller hands to t_restoreclip exactly once. [main]
RgnHandle t_cliprect(int left, int top, int right, int bottom);
// A copy of the current clip, for exactly one t_restoreclip. [main]
RgnHandle t_getclip();
// Makes `saved` the clip again and disposes of it. [main]
void t_restoreclip(RgnHandle saved);

// Foreground by host palette index. [main]
void t_color(int index);
// Font, face and size of the text drawn and measured from now on. [main]
void t_textmode(int font, int face, int size);
// The editor's font in this face. [main]
void t_textface(int face);

// Widths in pixels, in the current face. [main]
int t_charwidth(int character);
int t_stringwidth(const char* text);
int t_numwidth(std::int32_t number);
// Text with the left end of its baseline at (h, v). [main]
void t_drawstring(const char* text, int h, int v);
void t_drawlong(std::int32_t number, int h, int v);

// Exchanges the system font's family and size with the given ones: twice with the same variables restores it. [main]
void t_setsysfont(std::int16_t* family, std::int16_t* size);

// Draws picture `index` of the class at its own size with its top left corner at (left, top); an index outside the table,
// or a picture that is missing, draws nothing. [main]
void brisolan_drawpic(brisolan* x, int index, int left, int top);

// Clips to the window without the strips of its scroll bars; to the whole window. [main]
void brisolan_normalclip(brisolan* x);
void brisolan_unclip(brisolan* x);
