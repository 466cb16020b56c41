// tests/edit/keys_test.cpp: keys whose effect a script cannot bring about: typed numbers, an axis without a parameter.
// Test layer.
#include "edit/keys.h"

#include "core/check.h"
#include "tests/edit/editor.h"

namespace {

constexpr int RETURN = 13;
constexpr int UP = 30;
constexpr int DOWN = 31;

class keys_test : public editor_test {
protected:
    void SetUp() override {
        editor_test::SetUp();
        fill("0 60 64 500\r1000 62 64 500\r2000 64 64 500\r");
        nth(0)->selected = std::uint8_t{1};
        nth(2)->selected = std::uint8_t{1};
        x->nselected = 2;
        kel_window_update(x->window);
        settle();
    }
    void TearDown() override {
        EXPECT_EQ(brisolan_brokeninvariant(x), nullptr);
        editor_test::TearDown();
    }
    void type(const std::string& digits) {
        for (const char c : digits) brisolan_key(x, c);
    }
    std::vector<std::int32_t> values(int index) {
        return {event_param(*nth(0), index), event_param(*nth(1), index), event_param(*nth(2), index)};
    }
    using three = std::vector<std::int32_t>;
};

TEST_F(keys_test, a_typed_number_goes_into_the_selected_events_where_a_parameter_takes_it) {
    x->typeparam_index = PARAM_VEL;
    type("107");
    EXPECT_EQ(x->typing, 1);
    EXPECT_EQ(x->typedvalue, 107);
    EXPECT_EQ(values(PARAM_VEL), (three{64, 64, 64}));
    brisolan_key(x, RETURN);
    EXPECT_EQ(values(PARAM_VEL), (three{107, 64, 107}));
    EXPECT_EQ(x->typing, 0);
    EXPECT_EQ(x->typedvalue, 0);
    settle();
    const auto partial = picture();
    kel_window_update(x->window);
    settle();
    EXPECT_EQ(partial, picture());
}

TEST_F(keys_test, a_typed_number_stops_at_32_bits) {
    x->typeparam_index = PARAM_VEL;
    type("99999999999");
    EXPECT_EQ(x->typedvalue, INT32_MAX);
}

TEST_F(keys_test, typed_times_may_fall) {
    x->typeparam_index = PARAM_TIME;
    type("1500");
    brisolan_key(x, RETURN);
    EXPECT_EQ(values(PARAM_TIME), (three{1500, 1000, 1500}));
    EXPECT_EQ(x->unordered, 1);
}

TEST_F(keys_test, a_typed_number_that_goes_through_the_update_changes_no_event) {
    x->typeparam_index = PARAM_VEL;
    x->typeupdate = 1;
    type("5");
    brisolan_key(x, RETURN);
    EXPECT_EQ(values(PARAM_VEL), (three{64, 64, 64}));
    EXPECT_EQ(x->typing, 0);
    EXPECT_EQ(x->typedvalue, 0);
}

TEST_F(keys_test, up_and_down_do_nothing_where_the_vertical_axis_has_no_parameter) {
    x->yparam = -1;
    brisolan_key(x, UP);
    brisolan_key(x, DOWN);
    x->yparam = PARAM_PITCH;
    EXPECT_EQ(values(PARAM_PITCH), (three{60, 62, 64}));
    EXPECT_EQ(x->redraw.changed, 0);
}

} // namespace
