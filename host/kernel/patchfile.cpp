// host/kernel/patchfile.cpp: reading and writing patches.
// Layer: kernel.
#include "host/kernel/patchfile.h"

#include <algorithm>
#include <optional>

#include "host/kernel/atombuf.h"
#include "host/kernel/binaryform.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/textform.h"

namespace {

// The first line of text of every message, so that an error names the line that a person sees. Follows the text form's
// own rules for where a message ends.
std::vector<int> message_lines(std::string_view text) {
    std::vector<int> lines;
    int line = 1;
    bool open = false;      // a message has begun
    bool word = false;      // a word has begun
    bool in_quotes = false; // inside a quoted word
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n') ++line;
        if (c == '\\') {
            if (!open) lines.push_back(line);
            open = word = true;
            ++i;
            continue;
        }
        if (in_quotes) {
            in_quotes = c != '"';
            continue;
        }
        const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        if (c == ';') open = false;
        if (blank || c == ';') {
            word = false;
            continue;
        }
        if (!open) lines.push_back(line);
        in_quotes = c == '"' && !word;
        open = word = true;
    }
    return lines;
}

// One patch as it is read, line by line.
class reader {
public:
    reader(host_patcher* into, const char* called, std::vector<int> messages_at)
        : p(into), patch(kel_patcher_patch(into)), name(called), lines(std::move(messages_at)) {}

    void take(std::span<const atom> line) {
        const symbol* const receiver = line[0].type == A_SYM ? line[0].s : nullptr;
        const char* wrong = "a patch's lines begin with #N, #X or #P";
        if (receiver == made)
            wrong = make(line);
        else if (receiver == filled)
            wrong = fill(line);
        else if (receiver == placed)
            wrong = place(line);
        else
            keep(line);
        if (wrong) complain(wrong);
        ++message;
    }

private:
    void complain(const char* wrong) const {
        const bool known = message < lines.size();
        host_error("host: %s: %s %d: %s", name, known ? "line" : "message",
                   known ? lines[message] : static_cast<int>(message) + 1, wrong);
    }

    void keep(std::span<const atom> line) { patch.others.emplace_back(line.begin(), line.end()); }

    const char* make(std::span<const atom> line) {
        if (line.size() < 2 || line[1].type != A_SYM) {
            keep(line);
            current = SIZE_MAX; // what follows is not the box's before
            return "#N wants the name of a class";
        }
        const std::size_t before = patch.boxes.size();
        const bool known = kel_boxclass(line[1].s->name) != nullptr;
        if (known) kel_make(line[1].s, line.subspan(2));
        current = before;
        if (patch.boxes.size() > before) return nullptr;
        kel_box broken;
        broken.made_by.assign(line.begin(), line.end());
        patch.boxes.push_back(std::move(broken));
        if (known) return "this box cannot be made";
        why = std::string("no class named \"") + line[1].s->name + "\"";
        return why.c_str();
    }

    // An object that saves itself will write what it took. The lines of any other are the patch's to keep.
    const char* fill(std::span<const atom> line) {
        if (!current_box()) {
            keep(line);
            return "#X has no box before it";
        }
        host_object* const x = current_box()->object;
        const bool taken = x && kel_message(x, line.subspan(1));
        if (!taken || !kel_has_private(x, "save")) current_box()->kept.emplace_back(line.begin(), line.end());
        return taken || !x ? nullptr : "the box does not take this message";
    }

    const char* place(std::span<const atom> line) {
        const std::string_view what = line.size() > 1 && line[1].type == A_SYM ? line[1].s->name : "";
        const std::optional<std::vector<std::int32_t>> numbers = integers(line);
        const std::size_t count = numbers ? numbers->size() : 0;
        if (what == "box" && (count == 2 || count == 3)) {
            if (kel_box* const box = current_box()) return put_at(*box, *numbers);
            keep(line);
            return "#P box has no box before it";
        }
        if (what == "cord" && count == 4) {
            const std::vector<std::int32_t>& n = *numbers;
            return kel_patcher_connect(p, {n[0], n[1], n[2], n[3]});
        }
        if (what == "window" && count == 4) return set_window(*numbers);
        keep(line);
        if (what == "box") return "#P box wants left, top and perhaps width";
        if (what == "cord") return "#P cord wants box, outlet, box and inlet";
        return what == "window" ? "#P window wants left, top, width and height" : "an unknown #P line";
    }

    const char* put_at(kel_box& box, const std::vector<std::int32_t>& numbers) {
        box.left = numbers[0];
        box.top = numbers[1];
        box.width = numbers.size() > 2 ? numbers[2] : 0;
        return nullptr;
    }

    const char* set_window(const std::vector<std::int32_t>& numbers) {
        patch.left = numbers[0];
        patch.top = numbers[1];
        patch.width = numbers[2];
        patch.height = numbers[3];
        return nullptr;
    }

    // What stands behind the second word, when that is all integers.
    static std::optional<std::vector<std::int32_t>> integers(std::span<const atom> line) {
        std::vector<std::int32_t> values;
        for (std::size_t i = 2; i < line.size(); ++i) {
            if (line[i].type != A_LONG) return std::nullopt;
            values.push_back(line[i].l);
        }
        return values;
    }

