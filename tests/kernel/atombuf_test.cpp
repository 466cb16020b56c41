// tests/kernel/atombuf_test.cpp: lists of messages and their files.
// Test layer. Run by ctest.
#include "host/kernel/atombuf.h"

#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "tests/support/atombuf_text.h"
#include "tests/support/host_test.h"
#include "tests/support/scratch_folder.h"

namespace {

class atombuf : public host_test {
protected:
    void SetUp() override {
        host_test::SetUp();
        b = host_atombuf_new();
    }
    void TearDown() override {
        kel_file_fault(0);
        host_atombuf_free(b);
        host_test::TearDown();
    }

    void fill() {
        host_atombuf_append(b, host_symbol("#N"), host_symbol("brisolan"), host_symbol(""));
        host_atombuf_append(b, host_symbol("#X"), 0, 60, -64, 1.5F);
        host_atombuf_append(b, host_symbol("#X"), host_symbol("stop"));
    }
    static constexpr const char* filled = "#N brisolan \"\";\n#X 0 60 -64 1.5;\n#X stop;\n";

    scratch_folder folder;
    host_atombuf* b = nullptr;
};

TEST_F(atombuf, lines_come_back_as_they_were_appended) {
    fill();
    EXPECT_EQ(text_of(b), filled);
    EXPECT_EQ(kel_atombuf_count(b), 3U);
    host_atombuf_append_atoms(b, {});
    EXPECT_EQ(kel_atombuf_count(b), 3U) << "a line without atoms is none";
}

TEST_F(atombuf, atoms_are_counted_through_all_lines) {
    fill();
    atom a;
    ASSERT_TRUE(host_atombuf_getatom(b, 0, &a));
    EXPECT_EQ(a.s, host_symbol("#N"));
    ASSERT_TRUE(host_atombuf_getatom(b, 9, &a));
    EXPECT_EQ(a.s, host_symbol("stop"));
    ASSERT_TRUE(host_atombuf_getatom(b, 3, &a));
    EXPECT_EQ(a.s, host_symbol("#X"));
    ASSERT_TRUE(host_atombuf_getatom(b, 4, &a));
    EXPECT_EQ(a.type, A_LONG);
    EXPECT_EQ(a.l, 0);
    ASSERT_TRUE(host_atombuf_getatom(b, 7, &a));
    EXPECT_EQ(a.f, 1.5F);
    EXPECT_FALSE(host_atombuf_getatom(b, 10, &a));
    EXPECT_FALSE(host_atombuf_getatom(b, -1, &a));
    ASSERT_TRUE(host_atombuf_getatom(b, 1, &a)) << "also backwards, after the end";
    EXPECT_EQ(a.s, host_symbol("brisolan"));
}

TEST_F(atombuf, both_forms_come_back) {
    fill();
    for (const int form : {int{ATOMBUF_TEXT}, int{ATOMBUF_BINARY}, 1, 3}) {
        ASSERT_EQ(host_atombuf_write(b, "a", 0, form), HOST_OK);
        host_atombuf* back = host_atombuf_new();
        ASSERT_EQ(host_atombuf_read(back, "a", 0, form == ATOMBUF_BINARY), HOST_OK);
        EXPECT_EQ(text_of(back), filled);
        atom a;
        ASSERT_TRUE(host_atombuf_getatom(back, 2, &a));
        EXPECT_EQ(a.s, host_symbol("")) << "symbols are interned";
        host_atombuf_append(back, host_symbol("#X"), host_symbol("new"));
        EXPECT_EQ(text_of(back), std::string(filled) + "#X new;\n") << "and go on being shared";
        host_atombuf_free(back);
    }
    EXPECT_EQ(get_file("a"), filled) << "what is neither form is text";
}

TEST_F(atombuf, an_empty_buffer_is_an_empty_document) {
    ASSERT_EQ(host_atombuf_write(b, "a", 0, ATOMBUF_TEXT), HOST_OK);
    EXPECT_EQ(get_file("a"), "");
    ASSERT_EQ(host_atombuf_read(b, "a", 0, false), HOST_OK);
    ASSERT_EQ(host_atombuf_write(b, "a", 0, ATOMBUF_BINARY), HOST_OK);
    EXPECT_EQ(get_file("a").size(), 17U);
    ASSERT_EQ(host_atombuf_read(b, "a", 0, true), HOST_OK);
    EXPECT_EQ(kel_atombuf_count(b), 0U);
}

TEST_F(atombuf, a_refused_file_leaves_the_buffer_empty_and_says_nothing) {
    put_file("a", "#N brisolan;\n#X 99999999999;\n");
    EXPECT_EQ(host_atombuf_read(b, "a", 0, false), HOST_ERR_FORMAT);
    EXPECT_EQ(host_atombuf_read(b, "a", 0, true), HOST_ERR_FORMAT);
    EXPECT_EQ(host_atombuf_read(b, "missing", 0, true), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(kel_atombuf_count(b), 0U);
    EXPECT_TRUE(taken().empty());
}

TEST_F(atombuf, who_asks_is_told_what_is_wrong_and_where) {
    put_file("a", "#N brisolan;\n#X 99999999999;\n");
    kel_document d;
    std::string why;
    EXPECT_EQ(kel_document_read("a", 0, false, &d, &why), HOST_ERR_FORMAT);
    EXPECT_EQ(why, "a number out of range in line 2");
    EXPECT_EQ(kel_document_read("a", 0, true, &d, &why), HOST_ERR_FORMAT);
    EXPECT_EQ(why, "not a binary document at byte 0");
    EXPECT_EQ(kel_document_read("missing", 0, true, &d, &why), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(why, "no such file or folder");
}

TEST_F(atombuf, a_document_goes_behind_what_is_there) {
    fill();
    kel_document d;
    const std::string_view text = "#X stop 7;#Y x;";
    ASSERT_FALSE(kel_parse_text(std::as_bytes(std::span(text)), &d));
    kel_atombuf_take(b, std::move(d));
    EXPECT_EQ(text_of(b), std::string(filled) + "#X stop 7;\n#Y x;\n");
    EXPECT_EQ(kel_atombuf_count(b), 5U);
}

TEST_F(atombuf, a_file_that_cannot_be_made_is_told_once) {
    fill();
    EXPECT_EQ(host_atombuf_write(b, "missing/a", 0, ATOMBUF_TEXT), HOST_ERR_NOT_FOUND);
    EXPECT_EQ(taken(), std::vector<std::string>{"error missing/a was not saved: no such file or folder"});
}

TEST_F(atombuf, every_operation_that_fails_leaves_the_old_file_and_says_so_once) {
    for (int i = 0; i < 20000; ++i) host_atombuf_append(b, host_symbol("#X"), i, 60, 64, 300, 1, 1, 0, 0);
    for (const int form : {int{ATOMBUF_TEXT}, int{ATOMBUF_BINARY}}) {
        put_file("a", "old");
        for (int k = 1;; ++k) {
            kel_file_fault(k, HOST_ERR_FULL);
            const host_err e = host_atombuf_write(b, "a", 0, form);
            const bool faulted = kel_file_faulted();
            kel_file_fault(0);
            ASSERT_EQ(folder.names(), std::vector<std::string>{"a"});
            if (!faulted) break;
            EXPECT_EQ(e, HOST_ERR_FULL) << "operation " << k;
            EXPECT_EQ(get_file("a"), "old") << "operation " << k;
            EXPECT_EQ(taken(), std::vector<std::string>{"error a was not saved: no space left"})
                << "operation " << k;
        }
        for (int k = 1;; ++k) {
            host_atombuf* back = host_atombuf_new();
            kel_file_fault(k);
            const host_err e = host_atombuf_read(back, "a", 0, form == ATOMBUF_BINARY);
            const bool faulted = kel_file_faulted();
            kel_file_fault(0);
            EXPECT_EQ(e, faulted ? HOST_ERR_IO : HOST_OK) << "operation " << k;
            EXPECT_EQ(kel_atombuf_count(back), faulted ? 0U : 20000U) << "operation " << k;
            host_atombuf_free(back);
            if (!faulted) break;
        }
    }
}

TEST_F(atombuf, a_line_goes_to_whom_its_first_symbol_names) {
    host_atombuf_append(b, host_symbol("nobody"), host_symbol("stop"));
    host_atombuf_append(b, 7, 8);
    host_atombuf_append(b, host_symbol("nobody"));
    host_atombuf_eval(b);
    EXPECT_EQ(taken(),
              (std::vector<std::string>{"error host: no object named \"nobody\"",
                                        "error host: a line that begins with a number has no receiver",
                                        "error host: no object named \"nobody\""}));
}

TEST_F(atombuf, an_event_takes_few_bytes) {
    for (int i = 0; i < 1000; ++i) host_atombuf_append(b, host_symbol("#X"), 125, 60, 64, 300, 1, 1, 0, 0);
    EXPECT_LE(kel_atombuf_size(b), 16000U);
}

} // namespace
