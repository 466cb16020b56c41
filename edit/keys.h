// edit/keys.h: keys typed in the editor window.
// Layer: edit. Called by the host through "key".
#pragma once

#include "core/instance.h"

// "key": Delete deletes the selected events, the arrow keys move them; digits and Return are kept for typing, which has
// no target. Only the code's low 16 bits count. [main]
void brisolan_key(brisolan* x, int code);
