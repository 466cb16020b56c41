# The program's own patches: installed as files that people may read and change (Install), and built in for a program that
# was moved away from them.
file(GLOB patches CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/patches/*.kel)
set(entries "")
foreach(patch IN LISTS patches)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${patch})
    file(READ ${patch} text)
    cmake_path(GET patch STEM name)
    string(APPEND entries "    {\"${name}\", R\"==kel==(${text})==kel==\"},\n")
endforeach()
set(built_in ${CMAKE_BINARY_DIR}/patches/built_in.cpp)
file(CONFIGURE OUTPUT ${built_in} @ONLY CONTENT [==[
// Made by the build from patches/.
#include <array>

#include "app/patch_files.h"

namespace {

constexpr auto all = std::to_array<built_in_patch>({
@entries@});

} // namespace

std::span<const built_in_patch> built_in_patches() {
    return all;
}
]==])
target_sources(brisolan_app PRIVATE ${built_in})
