// Reads text art: strips of named cells, side by side, and single pictures.
// Toolbox, internal: leans on the standard library.
// Called by whatever turns art into glyphs, pictures and cursors.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

// The rows of one cell, all of one length.
using art_rows = std::vector<std::string>;

// A strip's first line names its cells and every further line has one row of each, separated by blanks; an empty line ends
// it. Later cells of a name replace earlier ones. Pure. [both]
std::map<std::string, art_rows> art_cells(std::string_view text);
// The lines of a picture, empty ones left out, filled up with '.' to the longest. Pure. [both]
art_rows art_picture(std::string_view text);
