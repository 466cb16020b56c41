#!/bin/bash
# Manual page and completions name every command and every option that --help shows, and bash completes as it should:
# reference.sh PROGRAM REFERENCE, the folder with the four files.
. "$(dirname "$0")/scratch.sh"
program=$1
reference=$(cd "$2" && pwd)

# names_in HELP: the options it lists, with their dashes; the help text is laid out by another hand than the pages are.
names_in() { grep -oE '^ +(-[a-z], ?)?--?[a-z][a-z-]*(,--[a-z-]+)?' "$1" | tr ', ' '\n\n' | grep '^-' | sort -u; }

"$program" --help >"$scratch/help"
commands=$(sed -n '/^Subcommands:/,$ s/^  \([a-z]*\) .*/\1/p' "$scratch/help")
[ "$(echo "$commands" | wc -w)" -ge 9 ] || fail "--help lists only: $commands"

# The part of a completion or of the page that is about one command.
section() {
    case $1 in
    brisolan.1) awk -v c="$2" '/^\.S[SH] / { on = ($2 == c) } on' "$reference/$1" | sed 's/\\-/-/g' ;;
    brisolan.bash) grep -E "^ +(\"$2 |$2\))" "$reference/$1" ;;
    brisolan.zsh) grep -E "^ +$2\) " "$reference/$1" ;;
    brisolan.fish) grep -E "__fish_seen_subcommand_from $2'" "$reference/$1" | sed 's/ -l / --/; s/ -s / -/' ;;
    esac
}

count=0
for command in $commands; do
    "$program" "$command" --help >"$scratch/help"
    for file in brisolan.1 brisolan.bash brisolan.zsh brisolan.fish; do
        section $file "$command" >"$scratch/section"
        for name in $(names_in "$scratch/help"); do
            grep -qE -e "(^|[^a-z-])$name([^a-z-]|\$)" "$scratch/section" || fail "$file: $command: no $name"
            count=$((count + 1))
        done
    done
done
[ $count -ge 200 ] || fail "only $count names were looked for"

# Bash. The answers to a command line whose last word is to be completed.
# shellcheck source=/dev/null
. "$reference/brisolan.bash"
brisolan() { printf 'in 0 ALSA Left Hand\nout 0 JACK Right Hand\n'; }
answers() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    _brisolan
    printf '%s\n' "${COMPREPLY[@]:-}" | sort | tr '\n' ' ' | sed 's/ $//'
}
expect() {
    wanted=$1
    shift
    got=$(answers "$@")
    [ "$got" = "$wanted" ] || fail "completing '$*': '$got', not '$wanted'"
}
cd "$scratch" && touch tune.mid take.kel
rm -f help section
expect "render" brisolan ren
expect "take.kel" brisolan ta
expect "--version" brisolan --v
expect "--from" brisolan play --fr
expect "--force --format" brisolan convert --fo
expect "kel kelb mid" brisolan convert --to ""
expect "kel kelb" brisolan convert --to k
expect "tune.mid" brisolan list tu
expect "take.kel tune.mid" brisolan play ""
expect "" brisolan play --speed ""
expect 'Right\ Hand' brisolan play --port ""
expect 'Left\ Hand' brisolan follow tune.mid --port L
expect "take.kel" brisolan follow tune.mid --performance ta

# The other shells and man, where they are.
if command -v zsh >/dev/null; then zsh -n "$reference/brisolan.zsh"; fi
if command -v fish >/dev/null; then fish -n "$reference/brisolan.fish"; fi
if command -v man >/dev/null; then
    said=$(MANROFFSEQ='' man --warnings -E UTF-8 -l "$reference/brisolan.1" 2>&1 >/dev/null)
    [ -z "$said" ] || fail "man: $said"
fi
