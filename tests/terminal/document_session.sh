#!/bin/sh
# document_session.sh KORELTTY PAGE.md: types the session of a page, in which `> ` and `DBG> ` stand in front of what is
# typed, and compares what the program shows with the page.
program=$1 page=$2
scratch=$(mktemp -d) || exit 2
trap 'rm -rf "$scratch"' EXIT
sed -n 's/^    //p' "$page" > "$scratch/session"
sed -n -e 's/^> //p' -e 's/^DBG> \{0,1\}//p' "$scratch/session" > "$scratch/typed"
grep -v -e '^> ' -e '^DBG>' "$scratch/session" > "$scratch/expected"
timeout 60 "$program" -q -s < "$scratch/typed" > "$scratch/shown" 2>&1
diff -u "$scratch/expected" "$scratch/shown"
