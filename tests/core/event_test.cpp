// tests/core/event_test.cpp: the parameters' fixed description, and the table of messages.
// Test layer.
#include "core/event.h"

#include <algorithm>
#include <tuple>

#include "core/class.h"
#include "tests/support/host_test.h"

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

class loading : public object_test {};

TEST_F(loading, loads_pictures_patterns_cursors_and_note_names) {
    for (const PicHandle p : em_pic) EXPECT_NE(p, nullptr);
    for (const Cursor& c : g_curs) {
        EXPECT_TRUE(
            std::any_of(std::begin(c.mask), std::end(c.mask), [](std::uint16_t row) { return row != 0; }));
    }
    EXPECT_EQ(std::count(std::begin(blk.pat), std::end(blk.pat), 0xFF), 8);
    EXPECT_STREQ(notes[0], "C");
    EXPECT_STREQ(notes[10], "A#");
    EXPECT_STREQ(ps_classname->name, "brisolan");
    EXPECT_STREQ(ps_New->name, "#N");
    EXPECT_STREQ(ps_nothing->name, "");
}

TEST_F(loading, a_stop_and_a_construction_each_take_a_fresh_serial) {
    const std::int32_t before = brisolan_nextserial;
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
