// host/kernel/symbols.cpp: interned texts.
// Layer: kernel. Called by everyone through host_symbol; main level.
#include "host/kernel/symbols.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace {

struct interned {
    std::string text;
    symbol record;
};

// Keyed by views into the records' own texts. Lives as long as the process: symbols are compared by address.
std::unordered_map<std::string_view, std::unique_ptr<interned>>& table() {
    static auto* t = new std::unordered_map<std::string_view, std::unique_ptr<interned>>;
    return *t;
}

} // namespace

symbol* host_symbol(const char* text) {
    host_expect_main("host_symbol");
    const auto found = table().find(text);
    if (found != table().end()) return &found->second->record;
    auto made = std::make_unique<interned>(interned{text, {}});
    made->record = {made->text.c_str(), nullptr};
    symbol* s = &made->record;
    const std::string_view key = made->text;
    table().emplace(key, std::move(made));
    return s;
}

void kel_symbols_unbind() {
    for (auto& entry : table()) entry.second->record.thing = nullptr;
}

void kel_symbols_unbind(const void* thing) {
    for (auto& entry : table()) {
        if (entry.second->record.thing == thing) entry.second->record.thing = nullptr;
    }
}
