// io/document.cpp: reading and writing files: which kind, where, and the reading of the object's own documents.
// Layer: io. Called by the messages "read", "import" and "write".
#include "io/document.h"

#include <array>

#include "core/class.h"
#include "core/lifecycle.h"
#include "io/bufferedfile.h"
#include "io/embedding.h"
#include "io/midiread.h"
#include "io/midiwrite.h"

namespace {

constexpr std::array<file_type, 3> known_types{MIDI_FILE, TEXT_FILE, BINARY_FILE};

// A buffer for the length of a scope.
class owned_atombuf {
public:
    owned_atombuf() : b(host_atombuf_new()) {}
    ~owned_atombuf() { host_atombuf_free(b); }
    owned_atombuf(const owned_atombuf&) = delete;
    owned_atombuf& operator=(const owned_atombuf&) = delete;
    operator host_atombuf*() const { return b; }

private:
    host_atombuf* b;
};

bool is_symbol_at(const host_atombuf* b, std::int32_t index, const symbol* wanted) {
    atom a;
    return host_atombuf_getatom(b, index, &a) && a.type == A_SYM && a.s == wanted;
}

} // namespace

void brisolan_import(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv) {
    host_defer_low<brisolan_doimport>(x, selector, argc, argv);
}

void brisolan_doimport(brisolan* x, symbol*, std::int32_t argc, const atom* argv) {
    const bool named = argc > 0 && argv[0].type == A_SYM;
    const std::int32_t option_at = named ? 1 : 0;
    const std::int32_t option = argc > option_at && argv[option_at].type == A_LONG ? argv[option_at].l : 0;
    std::array<char, HOST_NAME_SIZE> asked{};
    const char* name = named ? argv[0].s->name : asked.data();
    std::int16_t path = 0;
    file_type type = 0;
    if (named) {
        if (host_file_locate(name, &path, &type, known_types)) {
            host_error("brisolan: can't find %s", name);
            return;
        }
    } else if (host_open_dialog(asked.data(), &path, &type, known_types)) {
        return;
    }
    if (const host_err e = t_open(name, path, 0)) {
        host_error("brisolan: can't open %s, error %d", name, static_cast<int>(e));
        return;
    }
    switch (type) {
    case TEXT_FILE:
    case BINARY_FILE:
        t_close();
        brisolan_importkel(x, name, path, type == BINARY_FILE);
        return;
    case MIDI_FILE: brisolan_importmidi(x, name, option); return;
    default: return; // Kept: without closing. The host gives none but the types that were asked for.
    }
}

void brisolan_importkel(brisolan* x, const char* name, std::int16_t path, bool binary) {
    const owned_atombuf lines;
    if (host_atombuf_read(lines, name, path, binary)) return;
    if (!is_symbol_at(lines, 0, ps_New) || !is_symbol_at(lines, 1, host_symbol("brisolan"))) {
        host_error("brisolan: %s: not a brisolan file", name);
        return;
    }
    g_restore_target = x;
    // The document's first line binds it so by building the target; one that fails to must not reach another instance.
    host_symbol("#X")->thing = static_cast<host_object*>(x);
    x->restoring = std::uint8_t{1};
    host_atombuf_eval(lines);
    g_restore_target = nullptr;
    x->restoring = std::uint8_t{0};
}

void brisolan_write(brisolan* x, symbol* selector, std::int32_t argc, const atom* argv) {
    host_defer<brisolan_dowrite>(x, selector, argc, argv);
}

void brisolan_dowrite(brisolan* x, symbol*, std::int32_t argc, const atom* argv) {
    const bool named = argc > 0 && argv[0].type == A_SYM;
    std::array<char, HOST_NAME_SIZE> asked{"Untitled"};
    const char* name = named ? argv[0].s->name : asked.data();
    std::int16_t path = host_default_path();
    file_type type = MIDI_FILE; // Kept: also where the name is that of a document
    if (!named && host_saveas_dialog(asked.data(), &path, &type, known_types)) return;
    if (type != MIDI_FILE) {
        (void)brisolan_kelfile(x, name, path, type);
        return;
    }
    std::int32_t count = 0;
    std::int32_t highest = 0;
    brisolan_counttracks(x, &count, &highest);
    brisolan_exportfile(x, name, path, count > 0 && highest >= 2, 0);
}
