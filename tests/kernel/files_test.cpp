// tests/kernel/files_test.cpp: the file service: types, places, codes, and that a target is only replaced by a whole file.
// Test layer. Run by ctest.
#include "host/kernel/files.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "tests/support/host_test.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/scratch_folder.h"

namespace {

namespace fs = std::filesystem;
constexpr std::array<file_type, 3> all_types{TYPE_MIDI, TYPE_TEXT, TYPE_KELB};

class files : public host_test {
protected:
    void TearDown() override {
        kel_file_fault(0);
        kel_setsearchpath({});
        host_test::TearDown();
    }

    // Creates a file of these bytes through the service; the code of the close, or of what failed before.
    static host_err save(const char* name, const std::string& bytes, file_type type = TYPE_TEXT) {
        host_file* f = nullptr;
        if (const host_err e = host_file_create(name, 0, type, &f)) return e;
        std::int32_t count = static_cast<std::int32_t>(bytes.size());
        (void)host_file_write(f, &count, bytes.data());
        return host_file_close(f);
    }

    static host_err open_code(const char* name) {
        host_file* f = nullptr;
        const host_err e = host_file_open(name, 0, &f);
        if (f) host_file_close(f);
        return e;
    }

    static host_err locate(const char* name, std::int16_t* path, file_type* type) {
        return host_file_locate(name, path, type, all_types);
    }

