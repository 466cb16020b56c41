#!/bin/sh
# The check of includes fails on each kind of breach, and passes a tree without one.
set -eu
checks=$(cd "$(dirname "$0")" && pwd)
BRISOLAN_TREE=$(mktemp -d)
export BRISOLAN_TREE
trap 'rm -rf "$BRISOLAN_TREE"' EXIT INT TERM
bad=no

# expect "WORDS IN THE MESSAGE" (or "" for none) FILE LINE [FILE LINE]...: the tree of these one-line files
expect() {
    words=$1
    shift
    title="$*"
    rm -rf "${BRISOLAN_TREE:?}"/*
    mkdir -p "$BRISOLAN_TREE/core" "$BRISOLAN_TREE/transport" "$BRISOLAN_TREE/io" "$BRISOLAN_TREE/view" \
        "$BRISOLAN_TREE/edit" "$BRISOLAN_TREE/host/kernel" "$BRISOLAN_TREE/host/toolbox" "$BRISOLAN_TREE/host/boxes"
    for header in host/kel.h host/toolbox.h host/platform.h host/kernel/kernel.h core/event.h edit/selection.h; do
        : >"$BRISOLAN_TREE/$header"
    done
    while [ $# -gt 0 ]; do
        printf '%s\n' "$2" >"$BRISOLAN_TREE/$1"
        shift 2
    done
    if output=$("$checks/includes.sh" 2>&1); then result=""; else result=$output; fi
    case "$words:$result" in
    :?*) ;;
    :) return ;;
    *:*"$words"*) [ -z "$result" ] || return 0 ;;
    esac
    printf 'wrong answer for %s: %s\n' "$title" "${result:-passed}"
    bad=yes
}

expect "" core/a.cpp '#include <vector>' edit/a.cpp '#include "edit/selection.h"'
expect "" core/lifecycle.cpp '#include "edit/selection.h"' host/kernel/a.cpp '#include "host/platform.h"'
expect 'core/a.cpp:1: may not include "edit/selection.h"' core/a.cpp '#include "edit/selection.h"'
expect 'may not include "host/kernel/kernel.h"' view/a.cpp '#  include "host/kernel/kernel.h" // why'
expect 'may not include "host/platform.h"' edit/a.cpp '#include "host/platform.h"'
expect 'may not include <unistd.h>' transport/a.cpp '#include <unistd.h>'
expect 'may not include "edit/mouse.h"' edit/mouse.h '' io/a.cpp '#include "edit/mouse.h"'
expect 'may not include "core/event.h"' host/kernel/a.cpp '#include "core/event.h"'
expect 'may not include "core/event.h"' host/toolbox/a.cpp '#include "core/event.h"'
expect 'may not include <sched.h>' host/kernel/a.cpp '#include <sched.h>'
expect 'may not include "host/kernel/kernel.h"' host/toolbox/a.cpp '#include "host/kernel/kernel.h"'
expect 'may not include "host/kernel/kernel.h"' host/boxes/a.cpp '#include "host/kernel/kernel.h"'
expect 'may not include "host/kel.h"' host/toolbox.h '#include "host/kel.h"'
expect 'may not include computed' core/a.cpp '#include HEADER'
expect 'no line of' host/other.h '#include <vector>'
expect 'in a circle' core/a.h '#include "core/b.h"' core/b.h '#include "core/c.h"' core/c.h '#include "core/a.h"'
expect 'includes itself' core/a.h '#include "core/a.h"'
expect 'no file as seen from the root' core/a.cpp '#include "core/missing.h"'
[ $bad = no ]
