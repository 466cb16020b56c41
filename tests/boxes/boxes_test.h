// tests/boxes/boxes_test.h: the fixture of the box tests: a patch in virtual time, and what it prints and plays.
// Test layer.
#pragma once

#include <string>
#include <vector>

#include "host/boxes/midi_device.h"
#include "tests/support/host_test.h"

class boxes_test : public host_test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Reads a patch from its text into the patcher; false when it has no form.
    bool load(const std::string& text);
    // The patch as it is saved.
    std::string saved();

    // Sends a message, written as in a script, to the box at a place; its deferred calls follow.
    void send(int box, const std::string& message);
    void to_inlet(int box, int inlet, int value);
    // Milliseconds of virtual time pass.
    void wait(int ms);
    // A note comes in from a device.
    void note_in(int channel, int pitch, int velocity, int port = 1);
    // The notes that left since the last call: "TIME on|off CHANNEL PITCH VELOCITY", the time in milliseconds.
    std::vector<std::string> played();

    host_object* box(int place);

    host_patcher* patcher = nullptr;

private:
    static void hear(void* test, int port, int channel, int pitch, int velocity);

    midi_device ear;
    std::vector<std::string> notes;
};

using texts = std::vector<std::string>;
