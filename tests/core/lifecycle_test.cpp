// tests/core/lifecycle_test.cpp: an instance and what surrounds it.
// Test layer.
#include "core/lifecycle.h"

#include <array>
#include <string>

#include "tests/support/host_test.h"

namespace {

class lifecycle : public object_test {
protected:
    std::string hover(bool inlet, int index) {
        std::array<char, HOST_ASSIST_SIZE> text{};
        brisolan_assist(x, inlet, index, text.data());
        return text.data();
    }
};

TEST_F(lifecycle, an_inlet_or_outlet_that_there_is_not_is_described_as_the_first) {
    EXPECT_EQ(hover(true, 7), "X2 Parameter When Recording");
    for (const int index : {-1, 8}) {
        EXPECT_EQ(hover(true, index), "Control Messages, Time Parameter When Recording");
        EXPECT_EQ(hover(false, index), "Time Parameter Output");
    }
}

TEST_F(lifecycle, an_instance_in_no_patcher_has_nothing_to_mark_changed) {
    brisolan_dirty(x);
    EXPECT_EQ(taken(), std::vector<std::string>{"dirty"});
    x->patcher = nullptr;
    brisolan_dirty(x);
    EXPECT_EQ(taken(), std::vector<std::string>{});
}

} // namespace
