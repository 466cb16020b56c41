# Read by the tests of packaging with `.`: makes the folder $scratch, which goes when the test ends, and tells failures.
set -eu
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT INT TERM

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}
