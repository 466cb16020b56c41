// host/kernel/notify.h: listening to named connection points.
// Layer: kernel. Called by boxes and platforms that show what an object tells.
#pragma once

#include "host/kel.h"

// From now on x gets every message that leaves through the named connection point, until it is freed; no more. [main]
void kel_listen(host_object* x, symbol* name);
void kel_unlisten(const host_object* x);
