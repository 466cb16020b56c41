# Read by the checks with `.`: goes to the root of the source tree (or to $BRISOLAN_TREE), lists its files, and sets
# $checks to the folder of the checks.
set -eu
checks=$(cd "$(dirname "$0")" && pwd)
cd "${BRISOLAN_TREE:-$checks/../..}"

# Every file that is or would be tracked; without git, every file outside the build.
tree_files() {
    git ls-files --cached --others --exclude-standard 2>/dev/null ||
        find . \( -name .git -o -path ./build \) -prune -o -type f -print | sed 's:^\./::'
}

# The same, of those that still exist.
present_files() { tree_files | while IFS= read -r file; do [ ! -f "$file" ] || printf '%s\n' "$file"; done; }

# Those in C++.
code_files() { present_files | grep -E '\.(cpp|h)$' || :; }
