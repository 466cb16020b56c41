#!/bin/sh
# A handler whose parameters do not fit its argument words must not compile; the same line with a fitting one must:
# misfits.sh COMPILER.
set -eu
tree=$(cd "$(dirname "$0")/../.." && pwd)
compiler=$1
file=$(mktemp "${TMPDIR:-/tmp}/misfit-XXXXXX.cpp")
trap 'rm -f "$file"' EXIT INT TERM
failed=0

# compiles CODE: whether it does, with a class record and a symbol argument at hand
compiles() {
    {
        echo '#include "host/kel.h"'
        echo 'struct box : host_object {}; struct other {};'
        printf '%s\n' "$1"
    } >"$file"
    "$compiler" -std=c++20 -fsyntax-only -I "$tree" "$file" >/dev/null 2>&1
}

# pair DECLARATION-THAT-FITS DECLARATION-THAT-DOES-NOT USE
pair() {
    compiles "$1 $3" || { echo "should compile: $1 $3"; failed=1; }
    ! compiles "$2 $3" || { echo "should not compile: $2 $3"; failed=1; }
}

pair 'void h(box*);' 'void h(box*, std::int32_t);' 'auto a = host_typed<h>();'
pair 'void h(box*, std::int32_t);' 'void h(box*);' 'auto a = host_typed<h, ARG_LONG>();'
pair 'void h(box*, std::int32_t);' 'void h(box*, float);' 'auto a = host_typed<h, ARG_LONG>();'
pair 'void h(box*, std::int32_t);' 'void h(other*, std::int32_t);' 'auto a = host_typed<h, ARG_DEFLONG>();'
pair 'void h(box*, float);' 'void h(box*, double);' 'auto a = host_typed<h, ARG_FLOAT>();'
pair 'void h(box*, symbol*);' 'void h(box*, const char*);' 'auto a = host_typed<h, ARG_SYM>();'
pair 'void h(box*, std::int32_t, symbol*);' 'void h(box*, symbol*, std::int32_t);' 'auto a = host_typed<h, ARG_LONG, ARG_DEFSYM>();'
pair 'void h(box*, symbol*, std::int32_t, const atom*);' 'void h(box*, std::int32_t, const atom*);' 'auto a = host_typed<h, ARG_LIST>();'
pair 'void h(box*, int);' 'void h(box*);' 'auto a = host_typed_private<"key", h>();'
pair 'int h(box*, Point, int);' 'void h(box*, Point, int);' 'auto a = host_typed_private<"click", h>();'
compiles 'void h(box*); auto a = host_typed_private<"update", h>();' || { echo "a private message should compile"; failed=1; }
! compiles 'void h(box*); auto a = host_typed_private<"unknown", h>();' || { echo "an unknown private message compiles"; failed=1; }
pair 'box* n(symbol*); void f(box*);' 'box* n(std::int32_t); void f(box*);' 'auto a = host_typed_lifecycle<n, f, ARG_DEFSYM>();'
pair 'void r(box*);' 'void r(other*);' 'host_clock* c(box* x) { return host_clock_new<r>(x); }'
exit $failed
