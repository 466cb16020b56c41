// tests/io/io_test.h: an instance in an empty folder, with what it holds as text.
// Test layer. Used by the tests of the object's files.
#pragma once

#include <string>
#include <vector>

#include "core/check.h"
#include "core/sequence.h"
#include "host/kernel/files.h"
#include "tests/support/host_test.h"
#include "tests/support/scratch_folder.h"

using text_lines = std::vector<std::string>;

inline std::string event_text(const event& e) {
    std::string s;
    for (int i = 0; i < NPARAMS; ++i) s += (i ? " " : "") + std::to_string(event_param(e, i));
    return s;
}

inline text_lines events_of(const brisolan* x) {
    text_lines all;
    for (const event* e = x->events; e; e = e->next) all.push_back(event_text(*e));
    return all;
}

class io_test : public object_test {
protected:
    void TearDown() override {
        kel_file_fault(0);
        brisolan_checkinvariants(x);
        object_test::TearDown();
    }

    text_lines events() const { return events_of(x); }

    // Sends a message; the console's lines that come of it.
    text_lines told(const std::string& message) {
        (void)taken();
        send(message);
        return taken();
    }

    // Replaces the sequence by these events, appended in order.
    void fill(std::initializer_list<std::array<std::int32_t, NPARAMS>> values) {
        send("clear");
        for (const auto& v : values) {
            x->lasttime = v[0];
            brisolan_append(x, 0, v, false);
        }
        kel_run_queue();
    }

    void answer(const std::string& path, file_type type = 0) {
        machine.answers.push_back({false, path, type});
    }
    void cancel() { machine.answers.push_back({true, "", 0}); }

    scratch_folder folder{true};
};
