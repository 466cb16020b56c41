// tests/io/growth_test.cpp: reading and writing ten times the events takes ten times the steps.
// Test layer.
#include "tests/support/growth.h"

#include "tests/support/scratch_folder.h"

namespace {

class io_growth : public growth_test {
protected:
    // Writing n events by one message.
    void expect_writing_in_proportion(const std::string& message) {
        expect_growth(
            IN_PROPORTION,
            [&](int n) {
                const scratch_folder folder;
                fill(n);
                const work_count all = count([&] { send(message); });
                EXPECT_EQ(folder.names().size(), 1U);
                return all;
            },
            FIRST_SIZE);
    }
    // Reading them again by another, over those that are there.
    void expect_reading_in_proportion(const std::string& written_by, const std::string& message) {
        expect_growth(IN_PROPORTION, [&](int n) {
            const scratch_folder folder;
            fill(n);
            send(written_by);
            const work_count all = count([&] { send(message); });
            EXPECT_EQ(x->nevents, n);
            return all;
        });
    }
};

TEST_F(io_growth, writing_one_track) {
    expect_writing_in_proportion("export a.mid 0 0");
}
TEST_F(io_growth, writing_many_tracks) {
    expect_writing_in_proportion("export a.mid 0 1");
}
TEST_F(io_growth, reading_one_track) {
    expect_reading_in_proportion("export a.mid 0 0", "import a.mid");
}
TEST_F(io_growth, reading_many_tracks) {
    expect_reading_in_proportion("export a.mid 0 1", "import a.mid");
}
TEST_F(io_growth, saving_and_loading_text) {
    expect_writing_in_proportion("write a.kel");
    expect_reading_in_proportion("write a.kel", "read a.kel");
}
TEST_F(io_growth, saving_and_loading_binary) {
    expect_writing_in_proportion("write a.kelb");
    expect_reading_in_proportion("write a.kelb", "read a.kelb");
}

} // namespace
