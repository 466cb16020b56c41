#!/bin/sh
# The example host builds against an installed object, found by CMake and by pkg-config, and plays:
# consumer.sh BUILD CMAKE COMPILER.
. "$(dirname "$0")/scratch.sh"
build=$1
cmake=$2
compiler=$3
"$cmake" --install "$build" --prefix "$scratch/first" --component sdk >"$scratch/log" || { cat "$scratch/log"; exit 1; }
mv "$scratch/first" "$scratch/moved"
prefix="$scratch/moved"
example="$prefix/share/doc/brisolan-dev/examples/host"
cat >"$scratch/expected" <<'END'
then wait 500
60 100 400 1 1 0 0 then wait 500
64 100 400 1 1 0 0 then wait 500
67 100 400 1 1 0 0 and no more
END
plays() {
    "$1" >"$scratch/said"
    diff "$scratch/expected" "$scratch/said" || fail "$1 played otherwise"
}

# By find_package, with nothing of the source tree in reach; another version is refused.
cd "$scratch"
"$cmake" -S "$example" -B by-cmake -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_CXX_COMPILER="$compiler" >log 2>&1 ||
    { cat log; exit 1; }
"$cmake" --build by-cmake >log 2>&1 || { cat log; exit 1; }
plays by-cmake/small_host
sed 's/brisolan 0.1/brisolan 99.1/' "$example/CMakeLists.txt" >newer
mkdir asks-newer
cp newer asks-newer/CMakeLists.txt
! "$cmake" -S asks-newer -B asks-newer/build -D CMAKE_PREFIX_PATH="$prefix" >log 2>&1 || fail "version 99 was found"
grep -q 'compatible with requested version' log || { cat log; exit 1; }

# The interfaces alone, for a host's own sources.
mkdir interfaces
cat >interfaces/CMakeLists.txt <<'END'
cmake_minimum_required(VERSION 3.25)
project(interfaces LANGUAGES CXX)
find_package(brisolan REQUIRED)
add_library(part OBJECT part.cpp)
target_link_libraries(part PRIVATE brisolan::interfaces)
END
printf '#include "host/kel.h"\n#include "host/toolbox.h"\nsymbol* part() { return host_symbol("part"); }\n' >interfaces/part.cpp
"$cmake" -S interfaces -B interfaces/build -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_CXX_COMPILER="$compiler" >log 2>&1 &&
    "$cmake" --build interfaces/build >log 2>&1 || { cat log; exit 1; }

# By pkg-config, as a program and as a shared library.
command -v pkg-config >/dev/null || fail "there is no pkg-config"
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name brisolan.pc)")
export PKG_CONFIG_PATH
[ "$(pkg-config --libs brisolan-interfaces | tr -d ' ')" = "" ] || fail "the interfaces ask for a library"
# shellcheck disable=SC2046  # words are options
"$compiler" -std=c++20 "$example/small_host.cpp" "$example/absent.cpp" $(pkg-config --cflags --libs brisolan) -o by-pkg-config
plays ./by-pkg-config
# shellcheck disable=SC2046
"$compiler" -std=c++20 -shared -fPIC -Wl,-z,text "$example/small_host.cpp" "$example/absent.cpp" \
    $(pkg-config --cflags --libs brisolan) -o host.so
