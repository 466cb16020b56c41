// app/saved_roles.cpp: a document's display roles as they were when it was saved.
// Layer: program.
#include "app/saved_roles.h"

#include <algorithm>
#include <array>

#include "host/kernel/atombuf.h"
#include "host/kernel/files.h"

namespace {

using roles = std::array<std::int32_t, NPARAMS>;

constexpr std::int32_t UNKNOWN = -1;
constexpr std::size_t INDEX_AT = 2; // "#X setparam INDEX NAME ROLE …"
constexpr std::size_t ROLE_AT = 4;

// Of a line that describes a parameter.
void note_role(std::span<const atom> line, roles& found) {
    if (line.size() <= ROLE_AT || line[INDEX_AT].type != A_LONG || line[ROLE_AT].type != A_LONG) return;
    const std::int32_t index = line[INDEX_AT].l;
    const std::int32_t role = line[ROLE_AT].l;
    if (index < 0 || index >= NPARAMS || role < 0 || role > ROLE_LENGTH) return;
    found[static_cast<std::size_t>(index)] = role;
}

roles roles_in(const std::string& file) {
    roles found;
    found.fill(UNKNOWN);
    host_atombuf* const lines = host_atombuf_new();
    const symbol* const description = host_symbol("setparam");
    const symbol* const notes = host_symbol("restore");
    if (!host_atombuf_read(lines, file.c_str(), host_default_path(), kel_filetype(file) == TYPE_KELB)) {
        kel_atombuf_lines(lines, [&](std::span<const atom> line) {
            if (line.size() < 2 || line[1].type != A_SYM) return true;
            if (line[1].s == description) note_role(line, found);
            return line[1].s != notes;
        });
    }
    host_atombuf_free(lines);
    return found;
}

std::int32_t holder(const roles& r, std::uint8_t role) {
    const auto at = std::find(r.begin(), r.end(), role);
    return at == r.end() ? -1 : static_cast<std::int32_t>(at - r.begin());
}

} // namespace

void show_saved_roles(brisolan* x, const std::string& file) {
    const roles r = roles_in(file);
    const std::int32_t vertical = holder(r, ROLE_VERTICAL);
    const std::int32_t length = holder(r, ROLE_LENGTH);
    if (std::find(r.begin(), r.end(), UNKNOWN) != r.end() || vertical < 0 || length < 0) return;
    for (int i = 0; i < NPARAMS; ++i)
        x->params[static_cast<std::size_t>(i)].mode =
            static_cast<std::uint8_t>(r[static_cast<std::size_t>(i)]);
    x->yparam = vertical;
    x->yzoom = x->params[static_cast<std::size_t>(vertical)].scale;
    x->yzoom_exact = x->yzoom;
    x->lenparam = length;
    x->lenzoom = length == PARAM_DUR ? x->xzoom : x->params[static_cast<std::size_t>(length)].scale.get();
    x->labelparam = holder(r, ROLE_LABEL);
    x->relayout = 1;
}
