#!/bin/sh
# tests/run-scripts fails on each way in which a script can go wrong, and passes one that does as expected. The program
# that it is given here is a shell script that prints its input file and what its folder holds.
set -eu
runner=$(cd "$(dirname "$0")/.." && pwd)/run-scripts
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT INT TERM
bad=no
cat >"$place/program" <<'PROGRAM'
#!/bin/sh
[ "$1" = script ] || exit 9
cat "$2"
ls
! grep -q complain "$2" || echo complaint >&2
! grep -q fail "$2" || exit 3
PROGRAM
chmod +x "$place/program"

# expect pass|fail "WORDS THAT IT PRINTS": runs the scripts in $place/t
expect() {
    result=pass
    output=$("$runner" "$place/program" "$place/t" 2>&1) || result=fail
    case "$result:$output" in
    "$1":*"$2"*) ;;
    *)
        printf 'expected to %s with "%s": %s\n%s\n' "$1" "$2" "$result" "$output"
        bad=yes
        ;;
    esac
    rm -rf "$place/t"
    mkdir "$place/t"
}
file() { mkdir -p "$(dirname "$place/t/$1")" && printf '%s' "$2" >"$place/t/$1"; }

mkdir "$place/t"
expect fail "no scripts"
file a.script "12
" && file a.expected "12
" && expect pass "1 scripts, 0 failed"
file a.script "12
" && file a.expected "13
" && expect fail "+12"
file a.script "12
" && file a.expected "12" && expect fail "No newline at end of file"
file a.script "12
" && expect fail "a.expected is missing"
file a.expected "12
" && file b.script "" && file b.expected "" && expect fail "a.expected has no script"
file a.script "" && file a.expected "tune.mid
" && file a.files/tune.mid "" && expect pass "1 scripts, 0 failed"
file a.script "complain
" && file a.expected "complain
" && expect fail "+complaint"
file a.script "complain
" && file a.expected "complain
" && file a.stderr "complaint
" && expect pass "1 scripts, 0 failed"
file a.script "fail
" && file a.expected "fail
" && expect fail "exit status 3, expected 0"
file a.script "fail
" && file a.expected "fail
" && file a.status "3
" && expect pass "1 scripts, 0 failed"
file a.script "x
" && file a.expected "x
" && file b.script "y
" && file b.expected "x
" && expect fail "2 scripts, 1 failed"
[ $bad = no ]
