// The toolbox: drawing, regions, text, pictures, cursors, controls, menus, the scrap, resources and relocatable memory.
// Interface header: leans on the standard library alone; implemented by host/toolbox/.
// Called by the object's view, edit and io rooms and by the embedded host.
//
// Geometry. Coordinates lie between the pixels: pixel (h, v) is the unit square whose top left corner is the point
// (h, v). A rectangle is half-open, from its left and top up to but not including its right and bottom, and is empty when
// right <= left or bottom <= top. The pen hangs to the right of and below the pen location: a line from (10, 5) to (20, 5)
// with the 1 x 1 pen paints the eleven pixels 10..20 of row 5. A frame stays inside its rectangle. v grows downward.
//
// Rectangles are given, and stored, in the order left, top, right, bottom; points are given as (h, v), and stored as
// {v, h}. Coordinates are stored in 16 bits; calls take them as int and pin what does not fit to -32768..32767.
//
// All drawing goes to the current port, through its clip region; with no current port it does nothing. Every call of this
// header belongs to the main level: the tag [main] means the one thread that owns windows and files.
#pragma once

#include <cstdint>

// ---------------------------------------------------------------------------------------------------------------------
// Records

struct Point {
    int16_t v, h;
};

struct Rect {
    int16_t left, top, right, bottom;
};

// Each component from 0 (dark) to 65535. The screen keeps the high eight bits; the port keeps all sixteen.
struct RGBColor {
    uint16_t red, green, blue;
};

// 8 x 8 bits, top row first, the high bit leftmost. A set bit takes the foreground colour, a clear one the background.
// Patterns are aligned to the port's origin, so adjoining fills join without a seam.
struct Pattern {
    uint8_t pat[8];
};

// 68 bytes. The high bit is leftmost. mask 1 data 1 is black, mask 1 data 0 white, mask 0 shows what lies below.
struct Cursor {
    uint16_t data[16];
    uint16_t mask[16];
    Point hotSpot;
};
static_assert(sizeof(Cursor) == 68);
using CursHandle = Cursor**;

struct FontInfo {
    int16_t ascent, descent, widMax, leading;
};

struct GrafPort;       // a drawing surface: bitmap, clip region, pen, colours, text state; made by the host
struct toolbox_region; // any union of rectangles
struct toolbox_picture;
struct toolbox_control;
struct toolbox_menu;
struct toolbox_scrap;

using GrafPtr = GrafPort*;
using RgnHandle = toolbox_region*;
using PicHandle = toolbox_picture*;
using ControlHandle = toolbox_control*;
using MenuHandle = toolbox_menu*;
using ScrapRef = toolbox_scrap*;

// A relocatable block: *handle is its data, valid until the block is resized or disposed of.
using Handle = char**;

using OSStatus = int32_t; // 0 is success, errors are negative
using OSErr = int16_t;
using FlavorType = uint32_t; // four characters, the first in the high byte
using FlavorFlags = uint32_t;

// A Pascal string: its length in byte 0, then as many Latin-1 characters.
using ConstStringPtr = const unsigned char*;

// ---------------------------------------------------------------------------------------------------------------------
// Constants

constexpr OSStatus noErr = 0;
constexpr OSErr memFullErr = -108;
constexpr OSErr nilHandleErr = -109;
constexpr OSStatus noTypeErr = -102; // the scrap holds no such flavor

// Modifier bits of an event or of a click.
constexpr int cmdKey = 0x0100;
constexpr int shiftKey = 0x0200;
constexpr int alphaLock = 0x0400;
constexpr int optionKey = 0x0800;
constexpr int controlKey = 0x1000;

// Text transfer modes (TextMode) and pen transfer modes (PenMode). Any other mode acts as the copy mode.
constexpr int srcCopy = 0;
constexpr int srcOr = 1;
constexpr int srcXor = 2;
constexpr int srcBic = 3;
constexpr int patCopy = 8;
constexpr int patOr = 9;
constexpr int patXor = 10;
constexpr int patBic = 11;
// The darker of the drawn colour and the pixel, component by component; both for text and for the pen.
constexpr int adMin = 39;