    kel_box* current_box() { return current < patch.boxes.size() ? &patch.boxes[current] : nullptr; }

    host_patcher* p;
    kel_patch& patch;
    const char* name;
    std::vector<int> lines; // where each message stands; empty when the file has no lines
    std::size_t message = 0;
    std::size_t current = SIZE_MAX; // the box made last
    std::string why;
    symbol* made = host_symbol("#N");
    symbol* filled = host_symbol("#X");
    symbol* placed = host_symbol("#P");
};

void bang_loaded(const host_patcher* p) {
    for (host_object* x : kel_patcher_objects(p)) {
        if (kel_has_private(x, "loadbang")) kel_private<"loadbang">(x);
    }
}

void build(host_patcher* p, kel_document&& document, std::vector<int> lines, const char* name) {
    host_atombuf* const messages = host_atombuf_new();
    kel_atombuf_take(messages, std::move(document));
    host_patcher* const before = kel_patcher_building();
    kel_patcher_build(p);
    reader r(p, name, std::move(lines));
    kel_atombuf_lines(messages, [&r](std::span<const atom> line) {
        r.take(line);
        return true;
    });
    kel_patcher_build(before);
    host_atombuf_free(messages);
    kel_patcher_setchanged(p, false);
    bang_loaded(p);
}

bool parse_text(host_patcher* p, std::string_view text, const char* name) {
    kel_document document;
    const std::span<const std::byte> bytes(reinterpret_cast<const std::byte*>(text.data()), text.size());
    if (const auto wrong = kel_parse_text(bytes, &document)) {
        const auto upto = text.begin() + static_cast<std::ptrdiff_t>(std::min(wrong->offset, text.size()));
        host_error("host: %s: line %d: %s", name, static_cast<int>(std::count(text.begin(), upto, '\n')) + 1,
                   wrong->what);
        return false;
    }
    build(p, std::move(document), message_lines(text), name);
    return true;
}

bool parse_binary(host_patcher* p, std::string_view bytes, const char* name) {
    kel_document document;
    const std::span<const std::byte> all(reinterpret_cast<const std::byte*>(bytes.data()), bytes.size());
    if (const auto wrong = kel_parse_binary(all, &document)) {
        host_error("host: %s: %s", name, wrong->what);
        return false;
    }
    build(p, std::move(document), {}, name);
    return true;
}

constexpr std::int32_t READ_SIZE = 1 << 16;

host_err read_whole(const char* name, std::int16_t path, std::string* bytes) {
    host_file* file = nullptr;
    if (const host_err e = host_file_open(name, path, &file)) return e;
    host_err failure = HOST_OK;
    for (std::int32_t count = READ_SIZE; !failure && count == READ_SIZE;) {
        const std::size_t had = bytes->size();
        bytes->resize(had + READ_SIZE);
        failure = host_file_read(file, &count, bytes->data() + had);
        bytes->resize(had + static_cast<std::size_t>(std::max(count, 0)));
    }
    const host_err closed = host_file_close(file);
    return failure ? failure : closed;
}

void save_box(const kel_box& box, host_atombuf* into) {
    if (box.object && kel_has_private(box.object, "save"))
        kel_private<"save">(box.object, into);
    else
        host_atombuf_append_atoms(into, box.made_by);
    for (const kel_line& line : box.kept) host_atombuf_append_atoms(into, line);
    symbol* const P = host_symbol("#P");
    symbol* const word = host_symbol("box");
    if (box.width)
        host_atombuf_append(into, P, word, box.left, box.top, box.width);
    else
        host_atombuf_append(into, P, word, box.left, box.top);
}

} // namespace

bool kel_patch_parse(host_patcher* p, std::string_view text, const char* name) {
    return parse_text(p, text, name);
}

bool kel_patch_read(host_patcher* p, const char* name, std::int16_t path) {
    std::string bytes;
    if (const host_err e = read_whole(name, path, &bytes)) {
        host_error("host: %s: %s", name, kel_filereason(e));
        return false;
    }
    const bool binary = kel_filetype(kel_filepath(name, path)) == TYPE_KELB;
    return binary ? parse_binary(p, bytes, name) : parse_text(p, bytes, name);
}

void kel_patch_save(const host_patcher* p, host_atombuf* into) {
    const kel_patch& patch = kel_patcher_patch(p);
    symbol* const P = host_symbol("#P");
    host_atombuf_append(into, P, host_symbol("window"), patch.left, patch.top, patch.width, patch.height);
    // In front of the boxes: behind them one that tells of no box would be taken for the last one's.
    for (const kel_line& line : patch.others) host_atombuf_append_atoms(into, line);
    for (const kel_box& box : patch.boxes) save_box(box, into);
    for (const kel_patchcord& c : patch.cords)
        host_atombuf_append(into, P, host_symbol("cord"), c.from, c.outlet, c.to, c.inlet);
}

host_err kel_patch_write(host_patcher* p, const char* name, std::int16_t path, int form) {
    host_atombuf* const lines = host_atombuf_new();
    kel_patch_save(p, lines);
    const host_err e = host_atombuf_write(lines, name, path, form);
    host_atombuf_free(lines);
    if (!e) kel_patcher_setchanged(p, false);
    return e;
}
