#!/bin/sh
# help_is_complete.sh KORELTTY MARCH LIBRARY BUILTINS: `help` knows every built-in in the table of BUILTINS, and every
# procedure in the archive of the LIBRARY that a person calls, which has no slash in its name.
korel=$1 march=$2 library=$3 builtins=$4
names() {
  "$march" list "$library" | sed -nE 's/^.* ([^ /]+)\.m$/\1/p'
  sed -nE 's/^    \{"([A-Za-z0-9_]+)", *(simplified|unevaluated|members).*/\1/p' "$builtins"
}
count=$(names | sort -u | wc -l)
[ "$count" -gt 200 ] || { echo "only $count names found"; exit 1; }
missing=$(names | sort -u | sed 's/.*/`help`("&"):/' | "$korel" -q -s -b "$library" 2>&1 | grep -E 'Error|without a description')
[ -z "$missing" ] || { echo "$missing"; exit 1; }
