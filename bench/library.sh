#!/bin/sh
# Rows on the library store:   bench/library.sh BUILD
# Records beside Python's pickle of the same tree; names that no directory has, and first uses of library procedures,
# beside imports of as many Python modules. Processor time in seconds, the fastest of three.
korel=$1/bin/korelTTY
march=$1/bin/march
python=$(for p in /usr/bin/python3 python3; do command -v $p && break; done) || exit 0
work=$(mktemp -d) || exit 0
trap 'rm -rf "$work"' EXIT

# fastest COMMAND STATEMENTS: the statements go to its standard input
fastest() {
  for _ in 1 2 3; do echo "$2" | $1 2>/dev/null | tail -1; done | sort -g | head -1
}
print_row() {
  awk -v name="$1" -v ours="$2" -v theirs="$3" -v what="$4" 'BEGIN {
    printf "%-44s %11.3f ms %11.3f ms %8.2f  %s\n", name, ours * 1000, theirs * 1000, (theirs > 0 ? ours / theirs : 0), what }'
}
clock() {
  echo "st := time():
$1
lprint(evalf(time() - st)):"
}

tree='l := [seq([i, f(i)], i = 1 .. 250000)]:'
echo "$tree save l, \"$work/l.m\":" | $korel -q -s
echo "import pickle
pickle.dump([[i, ('f', i)] for i in range(1, 250001)], open('$work/l.pickle', 'wb'))" | "$python" -S -
print_row '10^6 nodes written as records' \
  "$(fastest "$korel -q -s" "$tree gc():
$(clock "save l, \"$work/out.m\":")")" \
  "$(fastest "$python -S -" "import pickle
from time import process_time
l = [[i, ('f', i)] for i in range(1, 250001)]
st = process_time()
pickle.dump(l, open('$work/out.pickle', 'wb'))
print(process_time() - st)")" 'pickle of the same tree'
print_row '10^6 nodes read from records' \
  "$(fastest "$korel -q -s" "$(clock "read \"$work/l.m\":")")" \
  "$(fastest "$python -S -" "import pickle
from time import process_time
st = process_time()
pickle.load(open('$work/l.pickle', 'rb'))
print(process_time() - st)")" 'pickle of the same tree'

# A library of 1,000 procedures, and a package of 1,000 modules.
mkdir "$work/lib" "$work/package"
$march create "$work/lib" 2000
{
  for i in $(seq 1000); do echo "p$i := proc(x) x + $i end proc:"; done
  printf 'save '
  for i in $(seq 1000); do printf 'p%d, ' "$i"; done
  echo "\"$work/lib\":"
} | $korel -q -s -b "$work/lib"
for i in $(seq 1000); do echo "def p(x): return x + $i" > "$work/package/p$i.py"; done
calls=$(seq 1000 | sed 's/.*/p&(1):/' | tr '\n' ' ')
print_row '10^3 first uses of library procedures' \
  "$(fastest "$korel -q -s -b $work/lib" "$(clock "$calls")")" \
  "$(fastest "$python -S -" "import sys, importlib
from time import process_time
sys.path.insert(0, '$work/package')
for i in range(1, 1001): importlib.import_module('p%d' % i)
for i in range(1, 1001): del sys.modules['p%d' % i]
st = process_time()
for i in range(1, 1001): importlib.import_module('p%d' % i).p(1)
print(process_time() - st)")" 'imports of compiled modules'
print_row '10^4 names that no directory has' \
  "$(fastest "$korel -q -s -b $work/lib" "$(clock 'for i to 10000 do eval(absent||i) od:')")" \
  "$(fastest "$python -S -" "import os
from time import process_time
st = process_time()
for i in range(10000): os.path.exists('$work/lib/absent%d.m' % i)
print(process_time() - st)")" 'stat of as many paths'
