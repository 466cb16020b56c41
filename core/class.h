// core/class.h: what is set once when the host loads the class, and the table of messages it registers.
// Layer: core; the one place, with core/lifecycle, that names the other rooms.
// Called by the host's loader and, for its list of messages, by what writes the manual page.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "host/kel.h"
#include "host/toolbox.h"

// Process-wide state of the class. Written by brisolan_main, once, before any instance exists; read by every room;
// survives every instance. brisolan_nextserial goes on counting at every construction and stop, under the lockout.
extern host_class* brisolan_class;
extern cell<std::int32_t> brisolan_nextserial;
extern symbol* ps_nothing;   // the empty symbol
extern symbol* ps_New;       // "#N"
extern symbol* ps_classname; // the class's name as the host had bound it to "#I"

constexpr int NPICTURES = 10;
constexpr int NCURSORS = 8;
constexpr std::int16_t FIRST_PICTURE = 3155; // pictures 3155 to 3164 by table index 0 to 9
constexpr std::int16_t ROLE_MENU = 3155;     // the role pop-up menu and its dialog

extern std::array<PicHandle, NPICTURES> em_pic; // null where the resource is missing
extern std::array<Cursor, NCURSORS> g_curs;     // an entry whose resource is missing stays empty
extern Pattern gry;                             // grey, from the system's list
extern Pattern blk;                             // black
extern std::array<const char*, 12> notes;       // note names by pitch class

// How a message reaches its handler.
enum class message_input : std::uint8_t { method, integer, bang, floating, inlet };

// One row of the message table.
struct message_entry {
    message_input input;
    const char* name; // the selector; for the inputs without one "int", "bang", "float", "in1" to "in7"
    host_handler handler;
    int inlet;           // 1 to 7 for message_input::inlet, else 0
    const char* purpose; // one line for the manual page
};

// The whole table, in registration order. [both]
std::span<const message_entry> brisolan_messages();

// Loads the class into the host: registers it with its messages and loads the process-wide resources. Once after each
// start of the host.
// [main]
void brisolan_main();