// Text faces, to be added together. Italic is kept but not drawn.
constexpr int kFacePlain = 0;
constexpr int kFaceBold = 1;
constexpr int kFaceItalic = 2;
constexpr int kFaceUnderline = 4;

// Control parts as FindControl and TrackControl give them; 0 is none.
constexpr int16_t kControlNoPart = 0;
constexpr int16_t kControlUpButtonPart = 20;
constexpr int16_t kControlDownButtonPart = 21;
constexpr int16_t kControlPageUpPart = 22;
constexpr int16_t kControlPageDownPart = 23;
constexpr int16_t kControlIndicatorPart = 129;

constexpr const char* kScrapClipboardScrap = "clipboard"; // the name of the system clipboard's scrap
constexpr FlavorType kScrapFlavorTypeText = 0x54455854;   // 'TEXT'
constexpr FlavorFlags kScrapFlavorMaskNone = 0;

// ---------------------------------------------------------------------------------------------------------------------
// Rectangles and points: plain arithmetic, no port

// *r = left, top, right, bottom, each pinned to 16 bits. [main]
void SetRect(Rect* r, int left, int top, int right, int bottom);
// Moves *r by dh to the right and dv down, each coordinate pinned to 16 bits. [main]
void OffsetRect(Rect* r, int dh, int dv);
// Moves each side of *r inward by dh and dv (outward when negative). A rectangle that turns inside out becomes
// (0, 0, 0, 0). [main]
void InsetRect(Rect* r, int dh, int dv);
// Whether pixel pt lies in *r: left <= h < right, top <= v < bottom. [main]
bool PtInRect(Point pt, const Rect* r);
// *dst = the intersection; gives whether it holds a pixel, and (0, 0, 0, 0) when not. dst may be a or b. [main]
bool SectRect(const Rect* a, const Rect* b, Rect* dst);
// *dst = the smallest rectangle around both; an empty one counts for nothing. dst may be a or b. [main]
void UnionRect(const Rect* a, const Rect* b, Rect* dst);
// Whether all four sides are equal. [main]
bool EqualRect(const Rect* a, const Rect* b);
// right <= left or bottom <= top. [main]
bool EmptyRect(const Rect* r);
// *pt = (h, v), pinned to 16 bits. [main]
void SetPt(Point* pt, int h, int v);
// [main]
bool EqualPt(Point a, Point b);

// ---------------------------------------------------------------------------------------------------------------------
// Ports

// *port = the current port, null when there is none. [main]
void GetPort(GrafPtr* port);
// Makes port the current one; null is allowed. The host owns ports and unsets one that it destroys. [main]
void SetPort(GrafPtr port);
// *r = the port's rectangle in its own coordinates, (0, 0, width, height); gives r. An empty one for null. [main]
Rect* GetPortBounds(GrafPtr port, Rect* r);
// Current port's coordinates to the screen's, and back. Nothing changes without a current port. [main]
void LocalToGlobal(Point* pt);
void GlobalToLocal(Point* pt);
// Adds *r, in the port's own coordinates, to what the host will have drawn anew. Draws nothing. [main]
void InvalWindowRect(GrafPtr port, const Rect* r);
// Takes *r out of what the host will have drawn anew. [main]
void ValidWindowRect(GrafPtr port, const Rect* r);

// ---------------------------------------------------------------------------------------------------------------------
// Pen and colours of the current port

