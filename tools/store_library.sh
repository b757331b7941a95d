#!/usr/bin/env bash
# store_library.sh KORELTTY MARCH DIRECTORY SOURCE...: stores what the sources define in a new archive of the directory.
set -euo pipefail
korel=$1 march=$2 target=$3
shift 3
new=$(mktemp -d "$target/new.XXXXXX")
trap 'rm -rf "$new"' EXIT
"$march" create "$new" 1000
list=$(printf ', "%s"' "$@")
output=$("$korel" -q -s -b "$new" -c "target := \"$new\":" -c "sources := [${list#, }]:" \
  "$(dirname "$0")/store_library.krl" 2>&1) || { echo "$output"; exit 1; }
if [ -n "$output" ]; then echo "$output"; exit 1; fi
# The data first, as every rebuild does.
mv "$new/korel.lib" "$target/korel.lib"
mv "$new/korel.ind" "$target/korel.ind"
rm -f "$target/korel.rep"
if [ -e "$new/korel.rep" ]; then mv "$new/korel.rep" "$target/korel.rep"; fi
