#!/bin/sh
# Runs one statement file through the terminal program and compares what it prints with the .out
# file beside it:   run.sh KORELTTY FILE.krl
# It runs in a directory of its own, where the script may save files, and finds the .txt files that it reads.
# UPDATE=1 in the environment rewrites the expected output instead; read the change before you
# commit it.
program=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
script=$(cd "$(dirname "$2")" && pwd)/$(basename "$2")
expected=${script%.krl}.out
scratch=$(mktemp -d) || exit 2
trap 'rm -rf "$scratch"' EXIT
for part in "$(dirname "$script")"/*.txt; do
  [ -e "$part" ] && ln -s "$part" "$scratch"
done
cd "$scratch" || exit 2
if [ -n "${UPDATE:-}" ]; then
  "$program" -q < "$script" > "$expected" 2>&1
  exit 0
fi
actual=$scratch/actual.out
"$program" -q < "$script" > "$actual" 2>&1
status=$?
diff -u "$expected" "$actual" || exit 1
[ "$status" -lt 128 ] || { echo "ended by signal $((status - 128))"; exit 1; }