// Pen location, without drawing. [main]
void MoveTo(int h, int v);
// Draws from the pen location to (h, v), both ends included, and leaves the pen there. [main]
void LineTo(int h, int v);
// The pen location. [main]
void GetPen(Point* pt);
// Pen size in pixels; a width or height below 1 draws nothing. [main]
void PenSize(int width, int height);
// Pen transfer mode: patCopy 8, patOr 9, patXor 10, patBic 11, adMin 39. patXor inverts where the pattern's pixel is black
// and leaves what is below white, so the same drawing twice restores the picture. [main]
void PenMode(int mode);
// Pen pattern, copied. [main]
void PenPat(const Pattern* pattern);
// Pen 1 x 1, mode patCopy, pattern black. The location and the colours stay. [main]
void PenNormal();
// *color = the foreground colour exactly as it was set. [main]
void GetForeColor(RGBColor* color);
void GetBackColor(RGBColor* color);
// Foreground colour of pen and text; background colour of EraseRect, of clear pattern bits and of srcCopy text. [main]
void RGBForeColor(const RGBColor* color);
void RGBBackColor(const RGBColor* color);
// Index 1..6 of pattern list 0 into *pattern: 1 black, 2 dark grey, 3 three quarters, 4 grey, 5 light grey, 6 white.
// Any other list or index leaves *pattern as it is. [main]
void GetIndPattern(Pattern* pattern, int list, int index);

// ---------------------------------------------------------------------------------------------------------------------
// Rectangles, drawn in the current port

// The outline, pen width and height thick, inside *r, with the pen's pattern and mode. [main]
void FrameRect(const Rect* r);
// The whole of *r with the pen's pattern and mode; the pen's size counts for nothing. [main]
void PaintRect(const Rect* r);
// The whole of *r in the background colour. [main]
void EraseRect(const Rect* r);

// ---------------------------------------------------------------------------------------------------------------------
// Text of the current port. Widths are in pixels, Latin-1 characters; one strike serves every font number and size.

void TextFont(int font); // [main]
void TextFace(int face); // a sum of kFace values. [main]
void TextSize(int size); // [main]
void TextMode(int mode); // srcOr when a port is new. [main]
// Advance of one character in the current face; 0 without a port. Bold is wider, but not for digits; underline is not. [main]
int16_t CharWidth(int character);
// Sum of the advances of a Pascal string. [main]
int16_t StringWidth(ConstStringPtr string);
// The same of count characters at text + first. [main]
int16_t TextWidth(const void* text, int first, int count);
// Draws a Pascal string with the left end of its baseline at the pen location and moves the pen to its end. The baseline
// is the line below the last row of a letter without a descender. [main]
void DrawString(ConstStringPtr string);
// The same of count characters at text + first. [main]
void DrawText(const void* text, int first, int count);
// Ascent, descent, widest advance and leading of the current face. [main]
void GetFontInfo(FontInfo* info);

// The system font, which menus and the host's number field use. [main]
int16_t LMGetSysFontFam();
int16_t LMGetSysFontSize();
void LMSetSysFontFam(int16_t family);
void LMSetSysFontSize(int16_t size);
// Forgets the measures kept of the last font, so that a newly set system font is looked up; -1 is what to give. [main]
void LMSetLastSPExtra(int32_t extra);

// ---------------------------------------------------------------------------------------------------------------------
// Regions: any union of rectangles

// A new empty region, owned by the caller until DisposeRgn. [main]
RgnHandle NewRgn();
// Frees a region; null is allowed. [main]
void DisposeRgn(RgnHandle rgn);
// rgn = empty; = one rectangle; dst = src. [main]
void SetEmptyRgn(RgnHandle rgn);
void RectRgn(RgnHandle rgn, const Rect* r);
void SetRectRgn(RgnHandle rgn, int left, int top, int right, int bottom);
void CopyRgn(RgnHandle src, RgnHandle dst);
// dst = a or b; a and b; a and not b; exactly one of a and b. dst may be a or b. [main]
void UnionRgn(RgnHandle a, RgnHandle b, RgnHandle dst);
void SectRgn(RgnHandle a, RgnHandle b, RgnHandle dst);
void DiffRgn(RgnHandle a, RgnHandle b, RgnHandle dst);
void XorRgn(RgnHandle a, RgnHandle b, RgnHandle dst);
// Moves every pixel of rgn. A region moved beyond 16 bits loses what lies outside. [main]
void OffsetRgn(RgnHandle rgn, int dh, int dv);
// Whether pixel pt is in rgn; whether any pixel of *r is; whether rgn holds none; whether both hold the same. [main]
bool PtInRgn(Point pt, RgnHandle rgn);
bool RectInRgn(const Rect* r, RgnHandle rgn);
bool EmptyRgn(RgnHandle rgn);
bool EqualRgn(RgnHandle a, RgnHandle b);
// *r = the smallest rectangle around rgn, (0, 0, 0, 0) when it is empty; gives r. [main]
Rect* GetRegionBounds(RgnHandle rgn, Rect* r);
// The current port's clip region: copied out, copied in, set to one rectangle. A new port's covers everything. [main]
void GetClip(RgnHandle rgn);
void SetClip(RgnHandle rgn);
void ClipRect(const Rect* r);
// The screen, in global coordinates. Borrowed: neither change nor dispose of it. [main]
RgnHandle GetGrayRgn();

