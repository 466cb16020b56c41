#!/bin/sh
# links-alone.sh fails on a library that asks for a function of ours which the interfaces do not declare, and passes one
# that asks for those alone: links-alone-holds.sh COMPILER.
set -eu
checks=$(cd "$(dirname "$0")" && pwd)
compiler=$1
BRISOLAN_TREE=$(mktemp -d)
export BRISOLAN_TREE
trap 'rm -rf "$BRISOLAN_TREE"' EXIT INT TERM
mkdir "$BRISOLAN_TREE/host"
echo 'void host_post(const char* text); extern int host_colour; // not host_secret(int)' >"$BRISOLAN_TREE/host/kel.h"
echo 'extern "C" void MoveTo(int h, int v);' >"$BRISOLAN_TREE/host/toolbox.h"

# links CODE: whether a library of that code links alone
links() {
    rm -f "$BRISOLAN_TREE/object.a"
    printf '%s\n' '#include "host/kel.h"' '#include "host/toolbox.h"' "$1" >"$BRISOLAN_TREE/object.cpp"
    "$compiler" -I "$BRISOLAN_TREE" -c "$BRISOLAN_TREE/object.cpp" -o "$BRISOLAN_TREE/object.o"
    ar rc "$BRISOLAN_TREE/object.a" "$BRISOLAN_TREE/object.o"
    "$checks/links-alone.sh" "$BRISOLAN_TREE/object.a" "$compiler" >"$BRISOLAN_TREE/log" 2>&1
}

links 'void f() { host_post("x"); MoveTo(1, host_colour); }' || { cat "$BRISOLAN_TREE/log"; exit 1; }
! links 'void host_secret(int); void f() { host_secret(1); }' || { echo "missed a function"; exit 1; }
grep -q host_secret "$BRISOLAN_TREE/log"
! links 'extern int kernel_state; int f() { return kernel_state; }' || { echo "missed a variable"; exit 1; }
