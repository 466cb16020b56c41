// core/output.h: what all modes share: writing one event to the outlets, the mute test, and the stop.
// Layer: core. Called by playback, following, "nth", "clear", and the MIDI reader and writer.
#pragma once

#include "core/instance.h"

// Whether an entry of the mute list silences the event. [scheduler]
bool brisolan_mutethis(const brisolan* x, const event* e);

// Writes one event out: X2, X1, Track, Chan, Dur, Vel (0 when on is 0), Pitch; nothing when it is muted. The Time
// outlet is not used. [scheduler]
void brisolan_sendevt(brisolan* x, const event* e, int on);

// The same without the mute test. [scheduler]
void brisolan_writeevt(brisolan* x, const event* e, std::int32_t vel);

// Ends whatever runs: mode idle, inputs back to their defaults, held and pending notes forgotten, a fresh serial. Puts
// nothing out: notes that sound get no note-off. [scheduler]
void brisolan_stop(brisolan* x);
