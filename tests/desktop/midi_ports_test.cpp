// tests/desktop/midi_ports_test.cpp: naming a MIDI port.
// Layer: tests.
#include "host/desktop/midi_ports.h"

#include <gtest/gtest.h>

namespace {

const std::vector<midi_port> PORTS{
    {0, "Midi Through:Midi Through Port-0 14:0", "ALSA"},
    {1, "Keys:Keys MIDI 1 20:0", "ALSA"},
    {2, "Keys:Keys MIDI 2 20:1", "ALSA"},
    {3, "synth:in", "JACK"},
    {4, "synth:in 2", "JACK"},
    {5, "3", "JACK"},
};

struct choice {
    int number = -1;
    std::string error;
};

choice choose(const std::string& wanted, const std::vector<midi_port>& ports = PORTS,
              midi_direction direction = midi_direction::out) {
    choice c;
    const midi_port* port = midi_choose_port(ports, wanted, direction, c.error);
    if (port) c.number = port->number;
    return c;
}

TEST(choose_midi_port, by_number) {
    EXPECT_EQ(choose("4").number, 4);
}

TEST(choose_midi_port, a_number_goes_before_a_name_of_digits) {
    EXPECT_EQ(choose("3").number, 3);
}

TEST(choose_midi_port, a_name_of_digits_is_found_where_no_port_has_the_number) {
    EXPECT_EQ(choose("99", {{0, "99", "JACK"}}).number, 0);
}

TEST(choose_midi_port, the_whole_name_goes_before_longer_ones_that_begin_with_it) {
    EXPECT_EQ(choose("synth:in").number, 3);
}

TEST(choose_midi_port, by_the_beginning_of_one_name_whatever_its_case) {
    EXPECT_EQ(choose("midi th").number, 0);
    EXPECT_EQ(choose("KEYS:keys midi 2").number, 2);
}

TEST(choose_midi_port, several_beginnings_are_an_error_that_lists_them) {
    const choice c = choose("keys");
    EXPECT_EQ(c.number, -1);
    EXPECT_EQ(c.error, "several MIDI outputs fit \"keys\": 1 \"Keys:Keys MIDI 1 20:0\" (ALSA), "
                       "2 \"Keys:Keys MIDI 2 20:1\" (ALSA)");
}

TEST(choose_midi_port, one_name_in_two_systems_is_told_apart_by_number) {
    const std::vector<midi_port> twins{{0, "box", "ALSA"}, {1, "box", "JACK"}};
    EXPECT_EQ(choose("box", twins).error,
              "several MIDI outputs fit \"box\": 0 \"box\" (ALSA), 1 \"box\" (JACK)");
    EXPECT_EQ(choose("1", twins).number, 1);
}

TEST(choose_midi_port, none_is_an_error_that_lists_all) {
    EXPECT_EQ(choose("flute", {{0, "a", "ALSA"}, {1, "b", "JACK"}}, midi_direction::in).error,
              "no MIDI input fits \"flute\"; there are 0 \"a\" (ALSA), 1 \"b\" (JACK)");
    EXPECT_EQ(choose("7", {{0, "a", "ALSA"}}).error, "no MIDI output fits \"7\"; there is 0 \"a\" (ALSA)");
    EXPECT_EQ(choose("a", {}).error, "no MIDI output fits \"a\"; there is none");
}

TEST(choose_midi_port, an_empty_name_fits_the_only_port_alone) {
    EXPECT_EQ(choose("", {{0, "a", "ALSA"}}).number, 0);
    EXPECT_EQ(choose("").number, -1);
}

} // namespace
