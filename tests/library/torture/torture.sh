#!/usr/bin/env bash
# torture.sh KORELTTY ROUNDS SECONDS: an archive under fire.
#
# In each round a process that writes members, packs and reindexes is killed at a random moment; afterwards every member
# must read back whole, and the archive must take new ones. Then two processes write to one archive and one
# repository at once for so many seconds; a third one reads everything.
set -u
korel=$1 rounds=$2 seconds=$3
here=$(dirname "$0")
work=$(mktemp -d)
started=
trap 'kill -9 $started 2>/dev/null; rm -rf "$work"' EXIT

run() { timeout 120 "$korel" -q -s -b "$work" -c "target := \"$work\":" "$@"; }
# The kernel itself, in the background; its process number in `started`.
start() {
  local out=$1
  shift
  "$korel" -q -s -b "$work" -c "target := \"$work\":" "$@" > "$out" 2>&1 &
  started=$!
  disown "$started"
}
fail() { echo "$*"; ls -la "$work"; exit 1; }
check() {  # name of the writer, least count
  local told
  told=$(run -c "me := $1:" "$here/reader.krl" 2>&1)
  case $told in
    "whole, "*) [ "${told#whole, }" -ge "$2" ] || fail "members are lost: $told";;
    *) fail "$told";;
  esac
}

echo 'iolib(31, "create", target, 20):' > "$work/create.krl"
[ -z "$(run "$work/create.krl" 2>&1)" ] || fail "no archive"
run -c 'me := a:' -c 'first := 1:' -c 'last := 1:' "$here/writer.krl" || fail "first writer"
check a 21

for round in $(seq "$rounds"); do
  start "$work/out" -c 'me := a:' -c "first := $((10 * round)):" -c 'last := 10^9:' "$here/writer.krl"
  sleep "0.0$((RANDOM % 90 + 10))"
  kill -9 "$started"
  while kill -0 "$started" 2>/dev/null; do sleep 0.005; done
  [ -s "$work/out" ] && fail "round $round: $(cat "$work/out")"
  check a 21
done
run -c 'me := a:' -c 'first := 3:' -c 'last := 4:' "$here/writer.krl" || fail "writing after the rounds"
check a 21

writers=
for me in a b; do
  start "$work/out.$me" -c "me := $me:" -c 'first := 1:' -c 'last := 10^9:' "$here/writer.krl"
  writers="$writers $started"
done
sleep "$seconds"
kill -9 $writers
while kill -0 $writers 2>/dev/null; do sleep 0.01; done
for me in a b; do
  [ -s "$work/out.$me" ] && fail "writer $me: $(head -5 "$work/out.$me")"
  check "$me" 21
done
