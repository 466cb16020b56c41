// app/recording.h: a recording under way, by the record patch, and its file.
// Layer: program. Works in real and in virtual time.
// Called by `brisolan record` and the tests.
#pragma once

#include <functional>
#include <string>

#include "app/target.h"
#include "core/instance.h"
#include "host/kernel/patcher.h"

// Records what comes in through the note-in boxes from start() on. However its scope is left, what was recorded is
// saved: on return, on an exception, and on a signal, which ends the loop that waits for it.
class recording {
public:
    // `console` is where the platform puts its console lines.
    recording(std::function<void(const std::string&)>& console, write_target to);
    ~recording();
    recording(const recording&) = delete;
    recording& operator=(const recording&) = delete;

    // Loads the patch, which takes its time: before anybody can play. An empty string, or why it cannot. [main]
    std::string load();

    // Begins; loads the patch if that was not done. An empty string, or why it cannot. [main]
    std::string start();

    // Ends the recording, keys that are held let go, and writes the file; another one, in the folder for temporary
    // files, when it cannot be written there. An empty string, or in one line what went wrong. Once; later calls do
    // nothing. [main]
    std::string save();

    const brisolan* score() const { return x; }

private:
    void halt();

    std::function<void(const std::string&)>& console;
    write_target target;
    host_patcher* patcher = nullptr;
    brisolan* x = nullptr;
    bool running = false;
};
