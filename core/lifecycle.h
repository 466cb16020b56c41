// core/lifecycle.h: construction and destruction of an instance, and its hover texts.
// Layer: core. Called by the host.
#pragma once

#include "core/instance.h"

// A new instance, named when the symbol is not empty; while a document is replayed into an instance, that instance
// instead. Bound to "#X". [main]
brisolan* brisolan_new(symbol* name);

// Gives back everything the instance owns, the record itself excepted. [main]
void brisolan_free(brisolan* x);

// Marks the patcher that holds the instance changed, when there is one. [main]
void brisolan_dirty(brisolan* x);

// The routine of timer_clock: nothing. [scheduler]
void brisolan_clk(brisolan* x);

// Writes the hover text of inlet or outlet `index`. [main]
void brisolan_assist(brisolan* x, bool inlet, int index, char* text);

// The instance that the constructor hands back instead of building one while a document is replayed into it; null
// otherwise. Written by the document reader around one evaluation. [main]
extern brisolan* g_restore_target;
