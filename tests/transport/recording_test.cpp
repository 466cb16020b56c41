// tests/transport/recording_test.cpp: random performances, recorded, against a second and plainer telling of the rules.
// Test layer.
#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <vector>

#include "host/kernel/dispatch.h"
#include "host/kernel/memory.h"
#include "tests/support/host_test.h"

namespace {

using values = std::array<std::int32_t, NPARAMS>;

// What a recording makes of its inputs, told without lists that share nodes: at most two notes are held. The first of a
// run stays until its note-off; each further one takes the place of the one before it; once the first has ended, those
// that come find no place until none is held.
class plain_recording {
public:
    std::vector<values> events;

    void set(int inlet, std::int32_t value) {
        inputs[static_cast<std::size_t>(inlet)] = value;
        if (inlet == PARAM_DUR) explicit_duration = true;
    }
    void set_by_list(const values& v) {
        std::copy(v.begin() + 1, v.end(), inputs.begin() + 1); // no duration of a list is an explicit one
    }
    void time(std::int32_t delta) {
        now += std::max(delta, 0);
        if (explicit_duration) {
            add();
            explicit_duration = false;
        } else if (inputs[PARAM_VEL] != 0) {
            add();
            hold(events.size() - 1);
        } else {
            note_off();
        }
    }

private:
    void add() {
        values v = inputs;
        v[PARAM_TIME] = now;
        events.push_back(v);
    }
    void hold(std::size_t note) {
        if (!first && !second)
            first = note;
        else if (first)
            second = note;
    }
    void note_off() {
        for (std::optional<std::size_t>* held : {&first, &second}) {
            if (!*held || events[**held][PARAM_PITCH] != inputs[PARAM_PITCH]) continue;
            values& e = events[**held];
            e[PARAM_DUR] = std::max(now - e[PARAM_TIME], 0);
            held->reset();
            return;
        }
    }

    values inputs{};
    bool explicit_duration = false;
    std::int32_t now = 0;
    std::optional<std::size_t> first;
    std::optional<std::size_t> second;
};

class random_recording : public object_test {
protected:
    int number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(dice); }
    bool chance(int in) { return number(1, in) == 1; }

    void put(int inlet, std::int32_t value) {
        kel_inlet(x, inlet, value);
        plain.set(inlet, value);
    }
    void put_time(std::int32_t delta) {
        if (chance(8))
            kel_number(x, atom(static_cast<float>(delta) + (delta < 0 ? -0.75F : 0.75F)));
        else
            kel_number(x, atom(delta));
        plain.time(delta);
    }
    // Eight numbers at once; with a float in front they only set the inputs.
    void put_list(bool with_time) {
        const values v{number(0, 300), number(60, 66), chance(3) ? 0 : number(1, 127),
                       number(1, 900), number(1, 16),  number(1, 32),
                       number(0, 9),   number(0, 9)};
        std::vector<atom> atoms{with_time ? atom(v[0]) : atom(0.5F)};
        for (std::size_t i = 1; i < v.size(); ++i) atoms.emplace_back(v[i]);
        kel_send(x, host_symbol("list"), atoms);
        plain.set_by_list(v);
        if (with_time) plain.time(v[0]);
    }
    void put_something() {
        switch (number(0, 9)) {
        case 0: put(PARAM_DUR, number(0, 5000)); break;
        case 1: put(number(PARAM_CHAN, PARAM_X2), number(-5, 40)); break;
        case 2: put_list(chance(2)); break;
        default:
            put(PARAM_PITCH, number(60, 66));
            put(PARAM_VEL, chance(2) ? 0 : number(1, 127));
            put_time(chance(10) ? -number(1, 100) : number(0, 400));
            break;
        }
    }
    std::vector<values> recorded() const {
        std::vector<values> all;
        for (const event* e = x->events; e; e = e->next) {
            values v{};
            for (int i = 0; i < NPARAMS; ++i) v[static_cast<std::size_t>(i)] = event_param(*e, i);
            all.push_back(v);
        }
        return all;
    }

    std::mt19937 dice;
    plain_recording plain;
};

TEST_F(random_recording, gives_what_the_plain_rules_give_and_a_stop_leaves_no_node) {
    constexpr unsigned PERFORMANCES = 400;
    const std::int64_t blocks = kel_memory_blocks();
    for (unsigned seed = 0; seed < PERFORMANCES; ++seed) {
        dice.seed(seed);
        plain = {};
        send("record");
        put_list(false); // every input has a value of its own from the start
        for (int n = number(0, 60); n > 0; --n) put_something();
        ASSERT_EQ(recorded(), plain.events) << "performance " << seed;
        send(std::array{"stop", "start", "follow", "record"}[seed % 4]);
        ASSERT_EQ(x->held, nullptr);
        ASSERT_EQ(x->nheld, 0);
        if (seed % 4 != 3) {
            ASSERT_EQ(recorded(), plain.events) << "performance " << seed;
        }
        send("stop");
        ASSERT_EQ(kel_memory_blocks(), blocks + x->nevents) << "performance " << seed;
        send("clear");
        ASSERT_EQ(kel_memory_blocks(), blocks);
    }
}

} // namespace
