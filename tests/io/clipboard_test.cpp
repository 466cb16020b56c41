// tests/io/clipboard_test.cpp: a clipboard that changes under a paste, and copying where memory ends.
// Test layer. Run by ctest.
#include "io/clipboard.h"

#include <algorithm>
#include <functional>
#include <random>

#include "host/kernel/dispatch.h"
#include "host/toolbox/toolbox_host.h"
#include "tests/io/io_test.h"

namespace {

// What the machine's clipboard holds each time that it is asked, from 1 on; false: no text.
std::function<bool(int, std::string*)> held_at;
int asked = 0;

class clipboard_test : public io_test {
protected:
    void TearDown() override {
        toolbox_handle_limit(INT32_MAX);
        held_at = nullptr;
        io_test::TearDown();
    }
    // Pastes from a clipboard that another program changes meanwhile.
    void paste_while(std::function<bool(int, std::string*)> other_program) {
        held_at = std::move(other_program);
        asked = 0;
        const toolbox_platform before = toolbox_getplatform();
        toolbox_platform changing = before;
        changing.clipboard_read = [](void*, std::string* text) { return held_at(++asked, text); };
        toolbox_setplatform(&changing);
        kel_private<"paste">(x);
        toolbox_setplatform(&before);
        kel_run_queue();
    }
    void have(const std::string& text) {
        machine.clipboard = text;
        machine.has_clipboard = true;
    }
    void select_notes(std::int32_t count) {
        send("clear");
        x->lasttime = 0;
        for (std::int32_t i = 0; i < count; ++i)
            brisolan_append(x, 10, {0, 60, 64, 200, 1, 1, 0, 0}, false)->selected = std::uint8_t{1};
        x->nselected = count;
    }
};

TEST_F(clipboard_test, a_paste_has_one_text_whatever_comes_onto_the_clipboard_meanwhile) {
    paste_while([](int at, std::string* text) {
        *text = at == 1 ? "1\r2\r" : std::string(5000, '9');
        return true;
    });
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(events(), (text_lines{"1 60 64 200 1 1 0 0", "2 60 64 200 1 1 0 0"}));
    paste_while([](int, std::string*) { return false; });
    EXPECT_EQ(x->nevents, 2);
}

// Alone a line is too short to be read in any but the plain way; among many it may be read a word at a time.
TEST_F(clipboard_test, a_line_reads_the_same_alone_and_among_others) {
    std::mt19937 random(2026);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    text_lines alone;
    std::string all;
    for (int i = 0; i < 400; ++i) {
        // Mostly eight numbers as copying writes them; else longer ones, fewer or more, or something between them.
        const bool odd = below(3) == 0;
        const int count = odd && below(2) ? below(11) : int{NPARAMS};
        std::string line;
        for (int k = 0; k < count; ++k) {
            if (k > 0) line += odd && below(4) == 0 ? " -x,\t."[below(6)] : ' ';
            const int digits = odd && below(4) == 0 ? below(13) : 1 + below(5);
            for (int d = 0; d < digits; ++d) line += static_cast<char>('0' + below(10));
        }
        line += '\r';
        all += line;
        have(line);
        kel_private<"paste">(x);
        const text_lines one = events();
        ASSERT_EQ(one.size(), 1u) << line;
        alone.push_back(one.front());
        send("clear");
    }
    have(all);
    kel_private<"paste">(x);
    text_lines together = events();
    std::sort(alone.begin(), alone.end());
    std::sort(together.begin(), together.end());
    EXPECT_EQ(together, alone);
}

// Beside the items that it enables and the one that it disables, the menu is the host's.
TEST_F(clipboard_test, the_menu_keeps_the_hosts_cut_where_nothing_is_selected) {
    for (const auto host_cut : {std::uint8_t{0}, std::uint8_t{1}}) {
        host_menustate state{};
        state.cut = host_cut;
        brisolan_chkmenu(x, &state);
        EXPECT_EQ(state.cut, host_cut);
        EXPECT_EQ(state.selectall, 1);
    }
    select_notes(1);
    host_menustate state{};
    brisolan_chkmenu(x, &state);
    EXPECT_EQ(state.cut, 1);
}

TEST_F(clipboard_test, a_copy_that_there_is_no_memory_for_leaves_the_clipboard) {
    for (const int limit : {-1, 999, 1000}) {
        select_notes(100);
        have("old");
        toolbox_handle_limit(limit);
        kel_private<"copy">(x);
        EXPECT_EQ(machine.clipboard, "old") << limit;
        kel_private<"cut">(x);
        EXPECT_EQ(machine.clipboard, "old") << limit;
        EXPECT_EQ(x->nevents, 100) << "nothing is cut that could not be copied";
        toolbox_handle_limit(INT32_MAX);
    }
    kel_private<"cut">(x);
    EXPECT_EQ(machine.clipboard.substr(0, 20), "10 60 64 200 1 1 0 0");
    EXPECT_EQ(x->nevents, 0);
}

TEST_F(clipboard_test, a_copy_of_nothing_needs_no_memory) {
    have("old");
    toolbox_handle_limit(-1);
    kel_private<"copy">(x);
    EXPECT_EQ(machine.clipboard, "");
}

TEST_F(clipboard_test, a_paste_that_there_is_no_memory_for_adds_nothing) {
    have("1\r");
    for (const int limit : {-1, 1}) {
        toolbox_handle_limit(limit);
        kel_private<"paste">(x);
        EXPECT_EQ(events(), text_lines{}) << limit;
    }
    toolbox_handle_limit(2);
    kel_private<"paste">(x);
    EXPECT_EQ(events(), text_lines{"1 60 64 200 1 1 0 0"});
}

} // namespace
