// tests/io/midi_corpus_test.cpp: MIDI files that others wrote, sound and damaged.
// Test layer. Run by ctest.
#include "tests/io/io_test.h"

namespace {

// What a file must give: how many notes, and what the console says. The counts were taken from the bytes by a decoder of
// its own, which knows nothing of this reader.
struct expected {
    const char* name;
    std::size_t notes;
    const char* said = "";
};

constexpr const char* bad = "error brisolan: %s: bad midi file";
constexpr const char* format_2 = "error brisolan: MIDI File format 2 not supported";
constexpr const char* funky = "post fdt < 0... something's funky";

constexpr expected files[] = {
    {"test-2-tracks-type-0", 16},
    {"test-2-tracks-type-1", 16},
    {"test-2-tracks-type-2", 0, format_2},
    {"test-all-gm-percussion", 183},
    {"test-all-gm-sounds", 512},
    {"test-all-gm2-sounds", 1060},
    {"test-all-microsoft-gs-wavetable-synth-sounds", 904},
    {"test-c-major-scale", 8},
    {"test-control-00-20-bank-select", 8},
    {"test-control-40-damper", 8},
    {"test-control-41-portamento", 8},
    {"test-control-54-portamento-control", 1},
    {"test-control-7c-omni-mode-off", 0},
    {"test-control-7d-omni-mode-on", 0},
    {"test-control-7e-mono-mode-on", 0},
    {"test-control-7f-poly-mode-on", 0},
    {"test-corrupt-file-extra-byte", 8},
    {"test-corrupt-file-missing-byte", 8},
    {"test-empty-file", 0, bad},
    {"test-empty", 0},
    {"test-gm2-doggy-78-00-38-4c", 3},
    {"test-gm2-doggy-79-01-7b", 3},
    {"test-gs-doggy-01-00-7b", 3},
    {"test-illegal-message-all", 0},
    {"test-illegal-message-f1-xx", 0},
    {"test-illegal-message-f2-xx-xx", 0},
    {"test-illegal-message-f3-xx", 0},
    {"test-illegal-message-f4", 0},
    {"test-illegal-message-f5", 0},
    {"test-illegal-message-f6", 0},
    {"test-illegal-message-f8", 0},
    {"test-illegal-message-f9", 0},
    {"test-illegal-message-fa", 0},
    {"test-illegal-message-fb", 0},
    {"test-illegal-message-fc", 0},
    {"test-illegal-message-fd", 0},
    {"test-illegal-message-fe", 0},
    {"test-karaoke-kar", 29},
    {"test-multichannel-chords-0", 24},
    {"test-multichannel-chords-1", 24},
    {"test-multichannel-chords-2", 24},
    {"test-multichannel-chords-3", 24},
    {"test-non-midi-track", 8},
    {"test-not-a-midi-file", 0, bad},
    {"test-note-on-velocity", 9},
    {"test-rpn-00-00-pitch-bend-range", 5},
    {"test-rpn-00-01-fine-tuning", 25},
    {"test-rpn-00-02-coarse-tuning", 8},
    {"test-rpn-00-05-modulation-depth-range", 5},
    {"test-running-status-metaevent", 8},
    {"test-running-status-sysex", 8},
    {"test-silence-all-notes-off", 0},
    {"test-silence-end-of-track", 0},
    {"test-silence-text-metaevent", 0},
    {"test-smpte-offset", 8},
    {"test-sysex-7e-06-01-id-request", 0},
    {"test-sysex-7e-09-01-gm1-enable", 0},
    {"test-sysex-7e-09-02-gm-disable", 0},
    {"test-sysex-7e-09-03-gm2-enable", 0},
    {"test-sysex-7f-04-03-master-fine-tuning", 5},
    {"test-sysex-7f-04-04-master-coarse-tuning", 8},
    {"test-sysex-7x-08-0x-scale-tuning", 65},
    {"test-sysex-gs-40-1x-15-drum-part-change", 8},
    {"test-sysex-gs-40-1x-4x-scale-tuning", 3},
    {"test-track-length", 1},
    {"test-vlq-2-byte", 8},
    {"test-vlq-3-byte", 8},
    {"test-vlq-4-byte", 8},
    {"test-xg-doggy-40-00-30", 3},
    {"test-xg-doggy-7e-00-00-54", 3},
};

class midi_corpus : public io_test {};

TEST_F(midi_corpus, every_file_gives_its_notes) {
    const std::filesystem::path all = std::filesystem::path(BRISOLAN_SOURCE_DIR) / "tests/data/midi-files";
    std::size_t seen = 0;
    for (const expected& e : files) {
        const std::filesystem::path file = all / (std::string(e.name) + ".mid");
        ASSERT_TRUE(std::filesystem::exists(file)) << file;
        ++seen;
        std::string line = e.said;
        if (const std::size_t at = line.find("%s"); at != std::string::npos)
            line.replace(at, 2, file.string());
        send("clear");
        EXPECT_EQ(told("read \"" + file.string() + "\""), line.empty() ? text_lines{} : text_lines{line})
            << e.name;
        EXPECT_EQ(events().size(), e.notes) << e.name;
        EXPECT_EQ(brisolan_brokeninvariant(x), nullptr) << e.name;
    }
    std::size_t there = 0;
    for (const auto& entry : std::filesystem::directory_iterator(all))
        there += entry.path().extension() == ".mid";
    EXPECT_EQ(there, seen) << "a file without its line";
}

// Two scales at once, half a second a note at 96 ticks; the second half a tone above; of equal times its notes
// are first.
TEST_F(midi_corpus, two_tracks_are_read_to_the_millisecond) {
    const std::string folder_of_files = std::string(BRISOLAN_SOURCE_DIR) + "/tests/data/midi-files/";
    EXPECT_EQ(told("read \"" + folder_of_files + "test-2-tracks-type-1.mid\""), text_lines{});
    const int up[] = {60, 62, 64, 65, 67, 69, 71, 72};
    text_lines both;
    for (int i = 0; i < 8; ++i) {
        const std::string time = std::to_string(500 + 500 * i);
        both.push_back(time + " " + std::to_string(up[i] + 1) + " 127 500 2 2 0 0");
        both.push_back(time + " " + std::to_string(up[i]) + " 127 500 1 1 0 0");
    }
    EXPECT_EQ(events(), both);
}

} // namespace
