// app/editor_main.cpp: the desktop editor as a program of its own, which `brisolan edit` becomes: so that no other
// command waits for the desktop's libraries.
// Layer: program.
#include "app/editor.h"
#include "host/desktop/desktop.h"

int main(int argc, char** argv) {
    return desktop_run(argc, argv, [](const host_platform& machine) -> std::unique_ptr<desk_program> {
        return std::make_unique<editor>(machine);
    });
}
