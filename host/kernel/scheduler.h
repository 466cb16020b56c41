// host/kernel/scheduler.h: the scheduler level's clocks and its thread.
// Layer: kernel. host_clock_… is its interface to everyone else, kernel.h its interface to platforms.
#pragma once

#include "host/kernel/kernel.h"

// Starts the scheduler of this kind; ends it, joining its thread. [main]
void kel_scheduler_start(kel_timing timing);
void kel_scheduler_end();

// Whether the scheduler level is a thread of its own now. [both]
bool kel_real_time();
