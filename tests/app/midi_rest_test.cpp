// tests/app/midi_rest_test.cpp: what a MIDI file holds beside its notes.
// Test layer.
#include "app/midi_rest.h"

#include <initializer_list>

#include <gtest/gtest.h>

namespace {

using words = std::vector<std::string>;
using bytes = std::vector<unsigned char>;

bytes file_of(std::initializer_list<unsigned char> track) {
    bytes all{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1, 0, 96, 'M', 'T', 'r', 'k', 0, 0, 0};
    all.push_back(static_cast<unsigned char>(track.size()));
    all.insert(all.end(), track);
    return all;
}

TEST(midi_rest, notes_alone_leave_nothing) {
    EXPECT_EQ(midi_rest(file_of({0, 0x90, 60, 64, 96, 60, 0, 0, 0x80, 60, 0, 0, 0xFF, 0x2F, 0})), words{});
}

TEST(midi_rest, the_tempo_that_is_written_is_none_and_any_other_is) {
    EXPECT_EQ(midi_rest(file_of({0, 0xFF, 0x51, 3, 0x07, 0xA1, 0x20})), words{});
    EXPECT_EQ(midi_rest(file_of({0, 0xFF, 0x51, 3, 0x0B, 0x71, 0xB0})), words{"tempo"});
    EXPECT_EQ(midi_rest(file_of({96, 0xFF, 0x51, 3, 0x07, 0xA1, 0x20})), words{"tempo"})
        << "a change later on";
}

TEST(midi_rest, every_kind_is_told_once_and_running_status_is_followed) {
    EXPECT_EQ(midi_rest(file_of({0,    0xC0, 5,    0,    6,    0,    0xB0, 7,    100,  0,  10, 64,  0,
                                 0x90, 60,   64,   0,    0xE0, 0,    1,    0,    0xA0, 60, 1,  0,   0xD0,
                                 3,    0,    0xF0, 2,    1,    0xF7, 0,    0xFF, 0x58, 4,  4,  2,   24,
                                 8,    0,    0xFF, 0x59, 2,    0,    0,    0,    0xFF, 3,  2,  'a', 'b'})),
              (words{"program changes", "controllers", "pitch bend", "pressure", "meter", "key",
                     "names and texts", "system exclusive"}));
}

TEST(midi_rest, what_is_cut_off_anywhere_is_read_as_far_as_it_goes) {
    const bytes whole = file_of({0, 0xC0, 5, 0, 0xFF, 3, 2, 'a', 'b', 0, 0xF0, 0x81, 0x00, 1});
    for (std::size_t n = 0; n <= whole.size(); ++n) {
        const bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
        EXPECT_EQ(midi_rest(part).empty(), n < 24) << n;
    }
    EXPECT_EQ(midi_rest(bytes{}), words{});
    EXPECT_EQ(midi_rest_of("/nowhere.mid"), words{});
}

} // namespace
