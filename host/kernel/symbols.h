// host/kernel/symbols.h: the table of interned texts, as the rest of the kernel sees it.
// Layer: kernel. host_symbol is its interface to everyone else.
#pragma once

#include "host/kel.h"

// Takes the binding of every symbol away; the symbols stay. [main]
void kel_symbols_unbind();

// Takes away every binding to this thing. [main]
void kel_symbols_unbind(const void* thing);
