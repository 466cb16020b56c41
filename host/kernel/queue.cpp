// host/kernel/queue.cpp: the low-priority queue of the main level.
// Layer: kernel. Fed from either level, emptied at main level.
//
// Both levels push onto one stack without a lock; the main level takes the stack whole, turns it round, and puts each
// entry at the front or the back of its own queue.
#include "host/kernel/queue.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <new>

#include "host/kernel/kernel.h"
#include "host/kernel/level.h"
#include "host/kernel/memory.h"

namespace {

enum class entry_kind : std::uint8_t { qelem, front, back };

struct entry {
    entry* next = nullptr;
    entry_kind kind;
};

// A deferred call, its atoms behind it. One small block.
struct deferred_call : entry {
    host_object* x;
    host_detail::deferred routine;
    symbol* selector;
    std::int32_t argc;
    atom* argv() { return reinterpret_cast<atom*>(this + 1); }
    std::size_t bytes() const {
        return sizeof(deferred_call) + static_cast<std::size_t>(argc) * sizeof(atom);
    }
};
static_assert(sizeof(deferred_call) % alignof(atom) == 0);

std::atomic<entry*> inbox{nullptr};
std::deque<entry*> queue; // main level alone

// Deferred calls that wait. A clock that sets itself again without delay can make them faster than any main level takes
// them: beyond this many they are dropped, and the console is told once for each time that it happens.
constexpr std::int64_t MOST_WAITING = 100'000;
std::atomic<std::int64_t> waiting{0};
std::atomic<bool> dropped{false};
bool told_of_drops = false; // main level alone; until few wait again

void post(entry* e) {
    entry* before = inbox.load(std::memory_order_relaxed);
    do {
        e->next = before; // not to be looked at once e is in: the main level may have freed it
    } while (!inbox.compare_exchange_weak(before, e, std::memory_order_release, std::memory_order_relaxed));
    if (before) return; // whoever came first has woken the main level, which takes all at once
    const host_platform& p = kel_platform();
    if (p.wake) p.wake(p.user);
}

void sort_inbox() {
    entry* oldest = nullptr;
    for (entry* e = inbox.exchange(nullptr, std::memory_order_acquire); e;) {
        entry* older = e->next;
        e->next = oldest;
        oldest = e;
        e = older;
    }
    for (entry* e = oldest; e; e = e->next) {
        if (e->kind == entry_kind::front)
            queue.push_front(e);
        else
            queue.push_back(e);
    }
}

void free_call(deferred_call* d) {
    waiting.fetch_sub(1, std::memory_order_relaxed);
    host_freebytes(d, d->bytes());
}

void defer(entry_kind kind, host_object* x, host_detail::deferred routine, symbol* selector,
           std::int32_t argc, const atom* argv) {
    if (waiting.load(std::memory_order_relaxed) >= MOST_WAITING) {
        dropped.store(true, std::memory_order_relaxed);
        return;
    }
    const auto n = static_cast<std::size_t>(std::max(argc, 0));
    void* block = kel_getbytes_reserved(sizeof(deferred_call) + n * sizeof(atom));
    if (!block) return;
    waiting.fetch_add(1, std::memory_order_relaxed);
    auto* d = new (block) deferred_call{{nullptr, kind}, x, routine, selector, static_cast<std::int32_t>(n)};
    for (std::size_t i = 0; i < n; ++i) new (d->argv() + i) atom(argv[i]);
    post(d);
}

void tell_of_drops() {
    if (waiting.load(std::memory_order_relaxed) < MOST_WAITING / 2) told_of_drops = false;
    if (!dropped.exchange(false, std::memory_order_relaxed) || told_of_drops) return;
    told_of_drops = true;
    host_error("host: too many calls wait for the main level; some are dropped");
}

} // namespace

struct host_qelem : entry {
    void* owner;
    void (*routine)(void*);
    std::atomic<bool> queued{false};
};

namespace host_detail {

host_qelem* qelem_create(void* owner, void (*routine)(void*)) {
    return new host_qelem{{nullptr, entry_kind::qelem}, owner, routine, false};
}

void defer_front(host_object* x, deferred routine, symbol* selector, std::int32_t argc, const atom* argv) {
    defer(entry_kind::front, x, routine, selector, argc, argv);
}

void defer_back(host_object* x, deferred routine, symbol* selector, std::int32_t argc, const atom* argv) {
    defer(entry_kind::back, x, routine, selector, argc, argv);
}

} // namespace host_detail

void host_qelem_set(host_qelem* q) {
    // Only the main level takes a call out of the queue: what it finds queued stays so while it looks.
    if (kel_current_level() == kel_level::main && q->queued.load(std::memory_order_relaxed)) return;
    if (!q->queued.exchange(true, std::memory_order_acq_rel)) post(q);
}

void host_qelem_unset(host_qelem* q) {
    host_expect_main("host_qelem_unset");
    sort_inbox();
    std::erase(queue, static_cast<entry*>(q));
    q->queued.store(false, std::memory_order_release);
}

void host_qelem_free(host_qelem* q) {
    if (!q) return;
    host_qelem_unset(q);
    delete q;
}

bool kel_queue_run_one() {
    kel_memory_quiescent();
    sort_inbox();
    tell_of_drops();
    if (queue.empty()) return false;
    entry* e = queue.front();
    queue.pop_front();
    if (e->kind == entry_kind::qelem) {
        auto* q = static_cast<host_qelem*>(e);
        q->queued.store(false, std::memory_order_release);
        q->routine(q->owner);
    } else {
        auto* d = static_cast<deferred_call*>(e);
        d->routine(d->x, d->selector, d->argc, d->argv());
        free_call(d);
    }
    return true;
}

void kel_queue_forget(const host_object* x) {
    sort_inbox();
    std::erase_if(queue, [x](entry* e) {
        if (e->kind == entry_kind::qelem) return false;
        auto* d = static_cast<deferred_call*>(e);
        if (d->x != x) return false;
        free_call(d);
        return true;
    });
}

void kel_queue_reset() {
    sort_inbox();
    for (entry* e : queue) {
        if (e->kind != entry_kind::qelem)
            free_call(static_cast<deferred_call*>(e));
        else
            static_cast<host_qelem*>(e)->queued.store(false, std::memory_order_release);
    }
    queue.clear();
}
