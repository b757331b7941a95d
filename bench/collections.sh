#!/bin/sh
# Rows on lists, sets and tables:   bench/collections.sh BUILD
# Both programs measure the processor time of the operation alone and print it in seconds; the fastest
# of three runs counts.
korel=$1/bin/korelTTY
command -v python3 >/dev/null || exit 0

# fastest PROGRAM STATEMENTS: the statements go to its standard input
fastest() {
  for _ in 1 2 3; do echo "$2" | $1 2>/dev/null | tail -1; done | sort -g | head -1
}
# row NAME, then statements to prepare and to measure for Korel, then for Python
row() {
  ours=$(fastest "$korel -q -s" "$2
st := time():
$3
lprint(evalf(time() - st)):")
  theirs=$(fastest 'python3 -S -' "from time import process_time
$4
st = process_time()
$5
print(process_time() - st)")
  awk -v name="$1" -v ours="$ours" -v theirs="$theirs" 'BEGIN {
    printf "%-44s %11.3f ms %11.3f ms %8.2f  %s\n", name, ours * 1000, theirs * 1000, ours / theirs,
           "python3, the same operation" }'
}

scattered='irem(k*519001823, 1000003)'
scattered_py='k*519001823%1000003'
for n in 100000 1000000; do
  row "sort of $n integers" "l := [seq($scattered, k = 1 .. $n)]:" 'to 5 do sort(l) od:' \
      "l = [$scattered_py for k in range(1, $n + 1)]" 'for i in range(5): sorted(l)'
done
for n in 100000 1000000; do
  row "sort of $n strings" "l := [seq(cat(\"s\", $scattered), k = 1 .. $n)]:" 'to 5 do sort(l) od:' \
      "l = ['s%d' % ($scattered_py) for k in range(1, $n + 1)]" 'for i in range(5): sorted(l)'
done
for operation in 'union |' 'intersect &' 'minus -'; do
  row "${operation% *} of sets of 100000" \
      'a := {seq(2*k, k = 1 .. 100000)}: b := {seq(3*k, k = 1 .. 100000)}:' \
      "to 20 do a ${operation% *} b od:" \
      'a = {2*k for k in range(1, 100001)}; b = {3*k for k in range(1, 100001)}' \
      "for i in range(20): a ${operation#* } b"
done
row '10^6 table stores' 't := table():' 'for k to 1000000 do t[k] := k od:' \
    't = {}' 'for k in range(1, 1000001): t[k] = k'
row '10^6 table reads' 't := table(): for k to 1000000 do t[k] := k od:' \
    'for k to 1000000 do t[k] od:' \
    't = {k: k for k in range(1, 1000001)}
' 'for k in range(1, 1000001): t[k]'
