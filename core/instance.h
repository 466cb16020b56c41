// core/instance.h: the instance record, one for each box, with the parameter records and node lists it owns.
// Layer: core; leans on the event record and the host interface.
// Read and written by every room of the object, each its own group.
//
// What always holds between two calls:
//   - times never fall along the list from `events`, as long as nobody edits a Time in place without re-sorting (a
//     legend drag does) or appends behind a "delay"; `unordered` is 1 from then on;
//   - `current`, `firstsel` and `drawn` are null or in the sequence; so is the event of every node in `held` and
//     `follow_pending`, and `finger`;
//   - `held` has at most two nodes; `held_tail` is its first node, or null when that node was taken out and another is
//     left, and then nothing more is linked until the list is empty;
//   - exactly one parameter has mode 2 and is `yparam`, exactly one has mode 4 and is `lenparam`, unless a "setparam"
//     or a role menu took the role 0 or 1 from an axis; `labelparam` is a parameter or -1;
//   - `nselected` counts calls, not events: selecting a selected event adds one more, and neither delete, cut nor
//     "clear" takes anything away, so it may be larger than the number of selected events.
// brisolan_checkinvariants (core/check.h) asserts what can be asserted of these.
#pragma once

#include <array>
#include <cstdint>

#include "core/event.h"
#include "host/kel.h"

constexpr std::uint8_t MODE_IDLE = 0;
constexpr std::uint8_t MODE_PLAY = 3;
constexpr std::uint8_t MODE_RECORD = 4;
constexpr std::uint8_t MODE_FOLLOW = 5;

// One of the eight parameters of an instance.
struct param_record {
    symbol* name = nullptr;
    cell<std::uint8_t> mode{0};        // display role
    cell<std::uint8_t> draw{0};        // 1: the parameter has a legend entry
    cell<std::uint8_t> underline{0};   // 1: its legend name is drawn underlined
    cell<std::uint8_t> typing_mark{0}; // cleared together with `underline`, never set
    std::int16_t leg_pict_x = 0;       // legend layout, pixels: role picture, name, value, next entry
    std::int16_t leg_name_x = 0;
    std::int16_t leg_value_x = 0;
    std::int16_t leg_end_x = 0;
    host_outlet* outlet = nullptr;
    cell<std::int32_t> min;
    cell<std::int32_t> max;
    cell<std::int32_t> defvalue;
    cell<std::int32_t> legvalue;     // the value shown in the legend
    cell<std::int32_t> curvalue;     // the value last received at the parameter's inlet
    cell<std::int32_t> interval;     // spacing of grid lines and labels
    cell<std::int32_t> scale;        // units per 8 pixels when the parameter is put on an axis
    cell<std::uint8_t> notenames{0}; // 1: values are written as note names
    cell<std::uint8_t> isset{0};     // 1: a value has arrived at the inlet since the last stop
};

// A note that waits for its note-off, or a passed-over note of the performer's part. Small block.
struct event_node {
    event* note = nullptr;
    event_node* next = nullptr;
};

// One entry of the mute list: events whose parameter `index` equals `value` are muted. Small block.
struct mute_entry {
    mute_entry* next = nullptr;
    std::int32_t index = 0;
    std::int32_t value = 0;
};

// What the queued redraw has to do; raised at either level, taken at main level by the redraw alone.
struct redraw_flags {
    cell<std::uint8_t> redraw_bg{0};
    cell<std::uint8_t> redraw_events{0};
    cell<std::uint8_t> redraw_panel{0};
    cell<std::uint8_t> redraw_editmode{0};
    cell<std::uint8_t> redraw_spare{0}; // nothing sets it
    cell<std::uint8_t> changed{0};
    cell<std::uint8_t> redraw_marked{0};
    cell<std::uint8_t> redraw_values{0};
    cell<std::uint8_t> hide_check{0};
};

struct view_index;  // view/index.h: which events stand where on screen
class sent_event;   // core/output.h: an event that is being put out
class pending_walk; // core/heldnotes.h: a walk over the passed-over notes

constexpr int NTRACKS = 32;
// Eight 32-bit numbers of up to 11 characters with " . " between them, and the null.
constexpr int TRACK_EVENT_SIZE = 8 * 11 + 7 * 3 + 1;

struct brisolan : host_object {
    // The run. Written at scheduler level, or at main level under the lockout.
    // Fresh at construction and at every stop; 0 from "record", "restore", "clear" on.
    cell<std::int32_t> serial{0};

    // The sequence: linked and unlinked under the lockout and inside `lock`; walked at main level without a lock.
    event_link events;

    symbol* name = nullptr; // main level, at construction: the box's name or the empty symbol

    // Bounds, roles and legend: main level; curvalue and isset: scheduler level.
    std::array<param_record, NPARAMS> params;

    host_numfield* numfield = nullptr; // main level

    cell<std::int32_t> lasttime{0}; // time of the event appended last
    event_link current;             // the sequence cursor

