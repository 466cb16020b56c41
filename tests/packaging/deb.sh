#!/bin/sh
# `cpack -G DEB` makes two packages that hold what they should and ask for what they need: deb.sh BUILD CPACK.
. "$(dirname "$0")/scratch.sh"
build=$1
cpack=$2
command -v dpkg-shlibdeps >/dev/null || { echo "was not tested: there is no dpkg-shlibdeps"; exit 0; }
(cd "$scratch" && "$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$scratch/out") >"$scratch/log" 2>&1 ||
    { cat "$scratch/log"; exit 1; }
program=$(echo "$scratch"/out/brisolan_*.deb)
sdk=$(echo "$scratch"/out/brisolan-dev_*.deb)

field() { dpkg-deb -f "$1" "$2"; }
[ "$(field "$program" Package)" = brisolan ] || fail "the program's package is $(field "$program" Package)"
[ "$(field "$sdk" Package)" = brisolan-dev ] || fail "the object's package is $(field "$sdk" Package)"
for library in libc6 libstdc++6 libpng16-16; do
    field "$program" Depends | grep -q "$library (" || fail "no dependency on $library: $(field "$program" Depends)"
done
if grep -q 'libfluidsynth\.so' "$build/brisolan"; then # loaded by that name when sound is asked for
    field "$program" Depends | grep -q libfluidsynth3 || fail "no dependency on libfluidsynth3"
fi
if [ -e "$build/brisolan-editor" ]; then
    field "$program" Depends | grep -q libqt6widgets6 || fail "no dependency on libqt6widgets6"
fi

holds() {
    dpkg-deb -c "$1" >"$scratch/files"
    grep -q " \./usr/$2\$" "$scratch/files" || fail "$(basename "$1") has no /usr/$2"
}
holds "$program" bin/brisolan
holds "$program" share/man/man1/brisolan.1
holds "$program" share/zsh/vendor-completions/_brisolan
holds "$program" share/doc/brisolan/copyright
holds "$sdk" lib/.*libbrisolan_object.a
holds "$sdk" include/brisolan/host/kel.h
holds "$sdk" share/doc/brisolan-dev/copyright
! awk '{ print $6 }' "$scratch/files" | grep -vE '^\./(usr/.*)?$' || fail "a file lies outside of /usr"
