// host/kernel/queue.h: the low-priority queue of the main level.
// Layer: kernel. Fed by host_qelem_set and host_defer from either level, emptied by kel_run_queue.
#pragma once

#include "host/kel.h"

// Carries out the first queued call; false when there is none. [main]
bool kel_queue_run_one();

// Drops every deferred call to an object. [main]
void kel_queue_forget(const host_object* x);

// Drops everything queued. [main]
void kel_queue_reset();
