// view/legendvalues.h: what the legend shows: an event's values, or the defaults.
// Layer: view. Called by the legend's drawing and by the drags that follow an event's values.
#pragma once

#include "core/instance.h"

// The legend shows the event's values; no name is underlined any more. [main]
void brisolan_copytolegend(brisolan* x, const event* e);
// The legend shows the defaults; no name is underlined any more. [main]
void brisolan_defaultlegend(brisolan* x);
// The legend shows `firstsel`, or the defaults when there is none. [main]
void brisolan_filllegend(brisolan* x);
