// io/embedding.cpp: the lines by which an instance saves itself, into its patcher and into its own documents.
// Layer: io. Called by the host, and by the messages "write" and "writekel".
#include "io/embedding.h"

#include <array>
#include <utility>

#include "core/class.h"
#include "core/saturated.h"
#include "core/sequence.h"

namespace {

// Kept: bytes of a parameter go out with their sign, so that 200 is written as -56, as it always was.
std::int32_t sign_extended(std::uint8_t byte) {
    return static_cast<std::int8_t>(byte);
}

void save_descriptions(const brisolan* x, host_atombuf* into) {
    symbol* const receiver = host_symbol("#X");
    host_atombuf_append(into, ps_New, ps_classname, x->name);
    symbol* const setparam = host_symbol("setparam");
    for (std::int32_t i = 0; i < NPARAMS; ++i) {
        const param_record& p = x->params[static_cast<std::size_t>(i)];
        // Kept: the mode goes out as stored, counted from 0, while "setparam" counts from 1. So each saving and loading
        // lowers a parameter's display mode by one until it is 0.
        host_atombuf_append(into, receiver, setparam, i, p.name, sign_extended(p.mode), p.min.get(),
                            p.max.get(), p.defvalue.get(), p.interval.get(), p.scale.get(),
                            sign_extended(p.notenames));
    }
}

} // namespace

void brisolan_save(brisolan* x, host_atombuf* into) {
    symbol* const receiver = host_symbol("#X");
    save_descriptions(x, into);
    host_atombuf_append(into, receiver, host_symbol("restore"));
    std::int32_t before = 0;
    for (const event* e : brisolan_each(x)) {
        const std::int32_t time = e->time;
        host_atombuf_append(into, receiver, wrapped(std::int64_t{time} - before), e->pitch.get(),
                            e->vel.get(), e->dur.get(), e->chan.get(), e->track.get(), e->x1.get(),
                            e->x2.get());
        before = time;
    }
    host_atombuf_append(into, receiver, host_symbol("stop"));
}

void brisolan_pstate(brisolan* x, host_atombuf* into) {
    save_descriptions(x, into);
    host_atombuf_append(into, host_symbol("#X"), host_symbol("whichparam"), std::int32_t{x->whichparam});
}

host_err brisolan_saveto(brisolan* x, const char* name, std::int16_t path) {
    host_atombuf* lines = host_atombuf_new();
    brisolan_save(x, lines);
    const int format = x->window->save_format;
    const host_err e = host_atombuf_write(lines, name, path, format == 1 ? ATOMBUF_BINARY : format);
    host_atombuf_free(lines);
    return e;
}

host_err brisolan_kelfile(brisolan* x, const char* name, std::int16_t path, file_type type) {
    const std::uint8_t before = std::exchange(x->window->save_format, type == BINARY_FILE ? 1 : 0);
    const host_err e = brisolan_saveto(x, name, path);
    x->window->save_format = before;
    return e;
}

host_err brisolan_writekel(brisolan* x, symbol* name) {
    if (name != ps_nothing) return brisolan_kelfile(x, name->name, host_default_path(), TEXT_FILE);
    constexpr std::array<file_type, 2> types{BINARY_FILE, TEXT_FILE};
    std::array<char, HOST_NAME_SIZE> chosen{"Untitled"};
    std::int16_t path = 0;
    file_type type = BINARY_FILE;
    if (const host_err e = host_saveas_dialog(chosen.data(), &path, &type, types)) return e;
    return brisolan_kelfile(x, chosen.data(), path, type);
}
