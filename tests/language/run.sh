#!/bin/sh
# Runs one statement file through the terminal program and compares what it prints with the .out
# file beside it:   run.sh [--kernel] KORELTTY FILE.krl
# With --kernel the statements run in a kernel process, over the link.
# It runs in a directory of its own, where the script may save files, and finds the .txt files that it reads.
# UPDATE=1 in the environment rewrites the expected output instead; read the change before you
# commit it.
switches=-q
if [ "$1" = --kernel ]; then
  switches='-q --kernel'
  shift
fi
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
  # shellcheck disable=SC2086 # the words are meant to split
  "$program" $switches < "$script" > "$expected" 2>&1
  exit 0
fi
actual=$scratch/actual.out
ulimit -f 65536 # a script that runs away ends here, not with the disk
# shellcheck disable=SC2086
"$program" $switches < "$script" > "$actual" 2>&1
status=$?
diff -u "$expected" "$actual" || exit 1
[ "$status" -lt 128 ] || { echo "ended by signal $((status - 128))"; exit 1; }
