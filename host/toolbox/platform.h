// The machine's hooks in use.
// Toolbox, internal: leans on toolbox_host.h.
// Called by whatever needs the pointer, menus or the clipboard.
#pragma once

#include "host/toolbox/toolbox_host.h"

// Never null: without a platform, every hook is. [main]
const toolbox_platform& platform_hooks();

// Resets of the process-wide state, each in the file that writes it; toolbox_reset calls them all. [main]
void cursor_reset();
void menus_reset();
void scrap_reset();
void text_reset();
