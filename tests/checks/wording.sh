#!/bin/sh
# The project speaks of itself: no file points a reader to papers, places or people that they cannot reach.
. "$(dirname "$0")/files.sh"
# Bracketed letters keep the pattern from finding itself.
pattern='\bPart[s]? [1-5][.][1-6]\b|\bspec[.]md\b|\bthe[ ]spec(ification)?\b|\bper[ ]spec\b|DEVELOPERS[.]md'
pattern="$pattern"'|[.][.]/share[d]/(spec|design|style)|(^|[ "(=])/(wor[k]|far[m])/|\b(C[E]O|sub[a]gent|helper[ ]session)\b'
found=$(present_files | grep -vFx .gitignore | tr '\n' '\0' | xargs -0 grep -nIiE "$pattern" || :)
[ -z "$found" ] || { printf 'These lines say what the project must not say:\n%s\n' "$found"; exit 1; }
