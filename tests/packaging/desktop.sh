#!/bin/sh
# What a desktop reads of the program, held against the desktop's own checkers where they are: desktop.sh PACKAGING BUILD.
. "$(dirname "$0")/scratch.sh"
desktop=$1/desktop
build=$2
checked=""
if command -v desktop-file-validate >/dev/null; then
    said=$(desktop-file-validate "$desktop/brisolan.desktop" 2>&1) || fail "$said"
    [ -z "$said" ] || fail "$said"
    checked="$checked desktop-file-validate"
fi
metainfo="$build/org.brisolan.brisolan.metainfo.xml"
if command -v appstreamcli >/dev/null && [ -e "$metainfo" ]; then
    appstreamcli validate --no-net "$metainfo" >"$scratch/said" 2>&1 || { cat "$scratch/said"; exit 1; }
    checked="$checked appstreamcli"
fi
if command -v update-mime-database >/dev/null && command -v gio >/dev/null; then
    mkdir -p "$scratch/data/mime/packages"
    cp /usr/share/mime/packages/freedesktop.org.xml "$desktop/brisolan-mime.xml" "$scratch/data/mime/packages"
    update-mime-database "$scratch/data/mime" >"$scratch/said" 2>&1 || { cat "$scratch/said"; exit 1; }
    export XDG_DATA_DIRS="$scratch/data" XDG_DATA_HOME="$scratch/none"
    printf '#N brisolan "";\n#X restore;\n#X stop;\n' >"$scratch/tune.kel"
    printf '#P window 40 40 640 400;\n' >"$scratch/patch.kel"
    printf 'binary' >"$scratch/tune.kelb"
    for pair in tune.kel=document patch.kel=patch tune.kelb=binary; do
        kind=$(gio info -a standard::content-type "$scratch/${pair%=*}" | sed -n 's/.*content-type: //p')
        [ "$kind" = "application/x-kel-${pair#*=}" ] || fail "${pair%=*} is taken for $kind"
    done
    checked="$checked update-mime-database"
fi
[ -n "$checked" ] || { echo "was not tested: none of the desktop's checkers is installed"; exit 0; }
echo "checked with$checked"
