// app/script_print.h: the lines by which the script language shows an instance.
// Layer: program. Called by the script runner and `brisolan list`.
#pragma once

#include <functional>
#include <string>

#include "core/instance.h"

using print_line = std::function<void(const std::string&)>;

// "event TIME PITCH VEL DUR CHAN TRACK X1 X2", " selected" behind a selected one, for every event in order. [main]
void print_events(const brisolan* x, const print_line& print);

// Eight lines "param I NAME …". [main]
void print_params(const brisolan* x, const print_line& print);

// One line "state …". [main]
void print_state(const brisolan* x, const print_line& print);

// "tracks " and a digit for each track. [main]
void print_tracks(const brisolan* x, const print_line& print);
