// tests/support/growth.cpp: how the work of an operation grows with the number of events, told by counting.
// Test layer.
#include "tests/support/growth.h"

#include <algorithm>
#include <random>
#include <vector>

#include "core/messages.h"
#include "core/steps.h"
#include "host/kernel/level.h"
#include "host/kernel/windows.h"
#include "host/toolbox/raster.h"
#include "view/selected.h"

namespace {

work_count counted() {
#ifndef NDEBUG
    return {static_cast<double>(brisolan_steps), static_cast<double>(raster_spans)};
#else
    return {};
#endif
}

} // namespace

void growth_test::SetUp() {
    object_test::SetUp();
#ifdef NDEBUG
    GTEST_SKIP() << "steps and spans are counted in debug builds";
#endif
}

void growth_test::fill(int n, std::int32_t over) {
    brisolan_clear(x);
    std::mt19937 dice(5);
    const auto below = [&dice](unsigned m) { return static_cast<std::int32_t>(dice() % m); };
    std::vector<std::int32_t> times;
    for (int i = 0; i < n; ++i) times.push_back(over ? below(static_cast<unsigned>(over)) : i * 100);
    std::sort(times.begin(), times.end());
    event head;
    event* last = &head;
    for (int i = 0; i < n; ++i) {
        const std::int32_t time = times[static_cast<std::size_t>(i)];
        event* e = brisolan_newevent(
            {time, 30 + i % 60, 1 + below(127), 50 + below(300), i % 4 ? 2 : 1, 1 + below(32), 0, 0});
        last->next = e;
        last = e;
    }
    brisolan_linkchain(x, head.next);
    kel_run_queue();
}

void growth_test::show(int n, bool selected) {
    constexpr std::int32_t IN_VIEW = 13000; // milliseconds
    if (!x->window->visible) send("open");
    count([this] { brisolan_noselect(x); });
    fill(n, IN_VIEW);
    kel_window_update(x->window);
    if (!selected) return;
    count([this] {
        for (event* e = x->events; e; e = e->next) brisolan_select(x, e);
    });
}

work_count growth_test::count(const std::function<void()>& work) {
    const work_count before = counted();
    GrafPtr port = nullptr;
    GetPort(&port);
    if (x->window->visible) SetPort(x->window->port);
    work();
    SetPort(port);
    kel_run_queue();
    const work_count after = counted();
    return {after.steps - before.steps, after.spans - before.spans};
}

work_count growth_test::count_messages(const std::function<void()>& work) {
    return count([&work] {
        const at_level scheduler(kel_level::scheduler);
        work();
    });
}

void growth_test::expect_growth(double most, const std::function<work_count(int n)>& measured, double least) {
    const work_count few = measured(FIRST_SIZE);
    const work_count many = measured(FIRST_SIZE * 10);
    EXPECT_GE(few.steps, least);
    EXPECT_LE(many.steps, few.steps * most + LITTLE) << few.steps << " steps at first";
    EXPECT_LE(many.spans, few.spans * most + LITTLE) << few.spans << " spans at first";
}
