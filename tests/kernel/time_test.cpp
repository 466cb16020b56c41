// tests/kernel/time_test.cpp: clocks in virtual and real time, the low-priority queue, the lockout.
// Test layer.
#include "tests/support/host_test.h"

#include <atomic>
#include <chrono>
#include <thread>

#include "host/kernel/level.h"
#include "host/kernel/queue.h"

namespace {

using namespace std::chrono_literals;
using lines_of = std::vector<std::string>;

std::vector<std::string> log_of_calls;
void note(const std::string& what) {
    log_of_calls.push_back(what);
}

struct ticker {
    const char* name;
    host_clock* clock = nullptr;
    int again = -1; // sets itself again after so many milliseconds
    int left = 0;
};

void ticker_due(ticker* t) {
    note(std::string(t->name) + "@" + std::to_string(kel_now() / NS_PER_MS));
    EXPECT_EQ(kel_current_level(), kel_level::scheduler);
    if (t->again >= 0 && t->left-- > 0) host_clock_delay(t->clock, t->again);
}

class virtual_time : public host_test {
protected:
    void SetUp() override {
        host_test::SetUp();
        log_of_calls.clear();
        for (ticker* t : {&a, &b}) t->clock = host_clock_new<ticker_due>(t);
    }
    void TearDown() override {
        for (ticker* t : {&a, &b}) host_clock_free(t->clock);
        host_test::TearDown();
    }
    ticker a{"a"};
    ticker b{"b"};
};

TEST_F(virtual_time, fires_in_order_of_due_time_then_of_setting) {
    host_clock_delay(b.clock, 10);
    host_clock_delay(a.clock, 10);
    headless_wait(9);
    EXPECT_TRUE(log_of_calls.empty());
    headless_wait(1);
    EXPECT_EQ(log_of_calls, (lines_of{"b@10", "a@10"}));
}

TEST_F(virtual_time, replaces_a_time_that_was_set_before) {
    host_clock_delay(a.clock, 5);
    host_clock_delay(b.clock, 5);
    host_clock_delay(a.clock, 5); // now set after b
    headless_wait(100);
    EXPECT_EQ(log_of_calls, (lines_of{"b@5", "a@5"}));
}

TEST_F(virtual_time, counts_a_negative_delay_as_none) {
    host_clock_delay(a.clock, -7);
    headless_wait(0);
    EXPECT_EQ(log_of_calls, lines_of{"a@0"});
}

TEST_F(virtual_time, does_not_fire_what_was_unset) {
    host_clock_delay(a.clock, 5);
    host_clock_unset(a.clock);
    headless_wait(100);
    EXPECT_TRUE(log_of_calls.empty());
}

TEST_F(virtual_time, lets_a_clock_set_itself_again_without_drift) {
    a.again = 3;
    a.left = 3;
    host_clock_delay(a.clock, 1);
    headless_wait(100);
    EXPECT_EQ(log_of_calls, (lines_of{"a@1", "a@4", "a@7", "a@10"}));
}

// The queue, seen through an object that writes down its deferred calls.
struct caller : host_object {
    host_qelem* qelem = nullptr;
};
host_class* caller_class = nullptr;
caller* caller_new() {
    return host_object_new<caller>(caller_class);
}
void caller_free(caller* x) {
    host_qelem_free(x->qelem);
}
void call_low(caller*, symbol* s, std::int32_t argc, const atom* argv) {
    EXPECT_EQ(kel_current_level(), kel_level::main);
    note(std::string(s->name) + (argc ? std::to_string(argv[argc - 1].l) : ""));
}
void queued(caller*) {
    note("qelem");
}

class low_queue : public host_test {
protected:
    void SetUp() override {
        host_test::SetUp();
        log_of_calls.clear();
        caller_class = host_class_setup("caller", host_typed_lifecycle<caller_new, caller_free>());
        x = caller_new();
        x->qelem = host_qelem_new<queued>(x);
    }
    void TearDown() override {
        if (x) host_object_free(x);
        host_test::TearDown();
    }
    void front(const char* name) { host_defer<call_low>(x, host_symbol(name), 0, nullptr); }
    void back(const char* name) { host_defer_low<call_low>(x, host_symbol(name), 0, nullptr); }
    caller* x = nullptr;
};

TEST_F(low_queue, runs_front_calls_before_back_calls) {
    back("b1");
    front("f1");
    back("b2");
    front("f2");
    kel_run_queue();
    EXPECT_EQ(log_of_calls, (lines_of{"f2", "f1", "b1", "b2"}));
}

TEST_F(low_queue, runs_a_queued_call_once_however_often_it_is_set) {
    for (int i = 0; i < 5; ++i) host_qelem_set(x->qelem);
    kel_run_queue();
    EXPECT_EQ(log_of_calls, lines_of{"qelem"});
    host_qelem_set(x->qelem);
    kel_run_queue();
    EXPECT_EQ(log_of_calls.size(), 2U);
}

TEST_F(low_queue, does_not_run_what_was_unset) {
    host_qelem_set(x->qelem);
    host_qelem_unset(x->qelem);
    kel_run_queue();
    EXPECT_TRUE(log_of_calls.empty());
}

TEST_F(low_queue, copies_the_atoms) {
    {
        const atom atoms[] = {atom(1), atom(2)};
        host_defer<call_low>(x, host_symbol("n"), 2, atoms);
    }
    kel_run_queue();
    EXPECT_EQ(log_of_calls, lines_of{"n2"});
}

TEST_F(low_queue, drops_the_calls_of_an_object_that_is_freed) {
    front("f");
    back("b");
    host_qelem_set(x->qelem);
    host_object_free(x);
    x = nullptr;
    kel_run_queue();
    EXPECT_TRUE(log_of_calls.empty());
}

// Real time: the scheduler is a thread of its own.
class real_time : public testing::Test {
protected:
    void SetUp() override { kel_start(kel_timing::real_time, nullptr); }
    void TearDown() override { EXPECT_TRUE(kel_end()); }
};

struct beat {
    host_clock* clock = nullptr;
    std::atomic<int> count{0};
    std::atomic<kel_time> last{0};
};

void beat_due(beat* b) {
    b->last = kel_now();
    if (++b->count < 20) host_clock_delay(b->clock, 5);
}

TEST_F(real_time, fires_at_exact_multiples_of_its_own_time) {
    beat b;
    b.clock = host_clock_new<beat_due>(&b);
    kel_time start = 0;
    kel_time set = 0;
    {
        const host_locked_out now; // no callback until both are known
        start = kel_now();
        host_clock_delay(b.clock, 5);
        set = kel_now();
    }
    while (b.count < 20) std::this_thread::sleep_for(1ms);
    EXPECT_GE(b.last, start + 20 * 5 * NS_PER_MS);
    EXPECT_LE(b.last, set + 20 * 5 * NS_PER_MS);
    host_clock_free(b.clock);
}

TEST_F(real_time, keeps_callbacks_off_while_the_lockout_is_on) {
    beat b;
    b.clock = host_clock_new<beat_due>(&b);
    host_clock_delay(b.clock, 1);
    {
        const host_locked_out now;
        const int seen = b.count;
        std::this_thread::sleep_for(50ms);
        EXPECT_EQ(b.count, seen);
    }
    while (b.count < 20) std::this_thread::sleep_for(1ms);
    host_clock_free(b.clock);
}

TEST_F(real_time, runs_what_other_threads_post_at_scheduler_level_each_in_its_order) {
    struct received {
        std::vector<std::int32_t> values[4];
        std::atomic<int> count{0};
    } r;
    const auto take = [](void* context, std::int32_t a, std::int32_t b) {
        auto& to = *static_cast<received*>(context);
        to.values[a].push_back(b);
        ++to.count;
    };
    constexpr int each = 500;
    std::vector<std::thread> devices;
    for (int d = 0; d < 4; ++d) {
        devices.emplace_back([&, d] {
            for (int i = 0; i < each; ++i) kel_post(take, &r, d, i);
        });
    }
    for (std::thread& t : devices) t.join();
    while (r.count < 4 * each) std::this_thread::sleep_for(1ms);
    for (const auto& values : r.values) {
        ASSERT_EQ(values.size(), static_cast<std::size_t>(each));
        EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    }
}

TEST_F(real_time, lets_both_levels_queue_low_priority_calls_at_once) {
    caller_class = host_class_setup("caller", host_typed_lifecycle<caller_new, caller_free>());
    caller* x = caller_new();
    log_of_calls.clear();
    symbol* const from_scheduler = host_symbol("s");
    struct both {
        caller* x;
        symbol* name;
        std::atomic<int> sent{0};
    } context{x, from_scheduler};
    const auto defer_one = [](void* c, std::int32_t, std::int32_t) {
        auto& to = *static_cast<both*>(c);
        host_defer_low<call_low>(to.x, to.name, 0, nullptr);
        ++to.sent;
    };
    for (int i = 0; i < 200; ++i) {
        kel_post(defer_one, &context, 0, 0);
        host_defer_low<call_low>(x, from_scheduler, 0, nullptr);
        kel_run_queue();
    }
    while (context.sent < 200) std::this_thread::sleep_for(1ms);
    kel_run_queue();
    EXPECT_EQ(log_of_calls.size(), 400U);
    host_object_free(x);
}

} // namespace
