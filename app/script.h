// app/script.h: the runner of the script language: one patcher, one or more instances, driven line by line.
// Layer: program; leans on the headless host and the object's record.
// Called by `brisolan script`, by tests and by the fuzzer.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/script_words.h"
#include "app/session.h"

class script_runner {
public:
    // Builds the patcher and its first instance, named when `name` is not empty; every observable line goes to `print`,
    // control characters in it as escapes.
    script_runner(const std::string& name, std::function<void(const std::string&)> print);
    ~script_runner();
    script_runner(const script_runner&) = delete;
    script_runner& operator=(const script_runner&) = delete;

    // Carries out one line and all that it sets off. An empty string, or why the line is not understood; nothing of such
    // a line was done. [main]
    std::string run(const std::string& line);

    // The addressed instance; null after it was freed. [main]
    brisolan* addressed() const;

private:
    // A message sent back into an instance whenever a value leaves one of its outlets.
    struct tie {
        int outlet;
        std::vector<atom> message;
    };

    // One instance with what the script hangs on it.
    struct seat {
        script_runner* runner = nullptr;
        brisolan* x = nullptr;
        host_clock* loop = nullptr;
        std::vector<tie> ties;
    };

    using words = std::vector<script_word>;
    struct command;
    static const std::map<std::string, command>& commands();

    void add(const std::string& name);
    void vacate(seat& s);
    void settle();
    void print_lines(const host_atombuf* lines);
    std::string send(const words& w);
    std::string run_command(const words& w);
    static void loop_due(seat* s);
    static void value_left(void* seat_of, int outlet, std::int32_t value);

    std::string do_in(const words& w);
    std::string do_wait(const words& w);
    std::string do_new(const words& w);
    std::string do_use(const words& w);
    std::string do_free(const words& w);
    std::string do_loop(const words& w);
    std::string do_tie(const words& w);
    std::string do_untie(const words& w);
    std::string do_click(const words& w);
    std::string do_drag(const words& w);
    std::string do_release(const words& w);
    std::string do_hold(const words& w);
    std::string do_pointer(const words& w);
    std::string do_key(const words& w);
    std::string do_resize(const words& w);
    std::string do_update(const words& w);
    std::string do_edit(const words& w);
    std::string do_clipboard(const words& w);
    std::string do_choose(const words& w);
    std::string do_answer(const words& w);
    std::string do_saveto(const words& w);
    std::string do_patcher(const words& w);
    std::string do_pstate(const words& w);
    std::string do_assist(const words& w);
    std::string do_dump(const words& w);
    std::string do_params(const words& w);
    std::string do_state(const words& w);
    std::string do_tracks(const words& w);
    std::string do_png(const words& w);

    std::function<void(const std::string&)> print;
    headless_session session;
    symbol* const next = host_symbol("next");
    std::vector<std::unique_ptr<seat>> seats; // every instance made, in order; a freed one keeps its number
    seat* here = nullptr;                     // the addressed one
    bool looping = false;
};
