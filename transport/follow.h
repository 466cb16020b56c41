// transport/follow.h: matching a performer's notes against the score and putting out what belongs to them.
// Layer: transport. Called by messages at the left inlet.
#pragma once

#include <cstdint>

#include "core/instance.h"

// "follow": stops, puts the score position on the n-th event and follows from there; "follow: out of range", position
// null and idle when there is no such event. [scheduler]
void brisolan_follow(brisolan* x, std::int32_t n);

// "followat": stops and follows from the event behind the first one with this pitch, vel and chan; "brisolan: note not
// found", position null and idle when there is none; idle when nothing is behind it. [scheduler]
void brisolan_followat(brisolan* x, std::int32_t pitch, std::int32_t vel, std::int32_t chan);

// One input while following: a note-off of the performer when a velocity of 0 was given, else a note. Ignored while
// restoring. [scheduler]
void brisolan_followinput(brisolan* x);

// The performer plays pitch p: puts out the passed-over notes it matches, or else the score's next match together with
// the accompaniment before it. [scheduler]
void brisolan_dofollow(brisolan* x, std::int32_t p);
