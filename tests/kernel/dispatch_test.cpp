// tests/kernel/dispatch_test.cpp: classes, checked messages, inlets, outlets and cords.
// Test layer.
#include "tests/support/host_test.h"

#include <sstream>

#include "host/kernel/dispatch.h"
#include "host/kernel/objects.h"

namespace {

using lines_of = std::vector<std::string>;

// A box that writes down what reaches it.
struct probe : host_object {
    host_outlet* right = nullptr;
    host_outlet* left = nullptr;
};

host_class* probe_class = nullptr;
std::vector<std::string> heard;

probe* probe_new(symbol*, std::int32_t) {
    probe* x = host_object_new<probe>(probe_class);
    x->right = host_outlet_int_new(x);
    x->left = host_outlet_int_new(x);
    host_inlet_int(x, 1);
    return x;
}
void probe_free(probe*) {
    heard.push_back("free");
}

void hear(const std::string& what) {
    heard.push_back(what);
}
void probe_plain(probe*) {
    hear("plain");
}
void probe_three(probe*, std::int32_t a, float b, symbol* c) {
    std::ostringstream text;
    text << "three " << a << " " << b << " " << c->name;
    hear(text.str());
}
void probe_optional(probe*, std::int32_t n, symbol* s) {
    hear("optional " + std::to_string(n) + " <" + s->name + ">");
}
void probe_list(probe*, symbol* selector, std::int32_t argc, const atom*) {
    hear(std::string(selector->name) + " of " + std::to_string(argc));
}
void probe_int(probe*, std::int32_t n) {
    hear("int " + std::to_string(n));
}
void probe_in1(probe*, std::int32_t n) {
    hear("in1 " + std::to_string(n));
}
void probe_key(probe*, int code) {
    hear("key " + std::to_string(code));
}
int probe_click(probe*, Point where, int modifiers) {
    return where.h + where.v + modifiers;
}

void load_probe() {
    probe_class =
        host_class_setup("probe", host_typed_lifecycle<probe_new, probe_free, ARG_DEFSYM, ARG_DEFLONG>());
    host_class_addmethod(probe_class, "plain", host_typed<probe_plain>());
    host_class_addmethod(probe_class, "three", host_typed<probe_three, ARG_LONG, ARG_FLOAT, ARG_SYM>());
    host_class_addmethod(probe_class, "optional", host_typed<probe_optional, ARG_DEFLONG, ARG_DEFSYM>());
    host_class_addmethod(probe_class, "list", host_typed<probe_list, ARG_LIST>());
    host_class_addint(probe_class, host_typed<probe_int, ARG_LONG>());
    host_class_addinletint(probe_class, 1, host_typed<probe_in1, ARG_LONG>());
    host_class_addmethod(probe_class, "key", host_typed_private<"key", probe_key>());
    host_class_addmethod(probe_class, "click", host_typed_private<"click", probe_click>());
}

class dispatch : public host_test {
protected:
    void SetUp() override {
        host_test::SetUp();
        load_probe();
        x = static_cast<probe*>(kel_object_new(probe_class, {}));
        heard.clear();
    }
    void TearDown() override {
        host_object_free(x);
        host_test::TearDown();
    }
    bool send(std::initializer_list<atom> message) {
        return kel_message(x, {message.begin(), message.size()});
    }
    symbol* s(const char* text) { return host_symbol(text); }

