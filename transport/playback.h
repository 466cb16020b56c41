// transport/playback.h: putting the sequence out one event a step; the patch around the object keeps the time.
// Layer: transport. Called by messages at the left inlet and by the instance's play_clock.
#pragma once

#include <cstdint>

#include "core/instance.h"

// "start": stops, puts the cursor on the first event and that event's Time out at the Time outlet; an empty sequence
// posts "no sequence" and stays idle. [scheduler]
void brisolan_start(brisolan* x);

// "startat": stops, looks for the first event with this pitch, vel and chan, puts out the wait from it to the following
// event at the Time outlet, and plays from that following event on. Idle when there is no such event ("brisolan: note
// not found") or none after it. [scheduler]
void brisolan_startat(brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan);

// "next" and bang: puts out the event at the cursor, then at the Time outlet the wait until the following one, in
// milliseconds; -1 after the last, and the object stops. Inside an event's own output it puts itself off by 1 ms.
// [scheduler]
void brisolan_next(brisolan* x);

// "stop": stops; after a recording with the window open, the view is drawn anew. [scheduler]
void brisolan_mstop(brisolan* x);

// "delay": moves the whole sequence in time so that its first event starts at `time` milliseconds. [scheduler]
void brisolan_delay(brisolan* x, std::int32_t time);

// Puts out a note-off for the first held note of this pitch and forgets it; nothing when none is held. [scheduler]
void brisolan_fnoteoff(brisolan* x, std::int32_t pitch);
