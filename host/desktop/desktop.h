// host/desktop/desktop.h: the desktop as its program starts it.
// Layer: desktop platform; knows no Qt. Done by the qt_ files, where there is Qt.
// Called by the editor's main.
#pragma once

#include <functional>
#include <memory>

#include "host/desktop/desk.h"

// Opens a window for each file that the arguments name, or for a new document, and runs until the last one is closed. The
// program is made by `start` with what the desktop puts into the host's platform. With the word --until-shown among the
// arguments it ends as soon as the windows can be used, for measuring how long that takes. The exit status. [main]
int desktop_run(int argc, char** argv,
                const std::function<std::unique_ptr<desk_program>(const host_platform& machine)>& start);
