// app/patch_files.h: the patches that come with the program: where they lie.
// Layer: program. Called by the commands that run one of them.
#pragma once

#include <span>
#include <string>
#include <string_view>

// A patch's text and what to call it on the console: its file, or its bare name when it is the one built in.
struct patch_text {
    std::string called;
    std::string text;
};

// The program's own patch of this name ("play", "record", "follow"), from the first place that has it: the folder that
// $BRISOLAN_PATCHES names, patches/ beside the program, the install's share/brisolan/patches, the source tree that the
// program was built in; else the text built in. [main]
patch_text own_patch(const char* name);

// The patches as they were when the program was built; made by the build from patches/.
struct built_in_patch {
    std::string_view name;
    std::string_view text;
};
// All of them, by name. They last as long as the program. [both]
std::span<const built_in_patch> built_in_patches();
