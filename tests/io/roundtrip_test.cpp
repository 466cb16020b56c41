// tests/io/roundtrip_test.cpp: random sequences written and read back.
// Test layer. Run by ctest.
#include <random>

#include "io/embedding.h"
#include "tests/io/io_test.h"

namespace {

class roundtrip : public io_test {
protected:
    std::int32_t roll(int n) { return static_cast<std::int32_t>(random() % static_cast<unsigned>(n)); }
    std::int32_t any() { return static_cast<std::int32_t>(random()) >> roll(32); }

    void clear_and_append(const std::vector<std::array<std::int32_t, NPARAMS>>& all) {
        send("clear");
        for (const auto& v : all) {
            x->lasttime = v[0];
            brisolan_append(x, 0, v, false);
        }
        kel_run_queue();
    }

    std::mt19937 random{40};
};

// A velocity of 0 would come back as a note-off, and a Time's descent as none.
TEST_F(roundtrip, documents_of_both_forms_give_the_same_events) {
    for (int round = 0; round < 200; ++round) {
        std::vector<std::array<std::int32_t, NPARAMS>> all;
        std::int32_t time = 0;
        for (int n = roll(60); n > 0; --n) {
            time += roll(3) ? roll(1000) : 0;
            const std::int32_t vel = any();
            all.push_back({time, any(), vel ? vel : 1, any(), any(), any(), any(), any()});
        }
        clear_and_append(all);
        const text_lines before = events();
        for (const file_type form : {TEXT_FILE, BINARY_FILE}) {
            ASSERT_EQ(brisolan_kelfile(x, "a", 0, form), HOST_OK);
            std::filesystem::rename("a", form == TEXT_FILE ? "a.kel" : "a.kelb");
            send("clear");
            ASSERT_EQ(told(form == TEXT_FILE ? "read a.kel" : "read a.kelb"), text_lines{});
            ASSERT_EQ(events(), before) << "round " << round;
        }
    }
}

TEST_F(roundtrip, descriptions_come_back_but_for_the_display_mode) {
    for (int round = 0; round < 100; ++round) {
        for (param_record& p : x->params) {
            p.name = host_symbol(roll(2) ? "two words;" : "x\"1");
            p.mode = std::uint8_t{0};
            p.min = any();
            p.max = any();
            p.defvalue = any();
            p.interval = any();
            p.scale = any();
            p.notenames = static_cast<std::uint8_t>(roll(2));
        }
        const auto described = [this] {
            text_lines all;
            for (const param_record& p : x->params) {
                all.push_back(
                    std::string(p.name->name) + " " + std::to_string(p.min) + " " + std::to_string(p.max) +
                    " " + std::to_string(p.defvalue) + " " + std::to_string(p.interval) + " " +
                    std::to_string(p.scale == 0 ? 1 : p.scale.get()) + " " + std::to_string(p.notenames));
            }
            return all;
        };
        const text_lines before = described();
        const file_type form = round % 2 ? TEXT_FILE : BINARY_FILE;
        const char* name = round % 2 ? "a.kel" : "a.kelb";
        ASSERT_EQ(brisolan_kelfile(x, name, 0, form), HOST_OK);
        for (param_record& p : x->params) p.min = p.max = p.defvalue = 0;
        ASSERT_EQ(told(std::string("read ") + name), text_lines{});
        ASSERT_EQ(described(), before);
    }
}

// Two ticks a millisecond, read back by halves.
TEST_F(roundtrip, midi_files_in_the_time_code_base_give_the_same_times) {
    for (int round = 0; round < 100; ++round) {
        std::vector<std::array<std::int32_t, NPARAMS>> all;
        std::int32_t time = 0;
        // One note at a time, so that each finds its note-off, and each later than the one before.
        for (int n = roll(60); n > 0; --n) {
            time += 1 + roll(5000);
            const std::int32_t dur = roll(2000);
            all.push_back({time, roll(128), 1 + roll(127), dur, 1 + roll(16), 1, 0, 0});
            time += dur;
        }
        clear_and_append(all);
        const text_lines before = events();
        for (const char* multitrack : {"0", "1"}) {
            told(std::string("export a.mid 1 ") + multitrack);
            send("clear");
            ASSERT_EQ(told("read a.mid 1"), text_lines{});
            ASSERT_EQ(events(), before) << "round " << round;
        }
    }
}

TEST_F(roundtrip, tracks_of_a_midi_file_come_back) {
    std::vector<std::array<std::int32_t, NPARAMS>> all;
    for (std::int32_t i = 0; i < 400; ++i)
        all.push_back({i * 10, 60 + i % 12, 64, 5, 1 + i % 16, 1 + i % 32, 0, 0});
    clear_and_append(all);
    const text_lines before = events();
    told("export a.mid 1 1");
    send("clear");
    ASSERT_EQ(told("read a.mid 1"), text_lines{});
    EXPECT_EQ(events(), before);
}

} // namespace
