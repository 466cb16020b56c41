// app/patch_document.h: a patch that a person has opened on the desktop, with its file.
// Layer: program. Made by the editor; called by the desktop's windows.
#pragma once

#include <functional>
#include <string>

#include "host/desktop/desk.h"

class patch_document : public desk_patch {
public:
    // `console` is where the platform puts its console lines, and must outlive the document.
    explicit patch_document(std::function<void(const std::string&)>& console);
    ~patch_document() override; // ends every note of it
    patch_document(const patch_document&) = delete;
    patch_document& operator=(const patch_document&) = delete;

    // Whether the file is a patch rather than a score: text that begins with a patch's own line, or with a box that is no
    // score. False for what cannot be read. [main]
    static bool is_one(const std::string& file);

    // Reads the file and lets the patch begin. An empty string, or why it cannot. [main]
    std::string start(const std::string& file);

    host_patcher* patcher() override { return patch; }
    const std::string& file() const override { return path; }
    std::string save(const std::string& to) override;

private:
    // What a call says on the console as an error, the last of it; the console hears it as well.
    template <class Does> std::string error_of(Does does);

    std::function<void(const std::string&)>& console;
    host_patcher* patch;
    std::string path;
};
