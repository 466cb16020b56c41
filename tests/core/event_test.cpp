// tests/core/event_test.cpp: the parameters' fixed description, and the table of messages.
// Test layer.
#include "core/event.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "core/class.h"
#include "tests/support/host_test.h"
#include "view/cursor.h"

namespace {

TEST(parameter_tables, describe_the_eight_parameters) {
    struct row {
        const char* name;
        std::int32_t mode, draw, def, min, max, scale, interval;
    };
    const row wanted[] = {{"Time", 1, 1, 0, 0, 999999, 200, 1000}, {"Pitch", 2, 1, 60, 0, 127, 4, 12},
                          {"Vel", 3, 1, 64, 0, 127, 4, 12},        {"Dur", 4, 1, 200, 1, 99999, 200, 800},
                          {"Chan", 0, 1, 1, 1, 16, 1, 8},          {"Track", 0, 1, 1, 1, 32, 1, 8},
                          {"X1", 0, 1, 0, 0, 999, 20, 80},         {"X2", 0, 1, 0, 0, 999, 20, 80}};
    for (int i = 0; i < NPARAMS; ++i) {
        const row& w = wanted[i];
        EXPECT_STREQ(e_paramnames(i), w.name);
        const auto got = std::tuple(e_parammodes(i), e_paramdraw(i), e_paramdefs(i), e_parammins(i),
                                    e_parammaxs(i), e_paramscales(i), e_paramintervals(i));
        EXPECT_EQ(got, std::tuple(w.mode, w.draw, w.def, w.min, w.max, w.scale, w.interval)) << w.name;
    }
}

TEST(parameter_tables, answer_boop_and_minus_one_for_an_index_that_is_none) {
    for (const int i : {-1, 8, 1000, INT32_MIN}) {
        EXPECT_STREQ(e_paramnames(i), "boop");
        for (const auto lookup : {e_parammodes, e_paramdraw, e_paramdefs, e_parammins, e_parammaxs,
                                  e_paramscales, e_paramintervals}) {
            EXPECT_EQ(lookup(i), -1);
        }
    }
}

TEST(event_record, addresses_its_values_by_index) {
    event e;
    for (int i = 0; i < NPARAMS; ++i) event_param(e, i) = 10 + i;
    EXPECT_EQ(e.time, 10);
    EXPECT_EQ(e.pitch, 11);
    EXPECT_EQ(e.vel, 12);
    EXPECT_EQ(e.dur, 13);
    EXPECT_EQ(e.chan, 14);
    EXPECT_EQ(e.track, 15);
    EXPECT_EQ(e.x1, 16);
    EXPECT_EQ(e.x2, 17);
    EXPECT_EQ(e.needsdraw, 1);
    EXPECT_EQ(e.selected, 0);
    EXPECT_EQ(e.marked, 0);
}

TEST(message_table, stands_in_registration_order) {
    const std::vector<std::string> wanted{
        "next",      "int",       "bang",    "float",    "in1",       "in2",      "in3",    "in4",
        "in5",       "in6",       "in7",     "nth",      "list",      "clear",    "start",  "record",
        "stop",      "follow",    "startat", "followat", "delay",     "update",   "click",  "dblclick",
        "filename",  "restore",   "save",    "key",      "cut",       "copy",     "paste",  "clr",
        "selectall", "chkmenu",   "mute",    "unmute",   "unmuteall", "setparam", "params", "import",
        "read",      "export",    "write",   "writekel", "saveto",    "open",     "wclose", "cursor",
        "cursorout", "chkscroll", "scroll",  "wsize",    "info",      "pstate",   "assist"};
    std::vector<std::string> names;
    for (const message_entry& m : brisolan_messages()) names.push_back(m.name);
    EXPECT_EQ(names, wanted);
}

// How each message reaches its handler, with which arguments: what a patch may send, and what the host alone.
TEST(message_table, tells_the_arguments) {
    const auto words = [](const message_entry& m) {
        std::string text;
        for (const arg_word w : m.handler.words) {
            switch (w) {
            case ARG_NONE: break;
            case ARG_LONG: text += "long "; break;
            case ARG_FLOAT: text += "float "; break;
            case ARG_SYM: text += "symbol "; break;
            case ARG_DEFLONG: text += "[long] "; break;
            case ARG_DEFSYM: text += "[symbol] "; break;
            case ARG_LIST: text += "list "; break;
            case ARG_PRIVATE: text += "private "; break;
            }
        }
        return text;
    };
    const std::map<std::string, std::string> typed{
        {"int", "long "},
        {"float", "float "},
        {"in1", "long "},
        {"in2", "long "},
        {"in3", "long "},
        {"in4", "long "},
        {"in5", "long "},
        {"in6", "long "},
        {"in7", "long "},
        {"nth", "[long] "},
        {"list", "list "},
        {"follow", "[long] "},
        {"startat", "long long long "},
        {"followat", "long long long "},
        {"delay", "long "},
        {"mute", "long long long "},
        {"unmute", "long long "},
        {"setparam", "list "},
        {"params", "long long long "},
        {"import", "list "},
        {"read", "list "},
        {"export", "list "},
        {"write", "list "},
        {"writekel", "[symbol] "},
    };
    const std::set<std::string> plain{"next", "bang",    "clear",     "start", "record",
                                      "stop", "restore", "unmuteall", "open",  "wclose"};
    for (const message_entry& m : brisolan_messages()) {
        const auto found = typed.find(m.name);
        const std::string wanted = found != typed.end()  ? found->second
                                   : plain.count(m.name) ? ""
                                                         : "private ";
        EXPECT_EQ(words(m), wanted) << m.name;
        using enum message_input;
        const std::string name = m.name;
        const message_input input = name == "int"                                ? integer
                                    : name == "bang"                             ? bang
                                    : name == "float"                            ? floating
                                    : name.starts_with("in") && name.size() == 3 ? inlet
                                                                                 : method;
        EXPECT_EQ(m.input, input) << m.name;
        EXPECT_EQ(m.inlet, input == inlet ? name[2] - '0' : 0) << m.name;
    }
}

TEST(message_table, gives_names_of_one_meaning_one_handler) {
    std::map<std::string, host_handler> by_name;
    for (const message_entry& m : brisolan_messages()) by_name[m.name] = m.handler;
    EXPECT_EQ(by_name["bang"].deliver, by_name["next"].deliver);
    EXPECT_EQ(by_name["read"].deliver, by_name["import"].deliver);
    EXPECT_NE(by_name["read"].deliver, by_name["write"].deliver);
    EXPECT_EQ(by_name["filename"].routine, by_name["dblclick"].routine);
    EXPECT_NE(by_name["filename"].routine, by_name["update"].routine);
}

// Whoever looks at an instance in a debugger or extends it finds the fields grouped as they are told of.
TEST(instance_record, stands_in_its_order) {
    const brisolan x;
    const void* const fields[] = {&x.serial,
                                  &x.events,
                                  &x.name,
                                  &x.params,
                                  &x.numfield,
                                  &x.lasttime,
                                  &x.current,
                                  &x.follow_time,
                                  &x.follow_octaves,
                                  &x.follow_skip,
                                  &x.follow_window,
                                  &x.nheld,
                                  &x.follow_pending,
                                  &x.held,
                                  &x.held_tail,
                                  &x.mode,
                                  &x.window,
                                  &x.redraw_qelem,
                                  &x.redraw.redraw_bg,
                                  &x.redraw.redraw_events,
                                  &x.redraw.redraw_panel,
                                  &x.redraw.redraw_editmode,
                                  &x.redraw.redraw_spare,
                                  &x.redraw.changed,
                                  &x.redraw.redraw_marked,
                                  &x.redraw.redraw_values,
                                  &x.redraw.hide_check,
                                  &x.restoring,
                                  &x.timer_clock,
                                  &x.ntracks,
                                  &x.trackshown,
                                  &x.mutes,
                                  &x.patcher,
                                  &x.play_clock,
                                  &x.sending,
                                  &x.lock};
    EXPECT_TRUE(std::is_sorted(std::begin(fields), std::end(fields), std::less<>{}));
    const param_record& p = x.params[0];
    const void* const of_a_parameter[] = {
        &p.name,        &p.mode,      &p.draw,   &p.underline, &p.typing_mark, &p.leg_pict_x, &p.leg_name_x,
        &p.leg_value_x, &p.leg_end_x, &p.outlet, &p.min,       &p.max,         &p.defvalue,   &p.legvalue,
        &p.curvalue,    &p.interval,  &p.scale,  &p.notenames, &p.isset};
    EXPECT_TRUE(std::is_sorted(std::begin(of_a_parameter), std::end(of_a_parameter), std::less<>{}));
}

class loading : public object_test {};

TEST_F(loading, loads_pictures_patterns_cursors_and_note_names) {
    for (const PicHandle p : em_pic) EXPECT_NE(p, nullptr);
    for (const Cursor& c : g_curs) {
        EXPECT_TRUE(
            std::any_of(std::begin(c.mask), std::end(c.mask), [](std::uint16_t row) { return row != 0; }));
    }
    EXPECT_EQ(std::count(std::begin(blk.pat), std::end(blk.pat), 0xFF), 8);
    for (const std::uint8_t row : gry.pat) EXPECT_EQ(std::popcount(row), 4);
    const std::vector<std::string> names(notes.begin(), notes.end());
    EXPECT_EQ(names,
              (std::vector<std::string>{"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"}));
    EXPECT_EQ(static_cast<std::uint16_t>(g_currentcursor), 65535) << "none is chosen";
    EXPECT_STREQ(ps_classname->name, "brisolan");
    EXPECT_STREQ(ps_New->name, "#N");
    EXPECT_STREQ(ps_nothing->name, "");
}

TEST_F(loading, a_stop_and_a_construction_each_take_a_fresh_serial) {
    const std::int32_t before = brisolan_nextserial;
    EXPECT_EQ(before, 2) << "of the construction, and of the stop inside it";
    EXPECT_EQ(x->serial, before);
    send("stop");
    EXPECT_EQ(x->serial, before + 1);
    send("record");
    EXPECT_EQ(x->serial, 0);
    send("stop");
    EXPECT_EQ(x->serial, before + 3);
    kel_make(host_symbol("brisolan"), {});
    EXPECT_EQ(brisolan_nextserial, before + 5);
}

} // namespace
