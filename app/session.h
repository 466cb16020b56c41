// app/session.h: a running host with the object's class loaded, for the commands that work without a display.
// Layer: program. Called by the commands.
#pragma once

#include "core/instance.h"
#include "host/headless/headless.h"
#include "host/kernel/patcher.h"

// Loads the object's class into the host that runs. Once after each start of the host. [main]
void load_brisolan();

// The host on the played machine, the class loaded, one patcher; ends with the scope.
class headless_session {
public:
    headless_session();
    ~headless_session();
    headless_session(const headless_session&) = delete;
    headless_session& operator=(const headless_session&) = delete;

    // A new instance in the patcher; named when `name` is not empty. Owned by the patcher. [main]
    brisolan* make(const std::string& name = "");

    headless machine;
    host_patcher* patcher = nullptr;
};
