// examples/host/absent.cpp: what the object may ask of a host, answered by one that has no windows, no pictures, no
// clipboard, no files and no clocks: nothing is shown, found or due.
// Example; a host that has one of these things puts it in place of what stands here.
#include "host/kel.h"

// Time and deferred calls. A clock is set only by a score that is asked for its next event from inside an event's output;
// a deferred call redraws the window.
struct host_clock {};
struct host_qelem {};
struct host_critical {};
host_clock* host_detail::clock_create(void*, void (*)(void*)) {
    return new host_clock;
}
host_qelem* host_detail::qelem_create(void*, void (*)(void*)) {
    return new host_qelem;
}
void host_detail::defer_front(host_object*, deferred, symbol*, std::int32_t, const atom*) {}
void host_detail::defer_back(host_object*, deferred, symbol*, std::int32_t, const atom*) {}
void host_clock_delay(host_clock*, std::int32_t) {}
void host_clock_free(host_clock* c) {
    delete c;
}
void host_qelem_set(host_qelem*) {}
void host_qelem_unset(host_qelem*) {}
void host_qelem_free(host_qelem* q) {
    delete q;
}
host_critical* host_critical_new() {
    return new host_critical;
}
void host_critical_enter(host_critical*) {}
void host_critical_exit(host_critical*) {}
void host_critical_free(host_critical* c) {
    delete c;
}

// Patchers, inspector, listeners.
void host_patcher_dirty(host_patcher*) {}
void host_inspector_open(host_object*) {}
void host_notify_free(host_object*) {}
void host_connection_server(host_object* x, symbol* name) {
    name->thing = x;
}
void host_connection_send(symbol*, symbol*) {}

// Files and documents.
host_atombuf* host_atombuf_new() {
    return nullptr;
}
void host_atombuf_free(host_atombuf*) {}
void host_atombuf_append_atoms(host_atombuf*, std::span<const atom>) {}
void host_atombuf_eval(const host_atombuf*) {}
bool host_atombuf_getatom(const host_atombuf*, std::int32_t, atom*) {
    return false;
}
host_err host_atombuf_read(host_atombuf*, const char*, std::int16_t, bool) {
    return HOST_ERR_IO;
}
host_err host_atombuf_write(const host_atombuf*, const char*, std::int16_t, int) {
    return HOST_ERR_IO;
}
host_err host_file_locate(const char*, std::int16_t*, file_type*, std::span<const file_type>) {
    return HOST_ERR_NOT_FOUND;
}
host_err host_file_open(const char*, std::int16_t, host_file**) {
    return HOST_ERR_NOT_FOUND;
}
host_err host_file_create(const char*, std::int16_t, file_type, host_file**) {
    return HOST_ERR_PERMISSION;
}
host_err host_file_read(host_file*, std::int32_t*, void*) {
    return HOST_ERR_IO;
}
host_err host_file_write(host_file*, std::int32_t*, const void*) {
    return HOST_ERR_IO;
}
host_err host_file_getpos(host_file*, std::int32_t*) {
    return HOST_ERR_IO;
}
host_err host_file_setpos(host_file*, std::int32_t) {
    return HOST_ERR_IO;
}
host_err host_file_close(host_file*) {
    return HOST_ERR_IO;
}
host_err host_open_dialog(char*, std::int16_t*, file_type*, std::span<const file_type>) {
    return HOST_CANCELLED;
}
host_err host_saveas_dialog(char*, std::int16_t*, file_type*, std::span<const file_type>) {
    return HOST_CANCELLED;
}
std::int16_t host_default_path() {
    return 0;
}
void host_ctopcpy(unsigned char* to, const char*) {
    to[0] = 0;
}
void host_rescopy(file_type, std::int16_t) {}

// Windows: there is a record, which stays hidden.
host_window* host_window_new(host_object* owner, std::int16_t left, std::int16_t top, std::int16_t right,
                             std::int16_t bottom, std::int32_t) {
    host_window* const w = new host_window;
    w->owner = owner;
    w->width = static_cast<std::int16_t>(right - left);
    w->height = static_cast<std::int16_t>(bottom - top);
    return w;
}
void host_window_free(host_window* w) {
    delete w;
}
void host_window_setmin(host_window*, std::int16_t, std::int16_t) {}
void host_window_vis(host_window*) {}
void host_window_invis(host_window*) {}
void host_window_settitle(host_window*, const char*) {}
GrafPtr host_window_setport(host_window*) {
    return nullptr;
}
void host_window_setscrollmax(host_window*, std::int16_t, std::int16_t) {}
void host_window_setscrollval(host_window*, std::int16_t, std::int16_t) {}
void host_detail::window_drag(host_window*, void (*)(host_object*, Point, bool)) {}
void host_window_setcursor(host_window*) {}
GrafPtr host_window_systemwindow(host_window*) {
    return nullptr;
}
host_numfield* host_numfield_new(host_object*, void (*)(std::int32_t, char*)) {
    return new host_numfield;
}
void host_numfield_free(host_numfield* n) {
    delete n;
}
void host_numfield_draw(host_numfield*) {}
void host_detail::numfield_track(host_numfield*, int (*)(host_object*, std::int32_t)) {}
void host_forecolor(int, int) {}
void host_movecursor(Point) {}

