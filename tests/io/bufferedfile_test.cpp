// tests/io/bufferedfile_test.cpp: reading and writing byte by byte.
// Test layer. Run by ctest.
#include "io/bufferedfile.h"

#include <random>

#include "tests/io/io_test.h"

namespace {

constexpr file_type WRITING = TYPE_TEXT;

class bufferedfile : public io_test {
protected:
    void open_to_read(const std::string& content) {
        put_file("a", content);
        ASSERT_EQ(t_open("a", 0, 0), HOST_OK);
    }
};

TEST_F(bufferedfile, open_sets_everything_up) {
    open_to_read("x");
    EXPECT_EQ(t_write, 0);
    EXPECT_EQ(t_eof, 0);
    EXPECT_EQ(t_vol, 0);
    EXPECT_EQ(t_next, t_buf);
    EXPECT_EQ(t_readend, t_buf);
    EXPECT_EQ(t_writeend, t_buf + 1024);
    t_close();
    std::filesystem::create_directory("sub");
    const std::int16_t sub = kel_folder("sub");
    ASSERT_EQ(t_open("b", sub, WRITING), HOST_OK);
    EXPECT_EQ(t_write, 1);
    EXPECT_EQ(t_vol, sub);
    t_putc('x');
    t_close();
    EXPECT_EQ(get_file("sub/b"), "x");
    EXPECT_EQ(t_write, 1) << "the values stay as they were";
    EXPECT_EQ(t_vol, sub);
}

TEST_F(bufferedfile, open_gives_the_hosts_code_unchanged) {
    EXPECT_EQ(t_open("missing", 0, 0), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(t_open("missing/a", 0, WRITING), HOST_ERR_NOT_FOUND);
    kel_file_fault(1, HOST_ERR_MEMORY);
    EXPECT_EQ(t_open("a", 0, WRITING), HOST_ERR_MEMORY);
    open_to_read("x");
    t_getc();
    t_getc();
    t_close();
    EXPECT_EQ(t_open("missing/a", 7, WRITING), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(t_eof, 1) << "and nothing else has happened";
    EXPECT_EQ(t_vol, 0);
    EXPECT_EQ(t_write, 0);
}

TEST_F(bufferedfile, an_empty_file_ends_at_once) {
    open_to_read("");
    EXPECT_EQ(t_getc(), -1);
    EXPECT_EQ(t_eof, 1);
    t_close();
}

TEST_F(bufferedfile, the_end_of_a_full_buffer_is_found_by_the_next_read_and_stays) {
    open_to_read(std::string(1024, '\xFF'));
    for (int i = 0; i < 1024; ++i) ASSERT_EQ(t_getc(), 255);
    EXPECT_EQ(t_eof, 0);
    EXPECT_EQ(t_getc(), -1);
    EXPECT_EQ(t_eof, 1);
    kel_file_fault(1);
    EXPECT_EQ(t_getc(), -1);
    EXPECT_FALSE(kel_file_faulted()) << "the file is not touched again";
    kel_file_fault(0);
    t_close();
}

TEST_F(bufferedfile, bytes_come_as_they_are) {
    std::mt19937 random(1);
    std::string content(5000, ' ');
    for (char& c : content) c = static_cast<char>(random());
    open_to_read(content);
    for (const char c : content) ASSERT_EQ(t_getc(), static_cast<unsigned char>(c));
    EXPECT_EQ(t_getc(), -1);
    t_close();
}

TEST_F(bufferedfile, fread_stops_at_the_end) {
    open_to_read("0123456");
    char into[8] = {};
    EXPECT_EQ(t_fread(into, 4), 4);
    EXPECT_EQ(t_fread(into, 8), 3);
    EXPECT_EQ(std::string(into, 3), "456");
    EXPECT_EQ(t_fread(into, 8), 0);
    t_close();
}

TEST_F(bufferedfile, a_read_error_is_the_end) {
    open_to_read("0123456");
    kel_file_fault(1);
    EXPECT_EQ(t_getc(), -1);
    EXPECT_EQ(t_eof, 1);
    kel_file_fault(0);
    EXPECT_EQ(t_getc(), -1);
    t_close();
    ASSERT_EQ(t_open("a", 0, 0), HOST_OK);
    EXPECT_EQ(t_eof, 0) << "until the next open";
    EXPECT_EQ(t_getc(), '0');
    t_close();
}

// How many bytes the file has taken from the layer so far.
std::int32_t host_position() {
    std::int32_t position = -1;
    EXPECT_EQ(host_file_getpos(t_fh, &position), HOST_OK);
    return position;
}

TEST_F(bufferedfile, a_full_buffer_is_written_at_the_next_byte) {
    ASSERT_EQ(t_open("a", 0, WRITING), HOST_OK);
    for (int i = 0; i < 1024; ++i) ASSERT_EQ(t_putc(static_cast<unsigned char>(i)), 0);
    EXPECT_EQ(host_position(), 0);
    EXPECT_EQ(t_putc('x'), 0);
    EXPECT_EQ(host_position(), 1024);
    EXPECT_EQ(t_next, t_buf + 1);
    t_close();
    EXPECT_EQ(get_file("a").size(), 1025U);
}

TEST_F(bufferedfile, close_writes_a_whole_buffer) {
    ASSERT_EQ(t_open("a", 0, WRITING), HOST_OK);
    const std::string content(1024, 'x');
    EXPECT_EQ(t_fwrite(content.data(), 1024), 1024);
    EXPECT_EQ(host_position(), 0);
    t_close();
    EXPECT_EQ(get_file("a"), content);
}

TEST_F(bufferedfile, tell_and_seek_write_what_waits) {
    ASSERT_EQ(t_open("a", 0, WRITING), HOST_OK);
    EXPECT_EQ(t_fwrite("0123456789", 10), 10);
    EXPECT_EQ(t_tell(), 10);
    EXPECT_EQ(t_next, t_buf);
    t_putc('x');
    EXPECT_EQ(t_seek(4), HOST_OK);
    EXPECT_EQ(t_fwrite("ab", 2), 2);
    EXPECT_EQ(t_tell(), 6);
    t_flush();
    EXPECT_EQ(t_seek(11), HOST_OK);
    t_putc('y');
    t_flush();
    EXPECT_EQ(host_position(), 12);
    t_close();
    EXPECT_EQ(get_file("a"), "0123ab6789xy");
}

TEST_F(bufferedfile, a_failed_write_loses_the_buffer_and_writing_goes_on) {
    ASSERT_EQ(t_open("a", 0, WRITING), HOST_OK);
    const std::string content(2000, 'x');
    kel_file_fault(1);
    EXPECT_EQ(t_fwrite(content.data(), 2000), 1024) << "the index of the byte that was not taken";
    kel_file_fault(0);
    EXPECT_EQ(t_eof, 1);
    EXPECT_EQ(t_next, t_buf);
    EXPECT_EQ(t_putc('y'), 0) << "the flag is not asked while writing";
    for (int i = 1; i < 1024; ++i) t_putc('y');
    EXPECT_EQ(t_putc('z'), -1) << "the file stays bad";
    t_close();
    EXPECT_FALSE(std::filesystem::exists("a"));
    EXPECT_EQ(taken(), text_lines{"error a was not saved: reading or writing failed"});
}

} // namespace
