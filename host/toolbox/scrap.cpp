// The scrap. Text lives on the machine's clipboard where there is one, other flavors inside the program.
// Toolbox: implements the scrap calls of host/toolbox.h.
// Called by the object's clipboard wrappers.
#include "host/toolbox/platform.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string>

struct toolbox_scrap {
    struct flavor {
        FlavorFlags flags = kScrapFlavorMaskNone;
        std::string bytes;
    };
    std::map<FlavorType, flavor> flavors;
};

namespace {

constexpr OSStatus noScrapErr = -100; // no scrap of that name, or none given

// The one scrap, the system clipboard's. Written by the calls of this file; survives the menus that use it.
toolbox_scrap clipboard;

// Brings the text flavor into step with the machine's clipboard, which another program may have changed. Once for whoever
// asks for the scrap, not for each thing that he asks it then: the text may be long.
void refresh_text() {
    const toolbox_platform& p = platform_hooks();
    if (!p.clipboard_read) return;
    // Into the storage that the text had.
    if (!p.clipboard_read(p.user, &clipboard.flavors[kScrapFlavorTypeText].bytes))
        clipboard.flavors.erase(kScrapFlavorTypeText);
}

const toolbox_scrap::flavor* find(ScrapRef scrap, FlavorType type) {
    if (scrap != &clipboard) return nullptr;
    auto it = clipboard.flavors.find(type);
    return it == clipboard.flavors.end() ? nullptr : &it->second;
}

void tell_machine(const std::string& text) {
    const toolbox_platform& p = platform_hooks();
    if (p.clipboard_write) p.clipboard_write(p.user, text);
}

} // namespace

void scrap_reset() {
    clipboard = {};
}

OSStatus GetScrapByName(const char* name, uint32_t, ScrapRef* scrap) {
    bool known = name && std::strcmp(name, kScrapClipboardScrap) == 0;
    *scrap = known ? &clipboard : nullptr;
    if (known) refresh_text();
    return known ? noErr : noScrapErr;
}

OSStatus GetScrapFlavorFlags(ScrapRef scrap, FlavorType flavor, FlavorFlags* flags) {
    const toolbox_scrap::flavor* f = find(scrap, flavor);
    *flags = f ? f->flags : kScrapFlavorMaskNone;
    return f ? noErr : noTypeErr;
}

OSStatus GetScrapFlavorSize(ScrapRef scrap, FlavorType flavor, int32_t* size) {
    const toolbox_scrap::flavor* f = find(scrap, flavor);
    *size = f ? static_cast<int32_t>(f->bytes.size()) : 0;
    return f ? noErr : noTypeErr;
}

OSStatus GetScrapFlavorData(ScrapRef scrap, FlavorType flavor, int32_t* size, void* data) {
    const toolbox_scrap::flavor* f = find(scrap, flavor);
    if (!f) {
        *size = 0;
        return noTypeErr;
    }
    size_t count = std::min(f->bytes.size(), static_cast<size_t>(std::max(*size, 0)));
    if (count > 0) std::memcpy(data, f->bytes.data(), count);
    *size = static_cast<int32_t>(f->bytes.size());
    return noErr;
}

OSStatus PutScrapFlavor(ScrapRef scrap, FlavorType flavor, FlavorFlags flags, int32_t size,
                        const void* data) {
    if (scrap != &clipboard) return noScrapErr;
    std::string bytes;
    if (size > 0) bytes.assign(static_cast<const char*>(data), static_cast<size_t>(size));
    clipboard.flavors[flavor] = {flags, bytes};
    if (flavor == kScrapFlavorTypeText) tell_machine(bytes);
    return noErr;
}

OSStatus ClearScrap(ScrapRef* scrap) {
    if (!scrap || *scrap != &clipboard) return noScrapErr;
    clipboard.flavors.clear();
    tell_machine("");
    return noErr;
}
