// Reads text art.
// Toolbox, internal.
// Called once for each piece of art.
#include "host/toolbox/art.h"

#include <algorithm>
#include <sstream>

namespace {

std::vector<std::string> words(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> out;
    for (std::string word; in >> word;) out.push_back(word);
    return out;
}

} // namespace

std::map<std::string, art_rows> art_cells(std::string_view text) {
    std::map<std::string, art_rows> cells;
    std::vector<std::string> names;
    std::istringstream in{std::string(text)};
    for (std::string line; std::getline(in, line);) {
        std::vector<std::string> parts = words(line);
        if (parts.empty()) {
            names.clear();
        } else if (names.empty()) {
            names = parts;
            for (const std::string& name : names) cells[name].clear();
        } else {
            for (size_t i = 0; i < std::min(names.size(), parts.size()); i++)
                cells[names[i]].push_back(parts[i]);
        }
    }
    return cells;
}

art_rows art_picture(std::string_view text) {
    art_rows rows;
    size_t width = 0;
    std::istringstream in{std::string(text)};
    for (std::string line; std::getline(in, line);) {
        if (line.empty()) continue;
        width = std::max(width, line.size());
        rows.push_back(line);
    }
    for (std::string& row : rows) row.resize(width, '.');
    return rows;
}
