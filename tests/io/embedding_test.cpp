// tests/io/embedding_test.cpp: the lines by which an instance saves itself.
// Test layer. Run by ctest.
#include "io/embedding.h"

#include "host/kernel/atombuf.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/textform.h"
#include "tests/io/io_test.h"

namespace {

class embedding : public io_test {
protected:
    template <class Append> static text_lines lines_of(Append append) {
        host_atombuf* b = host_atombuf_new();
        append(b);
        text_lines all;
        kel_atombuf_lines(b, [&all](std::span<const atom> line) {
            kel_format_atoms(line, &all.emplace_back());
            return true;
        });
        host_atombuf_free(b);
        return all;
    }
    text_lines saved() const {
        return lines_of([this](host_atombuf* b) { brisolan_save(x, b); });
    }
};

const text_lines fresh_descriptions{
    "#X setparam 0 Time 1 0 999999 0 1000 200 0", "#X setparam 1 Pitch 2 0 127 60 12 4 0",
    "#X setparam 2 Vel 3 0 127 64 12 4 0",        "#X setparam 3 Dur 4 1 99999 200 800 200 0",
    "#X setparam 4 Chan 0 1 16 1 8 1 0",          "#X setparam 5 Track 0 1 32 1 8 1 0",
    "#X setparam 6 X1 0 0 999 0 80 20 0",         "#X setparam 7 X2 0 0 999 0 80 20 0"};

text_lines with(text_lines front, const text_lines& middle, const text_lines& back) {
    front.insert(front.end(), middle.begin(), middle.end());
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

TEST_F(embedding, an_empty_sequence) {
    EXPECT_EQ(saved(), with({"#N brisolan \"\""}, fresh_descriptions, {"#X restore", "#X stop"}));
}

TEST_F(embedding, events_tell_the_time_since_the_one_before) {
    fill({{100, 60, 64, 300, 1, 2, 3, -4}, {250, 61, 65, 301, 2, 3, 4, 5}});
    EXPECT_EQ(saved(),
              with({"#N brisolan \"\""}, fresh_descriptions,
                   {"#X restore", "#X 100 60 64 300 1 2 3 -4", "#X 150 61 65 301 2 3 4 5", "#X stop"}));
}

TEST_F(embedding, differences_wrap_at_32_bits) {
    fill({{-2147483647, 60, 64, 300, 1, 1, 0, 0}, {2147483647, 60, 64, 300, 1, 1, 0, 0}});
    const text_lines all = saved();
    EXPECT_EQ(all[10], "#X -2147483647 60 64 300 1 1 0 0");
    EXPECT_EQ(all[11], "#X -2 60 64 300 1 1 0 0");
}

TEST_F(embedding, bytes_are_written_with_their_sign) {
    x->params[PARAM_X1].mode = std::uint8_t{200};
    x->params[PARAM_X1].notenames = std::uint8_t{255};
    EXPECT_EQ(saved()[7], "#X setparam 6 X1 -56 0 999 0 80 20 -1");
}

TEST_F(embedding, the_instances_name_is_saved_unless_it_was_denied) {
    const atom name(host_symbol("take one"));
    auto* named = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {&name, 1}));
    auto* denied = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {&name, 1}));
    const auto first_line = [](brisolan* y) {
        return lines_of([y](host_atombuf* b) { brisolan_save(y, b); })[0];
    };
    EXPECT_EQ(first_line(named), "#N brisolan \"take one\"");
    EXPECT_EQ(first_line(denied), "#N brisolan \"\"");
}

TEST_F(embedding, the_parameter_state_names_the_parameter_chosen_last) {
    fill({{100, 60, 64, 300, 1, 1, 0, 0}});
    x->whichparam = 5;
    EXPECT_EQ(lines_of([this](host_atombuf* b) { brisolan_pstate(x, b); }),
              with({"#N brisolan \"\""}, fresh_descriptions, {"#X whichparam 5"}));
}

