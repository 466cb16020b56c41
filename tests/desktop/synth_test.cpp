// tests/desktop/synth_test.cpp: finding a sound font, the WAV file, and what a rendering sounds like.
// Layer: tests.
#include "host/desktop/synth.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "host/boxes/midi_device.h"
#include "host/desktop/audio_wav.h"
#include "host/headless/headless.h"
#include "tests/support/ordinary_user.h"

namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class in_a_folder : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "brisolan-sound-XXXXXX").string();
        folder = mkdtemp(name.data());
        unsetenv("BRISOLAN_SOUNDFONT");
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string make(const std::string& name, const std::string& text = "x") {
        std::ofstream(folder / name) << text;
        return (folder / name).string();
    }
    std::size_t files() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    fs::path folder;
};

using find_font_test = in_a_folder;

TEST_F(find_font_test, the_one_asked_for_goes_first) {
    setenv("BRISOLAN_SOUNDFONT", make("set.sf2").c_str(), 1);
    std::string error;
    EXPECT_EQ(synth_find_font(make("asked.sf2"), make("usual.sf2"), error), (folder / "asked.sf2").string());
    EXPECT_EQ(synth_find_font("", make("usual.sf2"), error), (folder / "set.sf2").string());
    unsetenv("BRISOLAN_SOUNDFONT");
    EXPECT_EQ(synth_find_font("", make("usual.sf2"), error), (folder / "usual.sf2").string());
}

TEST_F(find_font_test, one_that_was_named_and_is_not_there_is_an_error_not_passed_over) {
    std::string error;
    EXPECT_EQ(synth_find_font((folder / "no.sf2").string(), make("usual.sf2"), error), "");
    EXPECT_EQ(error, "sound font " + (folder / "no.sf2").string() + ": No such file or directory");
    EXPECT_EQ(synth_find_font(folder.string(), "", error), "");
    EXPECT_EQ(error, "sound font " + folder.string() + ": Is a directory");
    setenv("BRISOLAN_SOUNDFONT", (folder / "unset.sf2").c_str(), 1);
    EXPECT_EQ(synth_find_font("", make("usual.sf2"), error), "");
    EXPECT_EQ(error, "sound font " + (folder / "unset.sf2").string() + ": No such file or directory");
    unsetenv("BRISOLAN_SOUNDFONT");
}

using wav_file_test = in_a_folder;

TEST_F(wav_file_test, has_the_forms_header_and_its_samples_low_byte_first) {
    const std::string file = (folder / "a.wav").string();
    wav_file wav;
    ASSERT_EQ(wav.open(file), "");
    const std::int16_t samples[] = {1, -2, 0x1234, -32768};
    wav.write(samples);
    ASSERT_EQ(wav.finish(), "");
    using namespace std::string_literals;
    EXPECT_EQ(contents(file),
              "RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0\x44\xac\0\0\x10\xb1\x02\0\x04\0\x10\0"
              "data\x08\0\0\0\x01\0\xfe\xff\x34\x12\0\x80"s);
    EXPECT_EQ(files(), 1U);
}

TEST_F(wav_file_test, the_old_file_stands_until_the_new_one_is_whole) {
    const std::string file = make("a.wav", "old");
    {
        wav_file wav;
        ASSERT_EQ(wav.open(file), "");
        wav.write(std::array<std::int16_t, 2>{1, 2});
        EXPECT_EQ(contents(file), "old");
        EXPECT_EQ(files(), 2U);
    }
    EXPECT_EQ(contents(file), "old");
    EXPECT_EQ(files(), 1U);
}

TEST_F(wav_file_test, a_second_finished_file_replaces_the_first) {
    const std::string file = make("a.wav", "old");
    wav_file wav;
    ASSERT_EQ(wav.open(file), "");
    ASSERT_EQ(wav.finish(), "");
    EXPECT_EQ(contents(file).size(), 44U);
}

