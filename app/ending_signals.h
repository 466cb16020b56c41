// app/ending_signals.h: the signals that end the program from outside.
// Layer: program. Used by the live session, which catches them, and by what must not outlive the program.
#pragma once

#include <array>
#include <csignal>

// A person's interrupt, somebody's request to end, and the terminal's end.
inline constexpr std::array<int, 3> ENDING_SIGNALS{SIGINT, SIGTERM, SIGHUP};
using ending_actions = std::array<struct sigaction, ENDING_SIGNALS.size()>; // what was done on each before
