// app/play_patch.h: one of the program's patches with its score in it, told what to do through its receive boxes.
// Layer: program. Works alike in real and in virtual time.
// Called by the commands that play, record and follow.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "core/instance.h"
#include "host/kernel/patcher.h"

// Loads the classes of the object and of the boxes, then the program's own patch `name` into a new patcher, which is the
// caller's. The instance in it; null, and `why` says why in one line, when the patch has none. [main]
brisolan* load_own_patch(const char* name, host_patcher** patcher, std::string& why);

// Sends a message to the box that receives this name; false when the patch has none. [main]
bool tell(const char* receiver, const char* selector, std::initializer_list<atom> arguments = {});

// The first event at or after `from` milliseconds; null if none. Borrowed: valid until the next relinking. [main]
event* first_note_from(const brisolan* score, std::int32_t from);

// Starts a play patch at `from` milliseconds of its score: the first note at or after that time leaves after the wait
// that is left until it, divided by the speed. False when there is no such note; nothing is started then. [main]
bool start_playing(brisolan* score, std::int32_t from, double speed);

// Whether everything has been played and every note has ended: the score is idle and nothing is still to come. [main]
bool playing_is_over(const brisolan* score);

// When the last note of the score ends, milliseconds. Walks the whole sequence. [main]
std::int64_t score_length(const brisolan* score);