TEST_F(wav_file_test, goes_where_a_link_leads_and_keeps_the_rights) {
    const fs::path target = make("target.wav", "old");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("target.wav", folder / "a.wav");
    wav_file wav;
    ASSERT_EQ(wav.open((folder / "a.wav").string()), "");
    ASSERT_EQ(wav.finish(), "");
    EXPECT_TRUE(fs::is_symlink(folder / "a.wav"));
    EXPECT_EQ(contents(target).size(), 44U);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(wav_file_test, does_not_replace_what_is_protected_from_writing) {
    const ordinary_user now(folder);
    const std::string file = make("a.wav", "old");
    fs::permissions(file, fs::perms::owner_read);
    wav_file wav;
    EXPECT_EQ(wav.open(file), file + ": not allowed");
    EXPECT_EQ(contents(file), "old");
}

TEST_F(wav_file_test, what_cannot_be_written_is_named) {
    wav_file wav;
    EXPECT_EQ(wav.open("/nowhere/a.wav"), "/nowhere/a.wav: no such file or folder");
    wav_file over;
    EXPECT_EQ(over.open(folder.string()), folder.string() + ": a folder, or not to be opened as a file");
    wav_file device;
    EXPECT_EQ(device.open("/dev/full"), "/dev/full: a folder, or not to be opened as a file");
}

#if BRISOLAN_HAVE_FLUIDSYNTH

// The samples of a rendering, and how loud it is at a time.
struct sound {
    std::vector<int> left;

    explicit sound(const std::string& wav) {
        for (std::size_t i = 44; i + 3 < wav.size(); i += 4) {
            const auto low = static_cast<unsigned char>(wav[i]);
            const auto high = static_cast<unsigned char>(wav[i + 1]);
            left.push_back(std::bit_cast<std::int16_t>(static_cast<std::uint16_t>(low | high << 8)));
        }
    }
    double seconds() const { return static_cast<double>(left.size()) / AUDIO_RATE; }
    // Root mean square of the samples from one time to another, in milliseconds.
    double loudness(int from, int to) const {
        double sum = 0;
        const std::size_t begin = frame(from), end = std::min(frame(to), left.size());
        for (std::size_t i = begin; i < end; ++i) sum += static_cast<double>(left[i]) * left[i];
        return end > begin ? std::sqrt(sum / static_cast<double>(end - begin)) : 0;
    }
    // The first frame from a time on that is louder than dither, in milliseconds.
    double first_sound(int from) const {
        std::size_t i = frame(from);
        while (i < left.size() && std::abs(left[i]) <= 4) ++i;
        return static_cast<double>(i) * 1000 / AUDIO_RATE;
    }
    static std::size_t frame(int ms) { return static_cast<std::size_t>(ms) * AUDIO_RATE / 1000; }
};

class synth_render_test : public in_a_folder {
protected:
    void SetUp() override {
        in_a_folder::SetUp();
        headless_start(&machine);
    }
    void TearDown() override {
        EXPECT_TRUE(headless_end());
        in_a_folder::TearDown();
    }
    void play(int channel, int pitch, int velocity) {
        const host_locked_out now;
        midi_send(1, channel, pitch, velocity);
    }
    // Two notes of half a second, at 500 and at 2000 ms.
    std::string two_notes(const std::string& name) {
        std::string error;
        const std::string file = (folder / name).string();
        const std::unique_ptr<synth_render> render = synth_render_open("", file, error);
        if (!render) return error;
        for (int i = 0; i < 2; ++i) {
            headless_wait(i ? 1000 : 500);
            play(1, 60 + i, 100);
            headless_wait(500);
            play(1, 60 + i, 0);
        }
        return render->finish();
    }

    headless machine;
};

TEST_F(synth_render_test, notes_sound_where_they_should_and_silence_is_silent) {
    ASSERT_EQ(two_notes("a.wav"), "");
    const sound s(contents(folder / "a.wav"));
    EXPECT_LT(s.loudness(0, 495), 2);
    EXPECT_GT(s.loudness(520, 980), 100);
    EXPECT_GT(s.loudness(2020, 2480), 100);
    EXPECT_LT(s.loudness(1800, 1990), s.loudness(520, 980) / 20);
    EXPECT_NEAR(s.first_sound(0), 500, 10);
}

TEST_F(synth_render_test, lasts_until_the_last_note_has_died_away_and_not_much_longer) {
    ASSERT_EQ(two_notes("a.wav"), "");
    const sound s(contents(folder / "a.wav"));
    EXPECT_GT(s.seconds(), 2.5);
    EXPECT_LT(s.seconds(), 8);
    const int end = static_cast<int>(s.seconds() * 1000);
    EXPECT_LT(s.loudness(end - 20, end), 3);
}

TEST_F(synth_render_test, the_same_notes_give_the_same_bytes) {
    ASSERT_EQ(two_notes("a.wav"), "");
    ASSERT_EQ(two_notes("b.wav"), "");
    const std::string a = contents(folder / "a.wav");
    EXPECT_GT(a.size(), 400'000U);
    EXPECT_TRUE(a == contents(folder / "b.wav"));
}

TEST_F(synth_render_test, a_note_that_nobody_ends_is_ended_at_the_end) {
    std::string error;
    const std::unique_ptr<synth_render> render = synth_render_open("", (folder / "a.wav").string(), error);
    ASSERT_TRUE(render) << error;
    play(1, 60, 100);
    headless_wait(200);
    ASSERT_EQ(render->finish(), "");
    EXPECT_LT(sound(contents(folder / "a.wav")).seconds(), 6);
}

TEST_F(synth_render_test, without_its_end_there_is_no_file) {
    std::string error;
    ASSERT_TRUE(synth_render_open("", (folder / "a.wav").string(), error)) << error;
    EXPECT_EQ(files(), 0U);
}

TEST_F(synth_render_test, what_is_no_sound_font_is_named) {
    const std::string font = make("text.sf2", "no font");
    std::string error;
    EXPECT_FALSE(synth_render_open(font, (folder / "a.wav").string(), error));
    EXPECT_EQ(error, "sound font " + font + ": not a sound font, or broken");
    EXPECT_EQ(files(), 1U);
}

#endif

} // namespace
