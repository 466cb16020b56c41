// tests/boxes/boxes_test.cpp: the fixture of the box tests.
// Test layer.
#include "tests/boxes/boxes_test.h"

#include <utility>

#include "host/boxes/boxes.h"
#include "host/kernel/atombuf.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/patchfile.h"
#include "host/kernel/textform.h"

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
    host_atombuf* patch = host_atombuf_new();
    kel_patch_save(patcher, patch);
    std::string text;
    kel_atombuf_lines(patch, [&text](std::span<const atom> line) {
        kel_format_atoms(line, &text);
        text += ";\n";
        return true;
    });
    host_atombuf_free(patch);
    return text;
}

host_object* boxes_test::box(int place) {
    return kel_patcher_patch(patcher).boxes.at(static_cast<std::size_t>(place)).object;
}

void boxes_test::send(int place, const std::string& message) {
    std::string error;
    std::vector<atom> atoms;
    for (const script_word& w : script_split(message, error)) {
        const std::optional<atom> a = script_atom(w, error);
        ASSERT_TRUE(a) << error;
        atoms.push_back(*a);
    }
    kel_message(box(place), atoms);
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
