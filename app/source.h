// app/source.h: reading a file into an instance for a command, with one clear line when it cannot be.
// Layer: program. Called by the commands that take a file.
#pragma once

#include <functional>
#include <string>

#include "app/session.h"

// Has the instance read the file of any kind it knows, told by its type or its name's ending, through the object's own
// "read". MIDI times by import_option. An empty string, or in one line why it could not, naming the file; notices of the
// console that are no failure go to standard error. "-" reads standard input (to a temporary file; its kind told by its
// first bytes). `console` is where the platform puts its console lines, "post …" and "error …"; it hears them itself
// meanwhile. [main]
std::string read_into(std::function<void(const std::string&)>& console, brisolan* x, const std::string& file,
                      int import_option = 0);
std::string read_into(headless_session& session, brisolan* x, const std::string& file, int import_option = 0);
