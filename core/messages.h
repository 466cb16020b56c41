// core/messages.h: the messages that address the sequence directly, and the mute list.
// Layer: core. Sent by the patch.
#pragma once

#include <cstdint>

#include "core/instance.h"

// "nth": puts out the n-th event from 0, then its Time at the Time outlet, also when it is muted; nothing when there is
// no such event. The cursor stays. [scheduler]
void brisolan_nth(brisolan* x, std::int32_t n);

// "params": how following searches: the skip allowance (16 bits), the time window in milliseconds (16 bits), and
// whether octaves match (a byte). [scheduler]
void brisolan_params(brisolan* x, std::int32_t skip, std::int32_t window, std::int32_t octaves);

// "clear": stops, deletes every event and mute, scrolls back to the start. `lasttime` stays. [scheduler]
void brisolan_clear(brisolan* x);

// The same, but the events, linked through `next`, are the caller's, to be freed or filled again; null when there were
// none. [scheduler]
event* brisolan_clearkeeping(brisolan* x);

// Moves the cursor to the first event with this pitch, vel and chan; to null, with a notice, when there is none.
// [scheduler]
void brisolan_at(brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan);

// "mute": events whose parameter `index` equals `value` go silent; with on 0 the same as "unmute". [scheduler]
void brisolan_mute(brisolan* x, std::int32_t index, std::int32_t value, std::int32_t on);

// "unmute": takes the newest entry with this index and value away; one for each message. [scheduler]
void brisolan_unmute(brisolan* x, std::int32_t index, std::int32_t value);

// "unmuteall". [scheduler]
void brisolan_unmuteall(brisolan* x);
