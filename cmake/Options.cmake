# What every target is compiled with, and the switches that the presets set.
set(BRISOLAN_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them; empty for none")
option(BRISOLAN_WERROR "Warnings are errors" ON)
option(BRISOLAN_COVERAGE "Count which lines run" OFF)
option(BRISOLAN_TESTS "Build the tests" ON)
option(BRISOLAN_FUZZ "Build the fuzzers proper (clang) in place of their replays" OFF)
option(BRISOLAN_BENCH "Build the benchmarks" OFF)
option(BRISOLAN_DESKTOP "Build the desktop with those of Qt 6, RtMidi and FluidSynth that are found" ON)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG "-g -D_GLIBCXX_ASSERTIONS")

# Checkouts of one project share the cache: paths are taken relative to the source tree.
find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
endif()

find_package(Threads REQUIRED)

# -Wconversion without -Wsign-conversion (which clang would add): a narrowing must be written out, while mixing int and
# size_t need not be.
add_library(brisolan_flags INTERFACE)
target_include_directories(brisolan_flags INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(brisolan_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion)
if(BRISOLAN_WERROR)
    target_compile_options(brisolan_flags INTERFACE -Werror)
endif()
target_link_libraries(brisolan_flags INTERFACE Threads::Threads)

if(BRISOLAN_SANITIZE)
    # Not only our own targets: a sanitized program is one whose every source was compiled so.
    add_compile_options(-fsanitize=${BRISOLAN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${BRISOLAN_SANITIZE})
    # The instrumented code confuses this warning of g++ 12; the release build keeps it.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()
if(BRISOLAN_FUZZ)
    add_compile_options(-fsanitize-coverage-ignorelist=${CMAKE_SOURCE_DIR}/fuzz/not-traced.list)
endif()
if(BRISOLAN_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