TEST_F(embedding, every_saving_and_loading_lowers_a_display_mode_by_one) {
    const auto modes = [this] {
        std::string all;
        for (const param_record& p : x->params) all += std::to_string(p.mode.get()) + " ";
        return all;
    };
    const auto reload = [this] {
        ASSERT_EQ(brisolan_kelfile(x, "a.kel", 0, TEXT_FILE), HOST_OK);
        ASSERT_EQ(told("read a.kel"), text_lines{});
    };
    EXPECT_EQ(modes(), "1 2 3 4 0 0 0 0 ");
    reload();
    EXPECT_EQ(modes(), "0 4 2 3 0 0 0 0 ") << "the lines run in order, and a role passes from its holder";
}

TEST_F(embedding, a_display_mode_of_two_comes_back_as_one_and_one_of_zero_stays) {
    // The last parameter's line runs last, so that no other takes the role from it again.
    told("setparam 7 X2 3 0 127 0 12 4 0");
    ASSERT_EQ(x->params[PARAM_X2].mode, 2);
    ASSERT_EQ(x->params[PARAM_X1].mode, 0);
    ASSERT_EQ(brisolan_kelfile(x, "a.kel", 0, TEXT_FILE), HOST_OK);
    ASSERT_EQ(told("read a.kel"), text_lines{});
    EXPECT_EQ(x->params[PARAM_X2].mode, 1);
    EXPECT_EQ(x->params[PARAM_X1].mode, 0);
}

TEST_F(embedding, save_to_follows_the_windows_flag) {
    x->window->save_format = 1;
    EXPECT_EQ(brisolan_saveto(x, "a", 0), HOST_OK);
    EXPECT_EQ(get_file("a").substr(0, 4), "kelb");
    for (const int flag : {0, 2, 9}) {
        x->window->save_format = static_cast<std::uint8_t>(flag);
        EXPECT_EQ(brisolan_saveto(x, "a", 0), HOST_OK);
        EXPECT_EQ(get_file("a").substr(0, flag == 2 ? 4 : 2), flag == 2 ? "kelb" : "#N")
            << "passed on as it is";
    }
    x->window->save_format = 0;
    EXPECT_EQ(brisolan_saveto(x, "missing/a", 0), HOST_ERR_NOT_FOUND);
}

TEST_F(embedding, kel_file_follows_the_type) {
    x->window->save_format = 9;
    EXPECT_EQ(brisolan_kelfile(x, "a", 0, BINARY_FILE), HOST_OK);
    EXPECT_EQ(get_file("a").substr(0, 4), "kelb");
    EXPECT_EQ(brisolan_kelfile(x, "a", 0, host_type("what")), HOST_OK);
    EXPECT_EQ(get_file("a").substr(0, 2), "#N");
    EXPECT_EQ(x->window->save_format, 9);
    x->window->save_format = 0;
}

TEST_F(embedding, write_kel_with_a_name_writes_text) {
    EXPECT_EQ(told("writekel take"), text_lines{});
    EXPECT_EQ(get_file("take").substr(0, 15), "#N brisolan \"\";");
    EXPECT_TRUE(machine.asked.empty());
}

TEST_F(embedding, write_kel_without_a_name_asks) {
    answer("a.kelb");
    EXPECT_EQ(told("writekel"), text_lines{});
    EXPECT_EQ(get_file("a.kelb").substr(0, 4), "kelb");
    ASSERT_EQ(machine.asked.size(), 1U);
    EXPECT_TRUE(machine.asked[0].saving);
    EXPECT_EQ(machine.asked[0].proposed, "Untitled");
    EXPECT_EQ(machine.asked[0].types, (std::vector<file_type>{BINARY_FILE, TEXT_FILE}));
    answer("c");
    told("writekel");
    EXPECT_EQ(get_file("c").substr(0, 4), "kelb") << "as proposed";
    answer("b.kel");
    EXPECT_EQ(told("writekel"), text_lines{});
    EXPECT_EQ(get_file("b.kel").substr(0, 2), "#N");
}

TEST_F(embedding, a_document_is_the_forms_text_to_the_byte) {
    fill({{100, 60, 64, 300, 1, 1, 0, 0}});
    told("writekel a.kel");
    std::string expected;
    for (const std::string& line : saved()) expected += line + ";\n";
    EXPECT_EQ(get_file("a.kel"), expected);
}

} // namespace
