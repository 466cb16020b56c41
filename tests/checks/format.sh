#!/bin/sh
# Every C++ file is as clang-format 14 leaves it with the tree's .clang-format; another version differs in details.
. "$(dirname "$0")/files.sh"
command -v clang-format-14 >/dev/null || { echo "clang-format-14 is not installed"; exit 1; }
code_files | xargs -r -n 20 -P "$(nproc)" clang-format-14 --dry-run -Werror
