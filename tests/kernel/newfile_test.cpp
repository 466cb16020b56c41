// tests/kernel/newfile_test.cpp: a file that the program writes itself: never half there, and nobody else's replaced.
// Layer: tests.
#include "host/kernel/newfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/kernel/files.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/scratch_folder.h"

namespace {

constexpr file_type SOME_TYPE = host_type("some");

class newfile : public testing::Test {
protected:
    void TearDown() override { kel_file_fault(0); }

    static std::string write(const std::string& name, const std::string& bytes) {
        new_file f;
        if (std::string why = f.open(name, SOME_TYPE); !why.empty()) return why;
        f.write(bytes.data(), bytes.size());
        return f.finish();
    }

    scratch_folder folder;
    using names = std::vector<std::string>;
};

TEST_F(newfile, takes_the_targets_place_when_it_is_finished) {
    put_file("a", "old");
    new_file f;
    ASSERT_EQ(f.open("a", SOME_TYPE), "");
    f.write("....new", 7);
    f.rewind();
    f.write("very", 4);
    EXPECT_EQ(get_file("a"), "old");
    EXPECT_EQ(f.finish(), "");
    EXPECT_EQ(get_file("a"), "verynew");
    EXPECT_EQ(folder.names(), names{"a"});
}

TEST_F(newfile, leaves_the_target_as_it_was_when_it_is_not_finished) {
    put_file("a", "old");
    {
        new_file f;
        ASSERT_EQ(f.open("a", SOME_TYPE), "");
        f.write("new", 3);
        EXPECT_EQ(folder.names().size(), 2U);
    }
    EXPECT_EQ(get_file("a"), "old");
    EXPECT_EQ(folder.names(), names{"a"});
}

TEST_F(newfile, leaves_the_target_as_it_was_whichever_operation_fails) {
    int failures = 0;
    for (int k = 1; k < 50; ++k) {
        put_file("a", "old");
        kel_file_fault(k, HOST_ERR_FULL);
        const std::string why = write("a", "new");
        const bool faulted = kel_file_faulted();
        kel_file_fault(0);
        if (!faulted) break;
        EXPECT_EQ(why, "no space left") << k;
        EXPECT_EQ(get_file("a"), "old") << k;
        EXPECT_EQ(folder.names(), names{"a"}) << k;
        ++failures;
    }
    EXPECT_GT(failures, 4);
}

TEST_F(newfile, goes_where_a_link_leads_and_keeps_the_rights) {
    put_file("target", "old");
    ASSERT_EQ(::chmod("target", 0600), 0);
    ASSERT_EQ(::symlink("target", "link"), 0);
    EXPECT_EQ(write("link", "new"), "");
    EXPECT_EQ(get_file("target"), "new");
    struct stat link {};
    struct stat target {};
    ASSERT_EQ(::lstat("link", &link), 0);
    EXPECT_TRUE(S_ISLNK(link.st_mode));
    ASSERT_EQ(::stat("target", &target), 0);
    EXPECT_EQ(target.st_mode & 0777, 0600U);
}

TEST_F(newfile, does_not_replace_what_is_protected_from_writing) {
    const ordinary_user now(folder.path());
    put_file("a", "old");
    ASSERT_EQ(::chmod("a", 0444), 0);
    EXPECT_EQ(write("a", "new"), "not allowed");
    EXPECT_EQ(get_file("a"), "old");
}

TEST_F(newfile, never_takes_a_devices_or_a_folders_place) {
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    ASSERT_EQ(::mkdir("folder", 0700), 0);
    for (const char* name : {"pipe", "folder"})
        EXPECT_EQ(write(name, "new"), "a folder, or not to be opened as a file") << name;
    struct stat about {};
    ASSERT_EQ(::stat("pipe", &about), 0);
    EXPECT_TRUE(S_ISFIFO(about.st_mode));
    EXPECT_EQ(folder.names(), (names{"folder", "pipe"}));
}

TEST_F(newfile, a_name_may_be_as_long_as_the_system_lets_it_be) {
    const std::string longest(255, 'a');
    EXPECT_EQ(write(longest, "new"), "");
    EXPECT_EQ(folder.names(), names{longest});
    EXPECT_EQ(write(longest + "a", "new"), "not a possible name");
}

TEST_F(newfile, is_allowed_where_others_may_not_write_by_name) {
    kel_files_protect(true);
    EXPECT_EQ(write("a", "new"), "");
    kel_files_protect(false);
    EXPECT_EQ(get_file("a"), "new");
}

} // namespace