// The toolbox: drawing to no port.
void SetRect(Rect*, int, int, int, int) {}
void OffsetRect(Rect*, int, int) {}
void InsetRect(Rect*, int, int) {}
bool PtInRect(Point, const Rect*) {
    return false;
}
bool EqualPt(Point, Point) {
    return false;
}
void GetPort(GrafPtr* port) {
    *port = nullptr;
}
void SetPort(GrafPtr) {}
Rect* GetPortBounds(GrafPtr, Rect* r) {
    return r;
}
void LocalToGlobal(Point*) {}
void InvalWindowRect(GrafPtr, const Rect*) {}
void MoveTo(int, int) {}
void LineTo(int, int) {}
void PenSize(int, int) {}
void PenMode(int) {}
void PenPat(const Pattern*) {}
void PenNormal() {}
void GetForeColor(RGBColor*) {}
void RGBForeColor(const RGBColor*) {}
void GetIndPattern(Pattern*, int, int) {}
void FrameRect(const Rect*) {}
void PaintRect(const Rect*) {}
void EraseRect(const Rect*) {}
void TextFont(int) {}
void TextFace(int) {}
void TextSize(int) {}
void TextMode(int) {}
int16_t CharWidth(int) {
    return 0;
}
int16_t StringWidth(ConstStringPtr) {
    return 0;
}
void DrawString(ConstStringPtr) {}
void DrawText(const void*, int, int) {}
void GetFontInfo(FontInfo*) {}
int16_t LMGetSysFontFam() {
    return 0;
}
int16_t LMGetSysFontSize() {
    return 0;
}
void LMSetSysFontFam(int16_t) {}
void LMSetSysFontSize(int16_t) {}
void LMSetLastSPExtra(int32_t) {}
RgnHandle NewRgn() {
    return nullptr;
}
void DisposeRgn(RgnHandle) {}
Rect* GetRegionBounds(RgnHandle, Rect* r) {
    return r;
}
void GetClip(RgnHandle) {}
void SetClip(RgnHandle) {}
void ClipRect(const Rect*) {}
RgnHandle GetGrayRgn() {
    return nullptr;
}
PicHandle GetPicture(int) {
    return nullptr;
}
void DetachResource(PicHandle) {}
void KillPicture(PicHandle) {}
Rect* QDGetPictureBounds(PicHandle, Rect* r) {
    return r;
}
void DrawPicture(PicHandle, const Rect*) {}
CursHandle GetCursor(int) {
    return nullptr;
}
void SetCursor(const Cursor*) {}
void HideCursor() {}
void ShowCursor() {}
bool Button() {
    return false;
}
ControlActionUPP NewControlActionUPP(ControlActionProcPtr routine) {
    return routine;
}
int16_t FindControl(Point, GrafPtr, ControlHandle*) {
    return 0;
}
int16_t TrackControl(ControlHandle, Point, ControlActionUPP) {
    return 0;
}
int16_t GetControlValue(ControlHandle) {
    return 0;
}
void SetControlValue(ControlHandle, int) {}
int16_t GetControlMaximum(ControlHandle) {
    return 0;
}
MenuHandle GetMenu(int) {
    return nullptr;
}
void ReleaseResource(MenuHandle) {}
void SetItemMark(MenuHandle, int, int) {}
void EnableMenuItem(MenuHandle, int) {}
void DisableMenuItem(MenuHandle, int) {}
void InsertMenu(MenuHandle, int) {}
void DeleteMenu(int) {}
int32_t PopUpMenuSelect(MenuHandle, int, int, int) {
    return 0;
}
OSStatus GetScrapByName(const char*, uint32_t, ScrapRef*) {
    return noTypeErr;
}
OSStatus GetScrapFlavorFlags(ScrapRef, FlavorType, FlavorFlags*) {
    return noTypeErr;
}
OSStatus GetScrapFlavorSize(ScrapRef, FlavorType, int32_t*) {
    return noTypeErr;
}
OSStatus GetScrapFlavorData(ScrapRef, FlavorType, int32_t*, void*) {
    return noTypeErr;
}
OSStatus PutScrapFlavor(ScrapRef, FlavorType, FlavorFlags, int32_t, const void*) {
    return noTypeErr;
}
OSStatus ClearScrap(ScrapRef*) {
    return noTypeErr;
}
Handle NewHandle(int32_t) {
    return nullptr;
}
void SetHandleSize(Handle, int32_t) {}
void HLock(Handle) {}
void HUnlock(Handle) {}
void DisposeHandle(Handle) {}
OSErr MemError() {
    return memFullErr;
}
