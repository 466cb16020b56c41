// tests/view/plain_twin.h: the data area drawn event by event, straight from how each event is drawn, erased and marked:
// what the view's own way of doing the same for many events at once is compared with.
// Tests of the view.
#pragma once

#include "core/instance.h"

// Each as the view's routine of the same name, drawing and marking at once.
void plain_drawevts(brisolan* x);
void plain_drawit(brisolan* x, event* e);
void plain_eraseit(brisolan* x, event* e);
void plain_drawdirtyevts(brisolan* x);
event* plain_findevent(brisolan* x, int h, int v);

// The selection's primitives over them, without counters.
void plain_select(brisolan* x, event* e);
void plain_unselect(brisolan* x, event* e);
