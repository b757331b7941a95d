#!/usr/bin/env bash
# Runs the examples of a document:   documented.sh KORELTTY DOCUMENT
# In indented blocks, lines that begin with > are typed, the others are what must come of them. A block that begins with
# an include is C: it becomes the library lib<function>.so, named from its first function.
set -euo pipefail
program=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
document=$(cd "$(dirname "$2")" && pwd)/$(basename "$2")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
awk '
  /^    / {
    line = substr($0, 5)
    if (!inside) { inside = 1; isC = line ~ /^#include/; isTyped = line ~ /^>/ }
    if (isC) print line > "code.c"
    else if (isTyped) { if (line ~ /^>/) print substr(line, 3) > "typed.krl"; else print line > "expected" }
    next
  }
  /^$/ { if (inside && isC) print "" > "code.c"; next }
  { inside = 0 }
' "$document"
include=$(dirname "$(dirname "$program")")/extern/include
function=$(sed -n 's/^ALGEB \([a-z]*\)(.*/\1/p' code.c | head -1)
cc -w -shared -fPIC -I "$include" code.c -o "lib$function.so"
"$program" -q < typed.krl > actual 2>&1
diff -u expected actual
