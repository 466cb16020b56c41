// tests/io/clipboard_test.cpp: a clipboard that changes under a paste, and copying where memory ends.
// Test layer. Run by ctest.
#include "io/clipboard.h"

#include <functional>

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
