#!/bin/sh
# The walls between the rooms: each file of the object and of the host includes only what the table `walls` lets it, and
# no includes go in a circle.
. "$(dirname "$0")/files.sh"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT INT TERM

# FILE LINE <header> or FILE LINE "header"
code_files | grep -E '^(core|transport|io|view|edit|host)/' >"$scratch/files" || exit 0
xargs awk '
    /^[ \t]*#[ \t]*include[ \t]*[<"]/ {
        line = $0
        sub(/^[ \t]*#[ \t]*include[ \t]*/, "", line)
        match(line, /^(<[^>]*>|"[^"]*")/)
        print FILENAME, FNR, substr(line, 1, RLENGTH)
        next
    }
    /^[ \t]*#[ \t]*include/ { print FILENAME, FNR, "computed" }
' <"$scratch/files" >"$scratch/includes"

awk '
    # Shell pattern to regular expression: only * is special.
    function expression(pattern) {
        gsub(/[.+]/, "\\\\&", pattern)
        gsub(/\*/, ".*", pattern)
        return "^" pattern "$"
    }
    FILENAME ~ /walls$/ {
        if ($0 !~ /^#/ && NF > 1) { rules++; rule[rules] = expression($1); allowed[rules] = $0 }
        next
    }
    {
        for (r = 1; r <= rules && $1 !~ rule[r]; r++);
        if (r > rules) { print $1 ": no line of tests/checks/walls fits this file"; bad = 1; next }
        name = substr($3, 2, length($3) - 2)
        count = split(allowed[r], words, " ")
        for (w = 2; w <= count; w++) {
            if (words[w] == "any" && $3 ~ /^</) next
            if (words[w] == "std" && $3 ~ /^</ && index(standard, " " name " ")) next
            if (words[w] == $3) next
            if ($3 ~ /^"/ && name ~ expression(words[w])) next
        }
        print $1 ":" $2 ": may not include " $3
        bad = 1
    }
    END { exit bad }
' standard=" algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes \
climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef \
cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list \
fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map \
memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator \
semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view \
strstream syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility \
valarray variant vector version " "$checks/walls" "$scratch/includes" || bad=yes

# Quoted includes are paths from the root, so that they name their file in the graph; tsort tells of any circle.
awk '$3 ~ /^"/ { print $1, substr($3, 2, length($3) - 2) }' "$scratch/includes" >"$scratch/edges"
awk '$1 == $2 { print $1 " includes itself"; bad = 1 } END { exit bad }' "$scratch/edges" || bad=yes
while read -r file header; do
    [ -f "$header" ] || { echo "$file includes \"$header\", which is no file as seen from the root"; bad=yes; }
done <"$scratch/edges"
tsort "$scratch/edges" >/dev/null 2>"$scratch/circle" || { echo "Includes in a circle:"; cat "$scratch/circle"; bad=yes; }

echo "$(wc -l <"$scratch/includes") includes in $(wc -l <"$scratch/files") files"
[ "${bad:-no}" = no ]
