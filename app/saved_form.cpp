// app/saved_form.cpp: what a score holds, as one number.
// Layer: program.
#include "app/saved_form.h"

#include <string_view>

namespace {

// FNV-1a over 64 bits, whole numbers at a time.
class digest {
public:
    void add(std::uint64_t value) {
        sum = (sum ^ value) * 0x100000001B3U;
        sum ^= sum >> 29;
    }
    void add(std::string_view text) {
        add(text.size());
        for (const char c : text) add(static_cast<unsigned char>(c));
    }
    std::uint64_t value() const { return sum; }

private:
    std::uint64_t sum = 0xCBF29CE484222325U;
};

std::uint64_t pair_of(std::int32_t a, std::int32_t b) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(a)) << 32 | static_cast<std::uint32_t>(b);
}

void add_events(digest& d, const brisolan* x) {
    for (const event* e = x->events; e; e = e->next) {
        for (int i = 0; i < NPARAMS; i += 2) d.add(pair_of(event_param(*e, i), event_param(*e, i + 1)));
    }
}

void add_descriptions(digest& d, const brisolan* x) {
    for (const param_record& p : x->params) {
        d.add(p.name->name);
        d.add(pair_of(p.min, p.max));
    }
}

} // namespace

std::uint64_t score_digest(const brisolan* x) {
    digest d;
    add_events(d, x);
    add_descriptions(d, x);
    for (const param_record& p : x->params) {
        d.add(pair_of(p.defvalue, p.interval));
        d.add(pair_of(p.scale, p.mode << 8 | p.notenames));
    }
    return d.value();
}

std::uint64_t contents_digest(const brisolan* x) {
    digest d;
    add_events(d, x);
    add_descriptions(d, x);
    return d.value();
}

std::uint64_t descriptions_digest(const brisolan* x) {
    digest d;
    add_descriptions(d, x);
    return d.value();
}