    scratch_folder folder;
};

TEST_F(files, an_ending_tells_the_type_of_a_file_from_elsewhere) {
    EXPECT_EQ(kel_filetype("a.mid"), TYPE_MIDI);
    EXPECT_EQ(kel_filetype("a.midi"), TYPE_MIDI);
    EXPECT_EQ(kel_filetype("a.smf"), TYPE_MIDI);
    EXPECT_EQ(kel_filetype("a.kar"), TYPE_MIDI);
    EXPECT_EQ(kel_filetype("some.where/A.MID"), TYPE_MIDI);
    EXPECT_EQ(kel_filetype("a.kelb"), TYPE_KELB);
    EXPECT_EQ(kel_filetype("a.kel"), TYPE_TEXT);
    EXPECT_EQ(kel_filetype("a.txt"), TYPE_TEXT);
    EXPECT_EQ(kel_filetype("a"), 0U);
    EXPECT_EQ(kel_filetype("a.wav"), 0U);
    EXPECT_EQ(kel_filetype(".mid"), 0U);
    EXPECT_EQ(kel_filetype("folder.mid/a"), 0U);
}

TEST_F(files, a_created_file_keeps_its_type_whatever_its_name) {
    ASSERT_EQ(save("take1", "x", TYPE_MIDI), HOST_OK);
    if (::getxattr("take1", "user.brisolan.type", nullptr, 0) < 0)
        GTEST_SKIP() << "no extended attributes on this file system";
    EXPECT_EQ(kel_filetype("take1"), TYPE_MIDI);
    ASSERT_EQ(save("take2.mid", "x", TYPE_TEXT), HOST_OK);
    EXPECT_EQ(kel_filetype("take2.mid"), TYPE_TEXT);
}

TEST_F(files, an_attribute_of_another_size_is_no_type) {
    put_file("a.mid", "x");
    if (::setxattr("a.mid", "user.brisolan.type", "no", 2, 0) != 0)
        GTEST_SKIP() << "no extended attributes on this file system";
    EXPECT_EQ(kel_filetype("a.mid"), TYPE_MIDI);
}

TEST_F(files, locate_looks_in_the_current_folder_then_along_the_search_path) {
    fs::create_directories("one");
    fs::create_directories("two");
    put_file("two/a.mid", "two");
    kel_setsearchpath({"one", "two"});
    std::int16_t path = -1;
    file_type type = 0;
    ASSERT_EQ(locate("a.mid", &path, &type), HOST_OK);
    EXPECT_EQ(kel_filepath("a.mid", path), "two/a.mid");
    put_file("one/a.mid", "one");
    ASSERT_EQ(locate("a.mid", &path, &type), HOST_OK);
    EXPECT_EQ(kel_filepath("a.mid", path), "one/a.mid");
    put_file("a.mid", "here");
    ASSERT_EQ(locate("a.mid", &path, &type), HOST_OK);
    EXPECT_EQ(path, 0);
    EXPECT_EQ(type, TYPE_MIDI);
}

TEST_F(files, locate_takes_folders_in_names_and_names_from_the_root) {
    fs::create_directories("one/deep");
    put_file("one/deep/a.kel", "x");
    std::int16_t path = -1;
    file_type type = 0;
    ASSERT_EQ(locate("one/deep/a.kel", &path, &type), HOST_OK);
    EXPECT_EQ(type, TYPE_TEXT);
    const std::string absolute = (folder.path() / "one/deep/a.kel").string();
    ASSERT_EQ(locate(absolute.c_str(), &path, &type), HOST_OK);
    EXPECT_EQ(open_code(absolute.c_str()), HOST_OK);
    kel_setsearchpath({"one"});
    ASSERT_EQ(locate("deep/a.kel", &path, &type), HOST_OK);
    EXPECT_EQ(kel_filepath("deep/a.kel", path), "one/deep/a.kel");
}

TEST_F(files, locate_passes_files_of_other_types) {
    put_file("a", "x");
    put_file("b.wav", "x");
    std::int16_t path = -1;
    file_type type = 0;
    EXPECT_EQ(locate("a", &path, &type), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(locate("b.wav", &path, &type), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(locate("c.mid", &path, &type), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(locate("", &path, &type), HOST_ERR_NAME);
    fs::create_directories("one");
    put_file("b.mid", "x");
    put_file("one/b.mid", "x");
    constexpr file_type text = TYPE_TEXT;
    kel_setsearchpath({"one"});
    EXPECT_EQ(host_file_locate("b.mid", &path, &type, {&text, 1}), HOST_ERR_NOT_FOUND);
}

TEST_F(files, a_file_goes_before_a_folder_of_its_name) {
    fs::create_directories("a.mid");
    fs::create_directories("one");
    std::int16_t path = -1;
    file_type type = 0;
    kel_setsearchpath({"one"});
    EXPECT_EQ(locate("a.mid", &path, &type), HOST_OK);
    EXPECT_EQ(open_code("a.mid"), HOST_ERR_BUSY);
    put_file("one/a.mid", "x");
    EXPECT_EQ(locate("a.mid", &path, &type), HOST_OK);
    EXPECT_EQ(kel_filepath("a.mid", path), "one/a.mid");
}

// With a single place to look in fewer calls of the system tell it.
TEST_F(files, locate_finds_the_same_with_and_without_a_search_path) {
    put_file("file.mid", "x");
    put_file("empty.mid", "");
    put_file("locked.mid", "x");
    fs::create_directories("folder.mid");
    fs::create_symlink("file.mid", "link.mid");
    fs::create_symlink("nowhere.mid", "dangling.mid");
    fs::create_symlink("round.mid", "round.mid");
    ASSERT_EQ(::mkfifo("pipe.mid", 0600), 0);
    ASSERT_EQ(::chmod("locked.mid", 0), 0);
    const ordinary_user now(folder.path());
    const std::string absolute = (folder.path() / "file.mid").string();
    const std::pair<std::string, host_err> wanted[] = {
        {"file.mid", HOST_OK},
        {"empty.mid", HOST_OK},
        {"locked.mid", HOST_OK},
        {"folder.mid", HOST_OK},
        {"link.mid", HOST_OK},
        {"pipe.mid", HOST_OK},
        {absolute, HOST_OK},
        {"dangling.mid", HOST_ERR_NOT_FOUND},
        {"round.mid", HOST_ERR_NOT_FOUND},
        {"missing.mid", HOST_ERR_NOT_FOUND},
        {"missing/file.mid", HOST_ERR_NOT_FOUND},
        {"file.mid/below.mid", HOST_ERR_NOT_FOUND},
        {std::string(300, 'n') + ".mid", HOST_ERR_NOT_FOUND},
    };
    for (const std::vector<std::string>& places : {std::vector<std::string>{}, {"elsewhere"}}) {
        kel_setsearchpath(places);
        for (const auto& [name, code] : wanted) {
            std::int16_t path = -1;
            file_type type = 0;
            EXPECT_EQ(locate(name.c_str(), &path, &type), code) << name << ", places: " << places.size();
            EXPECT_EQ(path, code ? -1 : 0) << name;
            EXPECT_EQ(type, code ? 0U : TYPE_MIDI) << name;
        }
    }
    EXPECT_EQ(open_code("locked.mid"), HOST_ERR_PERMISSION);
}

TEST_F(files, a_type_that_was_kept_is_found_whatever_the_name) {
    ASSERT_EQ(save("take1", "x", TYPE_MIDI), HOST_OK);
    if (::getxattr("take1", "user.brisolan.type", nullptr, 0) < 0)
        GTEST_SKIP() << "no extended attributes on this file system";
    put_file("long.mid", "x");
    ASSERT_EQ(::setxattr("long.mid", "user.brisolan.type", "too long", 8, 0), 0);
    for (const std::vector<std::string>& places : {std::vector<std::string>{}, {"elsewhere"}}) {
        kel_setsearchpath(places);
        std::int16_t path = -1;
        file_type type = 0;
        EXPECT_EQ(locate("take1", &path, &type), HOST_OK);
        EXPECT_EQ(type, TYPE_MIDI);
        EXPECT_EQ(locate("long.mid", &path, &type), HOST_OK);
        EXPECT_EQ(type, TYPE_MIDI);
    }
}

// What an earlier file left in the buffer is not the next one's.
TEST_F(files, files_that_are_open_at_once_keep_apart) {
    put_file("a", "aaaa");
    put_file("b", "bb");
    for (int round = 0; round < 3; ++round) {
        host_file* a = nullptr;
        host_file* b = nullptr;
        ASSERT_EQ(host_file_open("a", 0, &a), HOST_OK);
        char into[8] = {};
        std::int32_t count = 1;
        EXPECT_EQ(host_file_read(a, &count, into), HOST_OK);
        ASSERT_EQ(host_file_open("b", 0, &b), HOST_OK);
        count = 8;
        EXPECT_EQ(host_file_read(b, &count, into + 1), HOST_OK);
        EXPECT_EQ(count, 2);
        EXPECT_EQ(host_file_close(b), HOST_OK);
        count = 8;
        EXPECT_EQ(host_file_read(a, &count, into + 3), HOST_OK);
        EXPECT_EQ(count, 3);
        EXPECT_EQ(std::string(into, 6), "abbaaa");
        EXPECT_EQ(host_file_close(a), HOST_OK);
    }
}

TEST_F(files, a_folder_has_one_identifier) {
    const std::int16_t a = kel_folder("somewhere");
    EXPECT_NE(a, 0);
    EXPECT_EQ(kel_folder("somewhere"), a);
    EXPECT_EQ(kel_folder(""), 0);
    EXPECT_EQ(host_default_path(), 0);
    EXPECT_EQ(kel_filepath("x", 32767), "x");
    EXPECT_EQ(kel_filepath("x", -1), "x");
}

TEST_F(files, opening_tells_what_is_wrong) {
    fs::create_directories("folder");
    put_file("file", "x");
    EXPECT_EQ(open_code("missing"), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(open_code("missing/file"), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(open_code("file/below"), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(open_code("folder"), HOST_ERR_BUSY);
    EXPECT_EQ(open_code(""), HOST_ERR_NAME);
    EXPECT_EQ(open_code(std::string(300, 'n').c_str()), HOST_ERR_NAME);
    ASSERT_EQ(::chmod("file", 0), 0);
    const ordinary_user now(folder.path());
    EXPECT_EQ(open_code("file"), HOST_ERR_PERMISSION);
}

TEST_F(files, creating_tells_what_is_wrong) {
    fs::create_directories("folder");
    put_file("file", "old");
    EXPECT_EQ(save("missing/file", "x"), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(save("file/below", "x"), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(save("folder", "x"), HOST_ERR_BUSY);
    EXPECT_EQ(save("folder/", "x"), HOST_ERR_NAME);
    EXPECT_EQ(save("", "x"), HOST_ERR_NAME);
    EXPECT_EQ(save(std::string(300, 'n').c_str(), "x"), HOST_ERR_NAME);
    EXPECT_TRUE(taken().empty()) << "who creates tells of it";
}

TEST_F(files, what_may_not_be_written_stays) {
    const ordinary_user now(folder.path());
    fs::create_directories("folder");
    put_file("file", "old");
    ASSERT_EQ(::chmod("file", 0444), 0);
    EXPECT_EQ(save("file", "x"), HOST_ERR_PERMISSION);
    ASSERT_EQ(::chmod("folder", 0555), 0);
    EXPECT_EQ(save("folder/file", "x"), HOST_ERR_PERMISSION);
    EXPECT_EQ(get_file("file"), "old");
}

TEST_F(files, a_name_of_full_length_can_be_saved) {
    const std::string name(255, 'n');
    EXPECT_EQ(save(name.c_str(), "x"), HOST_OK);
    EXPECT_EQ(get_file(name), "x");
}

TEST_F(files, reading_gives_what_there_is) {
    put_file("a", "0123456789");
    host_file* f = nullptr;
    ASSERT_EQ(host_file_open("a", 0, &f), HOST_OK);
    char into[32] = {};
    std::int32_t count = 4;
    EXPECT_EQ(host_file_read(f, &count, into), HOST_OK);
    EXPECT_EQ(std::string(into, 4), "0123");
    std::int32_t at = 0;
    EXPECT_EQ(host_file_getpos(f, &at), HOST_OK);
    EXPECT_EQ(at, 4);
    count = 32;
    EXPECT_EQ(host_file_read(f, &count, into), HOST_OK);
    EXPECT_EQ(count, 6);
    count = 32;
    EXPECT_EQ(host_file_read(f, &count, into), HOST_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(host_file_setpos(f, 8), HOST_OK);
    count = -1;
    EXPECT_EQ(host_file_read(f, &count, into), HOST_OK);
    EXPECT_EQ(count, 0);
    count = 32;
    EXPECT_EQ(host_file_read(f, &count, into), HOST_OK);
    EXPECT_EQ(std::string(into, 2), "89");
    EXPECT_EQ(host_file_setpos(f, -1), HOST_ERR_IO);
    count = 1;
    EXPECT_EQ(host_file_write(f, &count, "x"), HOST_ERR_PERMISSION);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(host_file_close(f), HOST_OK);
}

// Against a string that does the same, at sizes around the buffer's.
TEST_F(files, writing_and_seeking_like_a_string) {
    std::mt19937 random(7);
    for (int round = 0; round < 30; ++round) {
        host_file* f = nullptr;
        ASSERT_EQ(host_file_create("a", 0, TYPE_TEXT, &f), HOST_OK);
        std::string twin;
        std::size_t at = 0;
        for (int step = 0; step < 40; ++step) {
            if (random() % 4 == 0) {
                at = twin.empty() ? 0 : random() % twin.size();
                ASSERT_EQ(host_file_setpos(f, static_cast<std::int32_t>(at)), HOST_OK);
                continue;
            }
            static constexpr std::size_t sizes[] = {0, 1, 1024, 65535, 65536, 65537, 200000};
            std::string piece(sizes[random() % std::size(sizes)], static_cast<char>('a' + step % 26));
            std::int32_t count = static_cast<std::int32_t>(piece.size());
            ASSERT_EQ(host_file_write(f, &count, piece.data()), HOST_OK);
            ASSERT_EQ(static_cast<std::size_t>(count), piece.size());
            if (twin.size() < at + piece.size()) twin.resize(at + piece.size());
            twin.replace(at, piece.size(), piece);
            at += piece.size();
            std::int32_t position = 0;
            ASSERT_EQ(host_file_getpos(f, &position), HOST_OK);
            ASSERT_EQ(static_cast<std::size_t>(position), at);
        }
        ASSERT_EQ(host_file_close(f), HOST_OK);
        ASSERT_EQ(get_file("a"), twin) << "round " << round;
    }
}

TEST_F(files, the_old_file_stands_until_the_new_one_is_whole) {
    put_file("a", "old");
    host_file* f = nullptr;
    ASSERT_EQ(host_file_create("a", 0, TYPE_TEXT, &f), HOST_OK);
    const std::string bytes(100000, 'n');
    std::int32_t count = static_cast<std::int32_t>(bytes.size());
    ASSERT_EQ(host_file_write(f, &count, bytes.data()), HOST_OK);
    EXPECT_EQ(get_file("a"), "old");
    ASSERT_EQ(host_file_close(f), HOST_OK);
    EXPECT_EQ(get_file("a"), bytes);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a"});
}

TEST_F(files, what_lies_beside_the_target_while_it_is_written_has_no_type) {
    host_file* f = nullptr;
    ASSERT_EQ(host_file_create("a.mid", 0, TYPE_MIDI, &f), HOST_OK);
    ASSERT_EQ(folder.names().size(), 1U);
    EXPECT_EQ(kel_filetype(folder.names()[0]), 0U);
    host_file_close(f);
}

TEST_F(files, replacing_keeps_the_old_files_rights) {
    put_file("a", "old");
    ASSERT_EQ(::chmod("a", 0640), 0);
    ASSERT_EQ(save("a", "new"), HOST_OK);
    struct stat about;
    ASSERT_EQ(::stat("a", &about), 0);
    EXPECT_EQ(about.st_mode & 07777, 0640U);
    const mode_t before = ::umask(027);
    ASSERT_EQ(save("b", "new"), HOST_OK);
    ::umask(before);
    ASSERT_EQ(::stat("b", &about), 0);
    EXPECT_EQ(about.st_mode & 07777, 0640U);
}

TEST_F(files, writing_goes_through_a_symbolic_link) {
    fs::create_directories("deep");
    put_file("deep/target", "old");
    fs::create_symlink("deep/target", "link");
    fs::create_symlink("link", "link2");
    ASSERT_EQ(save("link2", "new"), HOST_OK);
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_TRUE(fs::is_symlink("link2"));
    EXPECT_EQ(get_file("deep/target"), "new");
    fs::create_symlink("not yet", "dangling");
    ASSERT_EQ(save("dangling", "made"), HOST_OK);
    EXPECT_EQ(get_file("not yet"), "made");
    fs::create_symlink("round", "round");
    EXPECT_EQ(save("round", "x"), HOST_ERR_NAME);
}

TEST_F(files, what_is_no_plain_file_is_not_replaced) {
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    EXPECT_EQ(save("pipe", "x"), HOST_ERR_BUSY);
    EXPECT_TRUE(fs::is_fifo("pipe"));
}

TEST_F(files, a_size_limit_leaves_the_old_file_and_says_so) {
    put_file("a", "old");
    rlimit before;
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 100000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const host_err e = save("a", std::string(300000, 'n'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(e, HOST_ERR_FULL);
    EXPECT_EQ(taken(), std::vector<std::string>{"error a was not saved: no space left"});
    EXPECT_EQ(get_file("a"), "old");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a"});
}

// A file system of 64 KB, where the machine lets one be made.
TEST_F(files, a_full_file_system_leaves_the_old_file_and_says_so) {
    fs::create_directories("small");
    if (std::system("mount -t tmpfs -o size=64k none small 2>/dev/null") != 0)
        GTEST_SKIP() << "no file system can be made here";
    put_file("small/a", "old");
    const host_err e = save("small/a", std::string(300000, 'n'));
    const std::string left = get_file("small/a");
    const auto there = std::distance(fs::directory_iterator("small"), fs::directory_iterator());
    ASSERT_EQ(std::system("umount small"), 0);
    EXPECT_EQ(e, HOST_ERR_FULL);
    EXPECT_EQ(taken(), std::vector<std::string>{"error small/a was not saved: no space left"});
    EXPECT_EQ(left, "old");
    EXPECT_EQ(there, 1);
}

TEST_F(files, every_operation_that_fails_leaves_the_old_file_and_says_so_once) {
    const std::string bytes(200000, 'n');
    int k = 1;
    for (;; ++k) {
        put_file("a", "old");
        kel_file_fault(k, HOST_ERR_FULL);
        host_file* f = nullptr;
        const host_err created = host_file_create("a", 0, TYPE_TEXT, &f);
        host_err closed = HOST_OK;
        if (!created) {
            for (std::size_t at = 0; at < bytes.size(); at += 20000) {
                std::int32_t count = 20000;
                (void)host_file_write(f, &count, bytes.data() + at);
            }
            (void)host_file_setpos(f, 0);
            closed = host_file_close(f);
        }
        const bool faulted = kel_file_faulted();
        kel_file_fault(0);
        ASSERT_EQ(folder.names(), std::vector<std::string>{"a"}) << "operation " << k;
        if (!faulted) break;
        EXPECT_EQ(get_file("a"), "old") << "operation " << k;
        EXPECT_EQ(created ? created : closed, HOST_ERR_FULL) << "operation " << k;
        const std::vector<std::string> said = taken();
        EXPECT_EQ(said.size(), created ? 0U : 1U) << "operation " << k;
    }
    EXPECT_EQ(get_file("a"), bytes);
    EXPECT_GT(k, 15); // creating, opening, ten writes, their calls of the system, placing
}

TEST_F(files, every_read_that_fails_is_told) {
    put_file("a", std::string(200000, 'n'));
    for (int k = 1;; ++k) {
        kel_file_fault(k);
        host_file* f = nullptr;
        host_err e = host_file_open("a", 0, &f);
        if (!e) {
            for (int i = 0; i < 8 && !e; ++i) {
                std::string into(50000, ' ');
                std::int32_t count = 50000;
                e = host_file_read(f, &count, into.data());
            }
            const host_err closed = host_file_close(f);
            if (!e) e = closed;
        }
        const bool faulted = kel_file_faulted();
        kel_file_fault(0);
        if (!faulted) {
            EXPECT_EQ(e, HOST_OK);
            break;
        }
        EXPECT_EQ(e, HOST_ERR_IO) << "operation " << k;
    }
}

// A program that saves again and again is killed at some moment: what is found is one of the two whole files.
TEST_F(files, a_killed_program_leaves_a_whole_file) {
    const std::string one(300000, '1');
    const std::string two(400000, '2');
    std::mt19937 random(11);
    put_file("a", one);
    for (int round = 0; round < 12; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (bool first = false;; first = !first) (void)save("a", first ? one : two);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 15000));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        const std::string found = get_file("a");
        ASSERT_TRUE(found == one || found == two) << "round " << round << ": " << found.size() << " bytes";
        for (const std::string& name : folder.names()) {
            EXPECT_EQ(name == "a" ? 0U : kel_filetype(name), 0U) << name;
        }
    }
}

} // namespace