    probe* x = nullptr;
};

TEST_F(dispatch, delivers_a_message_with_its_arguments_as_typed) {
    EXPECT_TRUE(send({s("three"), 7, 1.5F, s("word")}));
    EXPECT_EQ(heard, lines_of{"three 7 1.5 word"});
}

TEST_F(dispatch, truncates_a_float_toward_zero_and_converts_an_integer) {
    send({s("three"), -2.9F, 3, s("word")});
    EXPECT_EQ(heard, lines_of{"three -2 3 word"});
}

TEST_F(dispatch, pins_a_float_beyond_the_integers) {
    send({s("optional"), 3e9F});
    send({s("optional"), -3e9F});
    EXPECT_EQ(heard, (lines_of{"optional 2147483647 <>", "optional -2147483648 <>"}));
}

TEST_F(dispatch, fills_in_what_is_optional_and_drops_what_is_too_much) {
    send({s("optional")});
    send({s("optional"), 4, s("a"), 5, 6});
    EXPECT_EQ(heard, (lines_of{"optional 0 <>", "optional 4 <a>"}));
}

TEST_F(dispatch, refuses_with_one_error_and_delivers_nothing) {
    EXPECT_FALSE(send({s("three"), 7, 1.5F}));
    EXPECT_FALSE(send({s("three"), s("seven"), 1.5F, s("word")}));
    EXPECT_FALSE(send({s("three"), 7, 1.5F, 8}));
    EXPECT_FALSE(send({s("unheard")}));
    EXPECT_FALSE(send({s("key"), 8}));
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(taken(), (lines_of{"error host: probe: three: too few arguments",
                                 "error host: probe: three: argument 1 must be an integer",
                                 "error host: probe: three: argument 3 must be a symbol",
                                 "error host: probe: no message \"unheard\"",
                                 "error host: probe: only the host sends \"key\""}));
}

TEST_F(dispatch, takes_a_number_a_list_and_a_list_of_one) {
    send({12});
    send({12.9F});
    send({1, 2, 3});
    send({s("list"), 5});
    send({s("list")});
    EXPECT_EQ(heard, (lines_of{"int 12", "int 12", "list of 3", "list of 1", "list of 0"}));
}

TEST_F(dispatch, sends_private_messages_with_their_own_arguments) {
    kel_private<"key">(x, 28);
    EXPECT_EQ(heard, lines_of{"key 28"});
    EXPECT_EQ((kel_private<"click">(x, Point{2, 3}, 100)), 105);
    kel_private<"update">(x); // the class has none: nothing happens
}

TEST_F(dispatch, carries_values_down_every_cord_in_order_of_connecting) {
    auto* a = static_cast<probe*>(kel_object_new(probe_class, {}));
    ASSERT_TRUE(kel_connect(x, 0, a, 1));
    ASSERT_TRUE(kel_connect(x, 0, a, 0));
    ASSERT_TRUE(kel_connect(x, 0, a, 0)); // there already
    EXPECT_FALSE(kel_connect(x, 2, a, 0));
    {
        const host_locked_out now;
        host_outlet_int(x->left, 9);
        host_outlet_int(x->right, 8);
    }
    EXPECT_EQ(heard, (lines_of{"in1 9", "int 9"}));
    host_object_free(a);
    EXPECT_TRUE(kel_cords(x, 0).empty());
}

TEST_F(dispatch, names_outlets_from_the_left) {
    EXPECT_EQ(kel_outlets(x), 2);
    EXPECT_EQ(kel_outlet(x, 0), x->left);
    EXPECT_EQ(kel_outlet(x, 1), x->right);
    EXPECT_EQ(kel_outlet(x, 2), nullptr);
    EXPECT_EQ(kel_outlet(x, -1), nullptr);
}

TEST_F(dispatch, reaches_a_bound_object_by_its_symbol_and_says_when_nobody_is_bound) {
    s("target")->thing = static_cast<host_object*>(x);
    const atom plain[] = {atom(s("plain"))};
    EXPECT_TRUE(kel_message(s("target"), plain));
    EXPECT_FALSE(kel_message(s("nobody"), plain));
    EXPECT_EQ(heard, lines_of{"plain"});
    EXPECT_EQ(taken(), lines_of{"error host: no object named \"nobody\""});
}

TEST_F(dispatch, unbinds_an_object_that_is_freed) {
    auto* a = static_cast<probe*>(kel_object_new(probe_class, {}));
    s("target")->thing = static_cast<host_object*>(a);
    host_object_free(a);
    EXPECT_EQ(s("target")->thing, nullptr);
    EXPECT_EQ(heard, lines_of{"free"});
}

// A message that sends itself again from inside its own delivery.
struct echo : host_object {};
host_class* echo_class = nullptr;
int echoes = 0;
echo* echo_new() {
    return host_object_new<echo>(echo_class);
}
void echo_free(echo*) {}
void echo_bang(echo* x) {
    ++echoes;
    kel_send(x, host_symbol("bang"), {});
    kel_send(x, host_symbol("bang"), {});
}

TEST_F(dispatch, ends_an_endless_nesting_with_one_error_line) {
    echo_class = host_class_setup("echo", host_typed_lifecycle<echo_new, echo_free>());
    host_class_addbang(echo_class, host_typed<echo_bang>());
    host_object* e = kel_object_new(echo_class, {});
    echoes = 0;
    kel_send(e, s("bang"), {});
    EXPECT_EQ(taken(), lines_of{"error host: messages nested too deep"});
    EXPECT_LT(echoes, 1000);
    kel_send(e, s("bang"), {});
    EXPECT_EQ(taken(), lines_of{"error host: messages nested too deep"});
    host_object_free(e);
}

// Sets off two of the next smaller number, so that one message becomes a power of two.
void doubler_int(echo* x, std::int32_t n) {
    ++echoes;
    for (int i = 0; i < 2 && n > 0; ++i) kel_number(x, atom(n - 1));
}

TEST_F(dispatch, ends_an_explosion_of_messages_with_one_error_line) {
    constexpr int MOST = 1000;
    constexpr int LEVELS = 20;
    kel_message_limit(MOST);
    echo_class = host_class_setup("doubler", host_typed_lifecycle<echo_new, echo_free>());
    host_class_addint(echo_class, host_typed<doubler_int, ARG_LONG>());
    host_object* e = kel_object_new(echo_class, {});
    echoes = 0;
    kel_number(e, atom(LEVELS));
    EXPECT_EQ(echoes, MOST);
    EXPECT_EQ(taken(), lines_of{"error host: too many messages at once"});
    // The next message starts anew, and one that keeps within the limit is delivered whole.
    echoes = 0;
    kel_number(e, atom(8));
    EXPECT_EQ(echoes, (1 << 9) - 1);
    EXPECT_EQ(taken(), lines_of{});
    kel_message_limit(0);
    host_object_free(e);
}

} // namespace
