#!/bin/sh
# The object's library links into a program that has nothing of ours but what the two interface headers declare:
# links-alone.sh LIBRARY COMPILER. Every function of the interfaces that the library asks for gets an empty stub; then
# the linker tells whatever else is missing.
. "$(dirname "$0")/files.sh"
library=$1
compiler=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT INT TERM

# The names that the interfaces declare: what stands before a parenthesis, or is an extern variable.
sed 's://.*::' host/kel.h host/toolbox.h |
    grep -oE '[A-Za-z_][A-Za-z0-9_]*[ ]*\(|extern [^(]*;' | sed -E 's/[ (;]+$//; s/.*[ *&]//' | sort -u >"$scratch/declared"
# MANGLED NAME of everything undefined in the library; the name without scope and parameters.
nm -u -P "$library" | awk 'NF > 1 { print $1 }' | sort -u >"$scratch/mangled"
c++filt <"$scratch/mangled" | sed -E 's/\(.*//; s/.*:://' | paste -d ' ' "$scratch/mangled" - |
    awk 'NR == FNR { declared[$1]; next } $2 in declared { print $1 }' "$scratch/declared" - >"$scratch/undefined"
nm -P --defined-only "$library" | awk 'NF > 2 { print $1 }' | sort -u >"$scratch/defined"
comm -23 "$scratch/undefined" "$scratch/defined" >"$scratch/stubs"

{
    awk '{ print ".globl " $1; print $1 ": .quad 0" }' "$scratch/stubs"
    echo '.section .note.GNU-stack,"",@progbits'
} >"$scratch/stubs.s"
echo 'int main() { return 0; }' >"$scratch/main.cpp"
"$compiler" -std=c++20 "$scratch/main.cpp" "$scratch/stubs.s" -Wl,--whole-archive "$library" -Wl,--no-whole-archive \
    -o "$scratch/program"
echo "links with $(wc -l <"$scratch/stubs") functions of the host"
