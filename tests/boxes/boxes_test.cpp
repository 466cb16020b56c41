// tests/boxes/boxes_test.cpp: the fixture of the box tests.
// Test layer.
#include "tests/boxes/boxes_test.h"

#include <utility>

#include "host/boxes/boxes.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/patchfile.h"
#include "tests/support/atombuf_text.h"

void boxes_test::SetUp() {
    host_test::SetUp();
    load_brisolan();
    boxes_load();
    patcher = kel_patcher_new();
    ear = {this, hear};
    ASSERT_TRUE(midi_device_add(&ear));
}

void boxes_test::TearDown() {
    midi_device_remove(&ear);
    kel_patcher_free(patcher);
    host_test::TearDown();
}

bool boxes_test::load(const std::string& text) {
    const bool done = kel_patch_parse(patcher, text, "test.kel");
    kel_run_queue();
    return done;
}

std::string boxes_test::saved() {
    return text_of(patcher);
}

host_object* boxes_test::box(int place) {
    return kel_patcher_patch(patcher).boxes.at(static_cast<std::size_t>(place)).object;
}

void boxes_test::send(int place, const std::string& message) {
    kel_message(box(place), atoms_of(message));
    kel_run_queue();
}

void boxes_test::to_inlet(int place, int inlet, int value) {
    kel_inlet(box(place), inlet, value);
    kel_run_queue();
}

void boxes_test::wait(int ms) {
    headless_wait(ms);
}

void boxes_test::note_in(int channel, int pitch, int velocity, int port) {
    kel_post(midi_arrived, nullptr, midi_place(port, channel), midi_key(pitch, velocity));
    kel_run_queue();
}

std::vector<std::string> boxes_test::played() {
    return std::exchange(notes, {});
}

void boxes_test::hear(void* test, int, int channel, int pitch, int velocity) {
    std::string note = std::to_string(kel_now() / NS_PER_MS) + (velocity ? " on " : " off ") +
                       std::to_string(channel) + " " + std::to_string(pitch);
    if (velocity) note += " " + std::to_string(velocity);
    static_cast<boxes_test*>(test)->notes.push_back(note);
}
