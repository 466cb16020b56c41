// app/png.h: a port's pixels as a PNG file.
// Layer: program. Called by the script runner and `brisolan render`.
#pragma once

#include <string>

#include "host/toolbox.h"

// Writes the port, each of its pixels as scale by scale pixels of the image, to a file, in place of any of that name when
// it is whole. An empty string, or why it could not. [main]
std::string write_png(GrafPtr port, const std::string& file, int scale = 1);
