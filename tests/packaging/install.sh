#!/bin/sh
# The installed program works by itself, wherever it was installed to: install.sh BUILD CMAKE SOURCE.
. "$(dirname "$0")/scratch.sh"
build=$1
cmake=$2
source=$3
"$cmake" --install "$build" --prefix "$scratch/first" --component program >"$scratch/log" || { cat "$scratch/log"; exit 1; }
mv "$scratch/first" "$scratch/moved"
program="$scratch/moved/bin/brisolan"
cd "$scratch"

"$program" --version | grep -qx 'brisolan [0-9.]*' || fail "--version says: $("$program" --version)"
"$program" list "$source/examples/prelude-in-c.mid" >events
[ "$(head -n 1 events | wc -w)" -eq 8 ] || fail "list says: $(head -n 1 events)"
"$program" render "$source/examples/prelude-in-c.mid" picture.png
head -c 8 picture.png | od -An -c | grep -q 'P   N   G' || fail "render made no picture"

# Playing by the patch that was installed: another patch in its place is the one that runs.
for piece in "$source"/examples/*.mid; do
    cmp "$piece" "moved/share/doc/brisolan/examples/$(basename "$piece")"
done
for patch in "$source"/patches/*.kel; do
    cmp "$patch" "moved/share/brisolan/patches/$(basename "$patch")"
done
echo 'this is no patch' >moved/share/brisolan/patches/follow.kel
! "$program" follow "$source/examples/minuet-in-g.mid" --performance "$source/examples/minuet-performance.mid" \
    >/dev/null 2>said || fail "the installed patch was not used"
grep -q 'moved/share/brisolan/patches/follow.kel' said || fail "follow says: $(cat said)"

for file in share/man/man1/brisolan.1 share/bash-completion/completions/brisolan share/zsh/site-functions/_brisolan \
    share/fish/vendor_completions.d/brisolan.fish share/mime/packages/brisolan.xml share/doc/brisolan/using.md \
    share/doc/brisolan/copyright; do
    [ -s "moved/$file" ] || fail "$file was not installed"
done
if [ -e "$build/brisolan-editor" ]; then
    for file in libexec/brisolan/brisolan-editor share/applications/brisolan.desktop \
        share/metainfo/org.brisolan.brisolan.metainfo.xml share/icons/hicolor/scalable/apps/brisolan.svg \
        share/icons/hicolor/48x48/apps/brisolan.png; do
        [ -s "moved/$file" ] || fail "$file was not installed"
    done
fi
[ ! -e moved/include ] || fail "the program's component brought headers"
