// Which machine the toolbox runs on.
// Toolbox, host side: implements the hooks of toolbox_host.h.
// Called by platforms, and by tests between one and the next.
#include "host/toolbox/platform.h"

#include "host/toolbox/port.h"

namespace {

// Written by toolbox_setplatform and toolbox_reset, read through platform_hooks.
toolbox_platform hooks;

} // namespace

const toolbox_platform& platform_hooks() {
    return hooks;
}

void toolbox_setplatform(const toolbox_platform* platform) {
    hooks = platform ? *platform : toolbox_platform{};
}

const toolbox_platform& toolbox_getplatform() {
    return hooks;
}

void toolbox_reset() {
    hooks = {};
    toolbox_thePort = nullptr;
    cursor_reset();
    menus_reset();
    scrap_reset();
    text_reset();
}