// ---------------------------------------------------------------------------------------------------------------------
// Resources: pictures, cursors, menus

// Picture id, null when there is none. The resource owns it until DetachResource, from then on the caller. [main]
PicHandle GetPicture(int id);
// Takes a loaded picture out of the resource table, so that it stays. Null is allowed. [main]
void DetachResource(PicHandle picture);
// Frees a detached picture; null is allowed. [main]
void KillPicture(PicHandle picture);
// *r = the picture's own bounds; gives r. An empty rectangle for null. [main]
Rect* QDGetPictureBounds(PicHandle picture, Rect* r);
// Draws the picture with its top left corner at dst's, scaled when dst has another size. Its transparent pixels leave what
// is below. Null draws nothing. [main]
void DrawPicture(PicHandle picture, const Rect* dst);
// Cursor id (2 is the system's crosshair), null when there is none. Borrowed from the resource: copy what you keep. [main]
CursHandle GetCursor(int id);
// Menu id, null when there is none: a new menu at each call, owned by the caller until ReleaseResource. [main]
MenuHandle GetMenu(int id);
// Frees a menu that GetMenu gave; one still in the menu list is taken out first. Null is allowed. [main]
void ReleaseResource(MenuHandle menu);

// ---------------------------------------------------------------------------------------------------------------------
// Pointer and cursor

// The pointer takes this image from now on; copied. [main]
void SetCursor(const Cursor* cursor);
// The host's own pointer, shown. [main]
void InitCursor();
// Hides the pointer, shows it again; calls nest, and more shows than hides count for nothing. [main]
void HideCursor();
void ShowCursor();
// Whether the pointer's button is down now. [main]
bool Button();
// Whether it is still down since the press that is being handled. [main]
bool StillDown();
// *pt = the pointer, in the current port's coordinates; in the screen's without a port. [main]
void GetMouse(Point* pt);
// The modifier bits held down now. [main]
int GetCurrentKeyModifiers();

// ---------------------------------------------------------------------------------------------------------------------
// Controls: scroll bars. The host makes them.

// Called for the press and for each turn that the pointer stays in the pressed part. [main]
using ControlActionProcPtr = void (*)(ControlHandle control, int16_t part);
using ControlActionUPP = ControlActionProcPtr;

// A callback for TrackControl, valid for the life of the process. [main]
ControlActionUPP NewControlActionUPP(ControlActionProcPtr routine);
// The part of the port's controls under pt (the port's coordinates) and *control, or 0 and null where none lies. A hidden
// control or one that has nothing to scroll is named all the same, with part 0, so that the caller can tell a press on a
// dead scroll bar from one on the content. [main]
int16_t FindControl(Point pt, GrafPtr port, ControlHandle* control);
// Follows a press at pt until the button goes up: highlights the part, calls action (null is allowed) once for the press
// and once for every turn with the pointer in the part; the indicator is dragged and sets the value when released near the
// bar. Gives the part in which the button went up, or 0. The current port is kept. [main]
int16_t TrackControl(ControlHandle control, Point pt, ControlActionUPP action);
int16_t GetControlValue(ControlHandle control); // [main]
// Held within 0..maximum; redraws the control when it changes. [main]
void SetControlValue(ControlHandle control, int value);
int16_t GetControlMaximum(ControlHandle control); // [main]
// A maximum below 0 counts as 0; a value above the maximum falls to it. Redraws the control when it changes. [main]
void SetControlMaximum(ControlHandle control, int maximum);
// [main]
void ShowControl(ControlHandle control);
void HideControl(ControlHandle control);
// 0 active, 255 inactive: drawn without thumb, answers no part. [main]
void HiliteControl(ControlHandle control, int state);
void Draw1Control(ControlHandle control);               // [main]
Rect* GetControlBounds(ControlHandle control, Rect* r); // [main]