    // Following. Scheduler level, or main level under the lockout.
    cell<std::int32_t> follow_time{0};    // Time of the last matched note
    cell<std::uint8_t> follow_octaves{0}; // 1: an octave above or below matches too
    // How many other notes the search passes before it limits itself in time.
    cell<std::int16_t> follow_skip{2};
    cell<std::int16_t> follow_window{150}; // milliseconds
    cell<std::int16_t> nheld{0};           // nodes made for `held` while following
    event_node* follow_pending = nullptr;  // passed-over notes, newest first

    // Notes that await their note-off, recording, following or reading MIDI (core/heldnotes.h). Same levels.
    event_node* held = nullptr;
    event_node* held_tail = nullptr;

    cell<std::uint8_t> mode{MODE_IDLE};

    // The editor window and its queued redraw.
    host_window* window = nullptr;
    host_qelem* redraw_qelem = nullptr;
    redraw_flags redraw;

    cell<std::uint8_t> restoring{0}; // 1: what arrives at the inlets is ignored

    host_clock* timer_clock = nullptr; // does nothing when it fires

    // Which tracks are shown; main level.
    std::int32_t ntracks = NTRACKS;
    std::uint8_t* trackshown = nullptr; // ntracks bytes, 1 = shown

    mute_entry* mutes = nullptr; // scheduler level, or main level under the lockout

    host_patcher* patcher = nullptr;  // the patcher that holds the box; null when none
    host_clock* play_clock = nullptr; // its routine is brisolan_next
    cell<std::int16_t> sending{0};    // 1 while an event is being written to the outlets
    host_critical* lock = nullptr;

    // The sequence's aids, invisible in behaviour; written where the list is linked, under the same locks.
    cell<std::int32_t> nevents{0}; // how many events there are
    // The event in front of the one linked last, for inserts at or after finger_time; null: search from the head.
    event_link finger;
    cell<std::int32_t> finger_time{0};
    // Counts unlinkings, re-sortings and clears: whoever remembers events must look again.
    cell<std::uint32_t> relinked{0};
    // Counts changes of events' values at scheduler level: whoever remembers those must look again.
    cell<std::uint32_t> reshaped{0};
    // 1 since times were changed in place or wrapped, until the list is empty again.
    cell<std::uint8_t> unordered{0};

    // What is under way in a message, innermost first: on the stack, null between messages. Scheduler level, or main level
    // under the lockout.
    sent_event* sending_now = nullptr;
    pending_walk* walking_now = nullptr;

    // View geometry. Main level.
    std::uint8_t show_sharps = 0;
    std::uint16_t hscroll_extent = 0; // steps of 16 pixels
    std::uint16_t vscroll_extent = 0; // pixels
    std::int32_t yparam = PARAM_PITCH;
    std::int32_t lenparam = PARAM_DUR;
    std::int32_t labelparam = PARAM_VEL; // -1: no label
    std::int32_t colorparam = PARAM_TRACK;
    std::int32_t xzoom = 200;   // Time units per 8 pixels
    std::int32_t yzoom = 4;     // yparam units per 8 pixels
    std::int32_t lenzoom = 200; // lenparam units per 8 pixels
    double xzoom_exact = 200.0;
    double yzoom_exact = 4.0;
    std::uint8_t magnify_y = 0;  // 1: the magnifier zooms vertically too
    view_index* index = nullptr; // owned; null until the view builds it, dropped when `relinked` has moved on

    // The channel row, complete but not connected. Main level.
    std::int32_t nchans = 0;
    std::uint8_t* chanshown = nullptr;

    // Window display. Main level.
    std::uint8_t relayout = 1; // the legend must be laid out before the next update
    std::int8_t editmode = 3;  // the selected tool: 0 arrow, 1 magnifier, 2 tweak, 3 draw
    std::int8_t cursor_override = 0;
    char track_time[16] = "";
    char track_value[16] = "";
    char track_event[TRACK_EVENT_SIZE] = "";

    // Selection and drags. Main level; `firstsel` also by "clear".
    cell<std::int32_t> nselected{0};
    event_link firstsel;
    // The new event of a draw drag, which lengthens it; null when there is none or it was deleted.
    event_link drawn;
    Point clickpt{}; // where the press began
    // 0 none, 1 to 3 move or tweak of a third, 7 draw, 8 rubber band, -1 track buttons.
    std::int8_t dragkind = 0;
    std::int32_t dragvalue = 0; // the value under the pointer at the last drag step

    // Parameter editing and typing. Main level.
    std::uint8_t numparam = 0;         // the parameter the number field is bound to
    std::int16_t whichparam = 0;       // the parameter last chosen for the inspector
    std::int32_t typeparam_index = -1; // never changed: typing is inactive
    std::int32_t typedvalue = 0;
    std::uint8_t typing = 0;
    std::uint8_t typeupdate = 0;
};
