// core/class.cpp: loading the class into the host: the table of messages and the process-wide resources.
// Layer: core; names every room whose handlers it registers.
// Called by the host's loader.
#include "core/class.h"

#include "core/lifecycle.h"
#include "core/messages.h"
#include "edit/keys.h"
#include "edit/mouse.h"
#include "edit/params.h"
#include "edit/press.h"
#include "edit/selection.h"
#include "io/clipboard.h"
#include "io/document.h"
#include "io/embedding.h"
#include "io/midiwrite.h"
#include "transport/follow.h"
#include "transport/input.h"
#include "transport/playback.h"
#include "transport/record.h"
#include "view/cursor.h"
#include "view/scroll.h"
#include "view/tracking.h"
#include "view/window.h"

host_class* brisolan_class = nullptr;
cell<std::int32_t> brisolan_nextserial{0};
symbol* ps_nothing = nullptr;
symbol* ps_New = nullptr;
symbol* ps_classname = nullptr;
std::array<PicHandle, NPICTURES> em_pic{};
std::array<Cursor, NCURSORS> g_curs{};
Pattern gry{};
Pattern blk{};
std::array<const char*, 12> notes{};

namespace {

// Resource ids of the cursor table's entries; the last is the system's crosshair.
constexpr std::array<std::int16_t, NCURSORS> cursor_ids{3156, 3155, 3157, 3158, 3159, 3160, 3161, 2};

// The system's pattern list and the two of its patterns that the editor draws with.
constexpr int SYSTEM_PATTERNS = 0;
constexpr int BLACK_PATTERN = 1;
constexpr int GREY_PATTERN = 4;

using enum message_input;

template <auto Handler, arg_word... Words>
message_entry row(const char* name, const char* purpose, message_input input = method, int inlet = 0) {
    return {input, name, host_typed<Handler, Words...>(), inlet, purpose};
}

template <host_name Name, auto Handler> message_entry own_row(const char* purpose) {
    static constexpr host_name name = Name;
    return {method, name.text, host_typed_private<Name, Handler>(), 0, purpose};
}

// In registration order, in which the manual page shows them, too.
const auto table = std::to_array<message_entry>({
    row<brisolan_next>("next", "play the event at the cursor, then send the wait until the next one"),
    row<brisolan_int, ARG_LONG>("int", "record, follow, or play the n-th event, by mode", integer),
    row<brisolan_next>("bang", "the same as next", bang),
    row<brisolan_float, ARG_FLOAT>("float", "truncated, then as an integer", floating),
    row<brisolan_in1, ARG_LONG>("in1", "the Pitch to record or follow", inlet, 1),
    row<brisolan_in2, ARG_LONG>("in2", "the Vel to record or follow", inlet, 2),
    row<brisolan_in3, ARG_LONG>("in3", "the Dur to record", inlet, 3),
    row<brisolan_in4, ARG_LONG>("in4", "the Chan to record", inlet, 4),
    row<brisolan_in5, ARG_LONG>("in5", "the Track to record", inlet, 5),
    row<brisolan_in6, ARG_LONG>("in6", "the X1 to record", inlet, 6),
    row<brisolan_in7, ARG_LONG>("in7", "the X2 to record", inlet, 7),
    row<brisolan_nth, ARG_DEFLONG>("nth", "send the n-th event, from 0, then its time"),
    row<brisolan_list, ARG_LIST>("list", "set up to seven inputs, then as an integer"),
    row<brisolan_clear>("clear", "delete all events"),
    row<brisolan_start>("start", "begin playback: send the first event's time"),
    row<brisolan_record>("record", "clear, and begin recording"),
    row<brisolan_mstop>("stop", "stop whatever runs"),
    row<brisolan_follow, ARG_DEFLONG>("follow", "begin following at the n-th event"),
    row<brisolan_startat, ARG_LONG, ARG_LONG, ARG_LONG>("startat",
                                                        "begin playback after the note pitch vel chan"),
    row<brisolan_followat, ARG_LONG, ARG_LONG, ARG_LONG>("followat",
                                                         "begin following after the note pitch vel chan"),
    row<brisolan_delay, ARG_LONG>("delay", "move the whole sequence to begin at a time"),
    own_row<"update", brisolan_update>("draw the window"),
    own_row<"click", brisolan_click>("a press in the window"),
    own_row<"dblclick", brisolan_dblclick>("a double click on the box"),
    own_row<"filename", brisolan_dblclick>("the same as dblclick"),
    row<brisolan_restore>("restore", "clear, and take the saved events that follow"),
    own_row<"save", brisolan_save>("write the instance into its patcher"),
    own_row<"key", brisolan_key>("a key press in the window"),
    own_row<"cut", brisolan_cut>("copy the selected events and delete them"),
    own_row<"copy", brisolan_copy>("copy the selected events"),
    own_row<"paste", brisolan_paste>("insert the events on the clipboard"),
    own_row<"clr", brisolan_clr>("delete the selected events"),
    own_row<"selectall", brisolan_selectall>("select every event"),
    own_row<"chkmenu", brisolan_chkmenu>("tell which commands of the edit menu make sense"),
    row<brisolan_mute, ARG_LONG, ARG_LONG, ARG_LONG>("mute",
                                                     "silence events whose parameter index equals value"),
    row<brisolan_unmute, ARG_LONG, ARG_LONG>("unmute", "take one mute back: index value"),
    row<brisolan_unmuteall>("unmuteall", "take all mutes back"),
    row<brisolan_setparam, ARG_LIST>("setparam",
                                     "describe a parameter: index name display min max default …"),
    row<brisolan_params, ARG_LONG, ARG_LONG, ARG_LONG>("params",
                                                       "how following searches: skip window octaves"),
    row<brisolan_import, ARG_LIST>("import", "read a file"),
    row<brisolan_import, ARG_LIST>("read", "read a file"),
    row<brisolan_export, ARG_LIST>("export", "write a MIDI file"),
    row<brisolan_write, ARG_LIST>("write", "write a file"),
    row<brisolan_writekel, ARG_DEFSYM>("writekel", "write a document"),
    own_row<"saveto", brisolan_saveto>("write the document to a file"),
    row<brisolan_open>("open", "open the editor window"),
    row<brisolan_wclose>("wclose", "close the editor window"),
    own_row<"cursor", brisolan_cursorin>("the pointer moves over the window"),
    own_row<"cursorout", brisolan_cursorout>("the pointer leaves the window"),
    own_row<"chkscroll", brisolan_chkscroll>("set the scroll bars"),
    own_row<"scroll", brisolan_scroll>("the view was scrolled"),
    own_row<"wsize", brisolan_wsize>("the window has a new size"),
    own_row<"info", host_inspector_open>("open the inspector"),
    own_row<"pstate", brisolan_pstate>("tell the parameters' descriptions"),
    own_row<"assist", brisolan_assist>("tell an inlet's or outlet's hover text"),
});

void register_message(host_class* c, const message_entry& m) {
    switch (m.input) {
    case method: host_class_addmethod(c, m.name, m.handler); break;
    case integer: host_class_addint(c, m.handler); break;
    case bang: host_class_addbang(c, m.handler); break;
    case floating: host_class_addfloat(c, m.handler); break;
    case inlet: host_class_addinletint(c, m.inlet, m.handler); break;
    }
}

void load_resources() {
    for (std::size_t i = 0; i < em_pic.size(); ++i) {
        KillPicture(em_pic[i]); // of an earlier load in this process
        em_pic[i] = GetPicture(FIRST_PICTURE + static_cast<int>(i));
        DetachResource(em_pic[i]);
    }
    GetIndPattern(&gry, SYSTEM_PATTERNS, GREY_PATTERN);
    GetIndPattern(&blk, SYSTEM_PATTERNS, BLACK_PATTERN);
    for (const file_type kind : {host_type("MENU"), host_type("DITL"), host_type("DLOG")}) {
        host_rescopy(kind, ROLE_MENU);
    }
    for (std::size_t i = 0; i < g_curs.size(); ++i) {
        if (const CursHandle c = GetCursor(cursor_ids[i])) g_curs[i] = **c;
    }
}

} // namespace

std::span<const message_entry> brisolan_messages() {
    return table;
}

void brisolan_main() {
    brisolan_class =
        host_class_setup("brisolan", host_typed_lifecycle<brisolan_new, brisolan_free, ARG_DEFSYM>());
    for (const message_entry& m : table) register_message(brisolan_class, m);
    brisolan_nextserial = 0;
    g_currentcursor = -1;
    brisolan_resetpress();
    brisolan_resetband();
    load_resources();
    ps_nothing = host_symbol("");
    ps_New = host_symbol("#N");
    ps_classname = static_cast<symbol*>(host_symbol("#I")->thing);
    notes = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
}