// ---------------------------------------------------------------------------------------------------------------------
// Menus. Items count from 1.

constexpr int kInsertHierarchicalMenu = -1; // InsertMenu: a pop-up, not in the bar
constexpr int noMark = 0;
constexpr int bulletMark = 165; // the mark character that is a bullet, whatever the font

// Adds one item at the end; "-" is a separator, which cannot be chosen. [main]
void AppendMenuItem(MenuHandle menu, const char* text);
int16_t CountMenuItems(MenuHandle menu); // [main]
int16_t GetMenuID(MenuHandle menu);      // [main]
// The item's text, Latin-1, "" when there is no such item. Borrowed from the menu. [main]
const char* GetMenuItemText(MenuHandle menu, int item);
// The character left of the item: noMark, or bulletMark. No such item: nothing happens. [main]
void SetItemMark(MenuHandle menu, int item, int mark);
int GetItemMark(MenuHandle menu, int item); // [main]
// Item 0 is the whole menu. [main]
void EnableMenuItem(MenuHandle menu, int item);
void DisableMenuItem(MenuHandle menu, int item);
bool IsMenuItemEnabled(MenuHandle menu, int item); // [main]
// Puts the menu into the menu list, takes the one with this id out. Only a listed menu can pop up. [main]
void InsertMenu(MenuHandle menu, int before);
void DeleteMenu(int id);
// Shows the menu at the global point (left, top) with item's line there and waits for the choice: menu id in the high 16
// bits, item in the low 16; 0 for no choice. A disabled item or a separator cannot be chosen. [main]
int32_t PopUpMenuSelect(MenuHandle menu, int top, int left, int item);

// ---------------------------------------------------------------------------------------------------------------------
// The scrap: the clipboard

// *scrap = the scrap of that name; only kScrapClipboardScrap is there. [main]
OSStatus GetScrapByName(const char* name, uint32_t options, ScrapRef* scrap);
// *flags = the flavor's flags; noTypeErr when the scrap holds no such flavor. [main]
OSStatus GetScrapFlavorFlags(ScrapRef scrap, FlavorType flavor, FlavorFlags* flags);
// *size = the flavor's size in bytes; noTypeErr, and 0, when the scrap holds no such flavor. [main]
OSStatus GetScrapFlavorSize(ScrapRef scrap, FlavorType flavor, int32_t* size);
// Copies at most *size bytes to data and sets *size to the flavor's whole size. [main]
OSStatus GetScrapFlavorData(ScrapRef scrap, FlavorType flavor, int32_t* size, void* data);
// Adds or replaces one flavor: size bytes, copied. A negative size counts as 0. [main]
OSStatus PutScrapFlavor(ScrapRef scrap, FlavorType flavor, FlavorFlags flags, int32_t size, const void* data);
// Empties the scrap; *scrap stays valid. [main]
OSStatus ClearScrap(ScrapRef* scrap);

// ---------------------------------------------------------------------------------------------------------------------
// Relocatable memory. Each call sets MemError.

// A block of size bytes, zeroed; null when there is no memory. Owned by the caller until DisposeHandle. [main]
Handle NewHandle(int32_t size);
// New size; the first min(old, new) bytes are kept, further ones are zero. *handle may change unless the block is locked; a
// locked block that cannot grow in place leaves memFullErr and everything as it was. [main]
void SetHandleSize(Handle handle, int32_t size);
int32_t GetHandleSize(Handle handle); // 0 for null. [main]
// While locked, *handle does not change. Locks do not count. [main]
void HLock(Handle handle);
void HUnlock(Handle handle);
// Frees the block; null is allowed. [main]
void DisposeHandle(Handle handle);
// Result of the last call of this group: noErr, memFullErr or nilHandleErr. [main]
OSErr MemError();
