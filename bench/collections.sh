#!/bin/sh
# Rows on lists, sets and tables, and on walks over large expressions:   bench/collections.sh BUILD
# Both programs measure the processor time of the operation alone and print it in seconds; the fastest
# of three counts. What the preparation left behind is collected before the clock starts, in both.
korel=$1/bin/korelTTY
python=$(for p in /usr/bin/python3 python3; do command -v $p && break; done) || exit 0

# fastest PROGRAM STATEMENTS: the statements go to its standard input
fastest() {
  for _ in 1 2 3; do echo "$2" | $1 2>/dev/null | tail -1; done | sort -g | head -1
}
# print_row NAME SECONDS SECONDS REFERENCE
print_row() {
  awk -v name="$1" -v ours="$2" -v theirs="$3" -v what="$4" 'BEGIN {
    ratio = theirs > 0 ? ours / theirs : 0
    printf "%-44s %11.3f ms %11.3f ms %8.*f  %s\n", name, ours * 1000, theirs * 1000,
           (ratio < 0.1 ? 4 : 2), ratio, what }'
}
# row NAME, then statements to prepare and to measure for Korel, then for Python
row() {
  ours=$(fastest "$korel -q -s" "$2
gc(): st := time():
$3
lprint(evalf(time() - st)):")
  theirs=$(fastest "$python -S -" "from time import process_time
import gc
$4
gc.collect(); st = process_time()
$5
print(process_time() - st)")
  print_row "$1" "$ours" "$theirs" "python3, the same operation"
}

# Random order, and 266 ascending runs one behind the other, which Python's sort merges as they are.
for order in 'random 618033' 'in_runs 519001823'; do
  scattered="irem(k*${order#* }, 1000003)" scattered_py="k*${order#* }%1000003"
  name=$(echo "${order% *}" | tr _ ' ')
  for n in 100000 1000000; do
    row "sort of $n integers, $name" "l := [seq($scattered, k = 1 .. $n)]:" 'to 5 do sort(l) od:' \
        "l = [$scattered_py for k in range(1, $n + 1)]" 'for i in range(5): sorted(l)'
    row "sort of $n strings, $name" "l := [seq(cat(\"s\", $scattered), k = 1 .. $n)]:" \
        'to 5 do sort(l) od:' \
        "l = ['s%d' % ($scattered_py) for k in range(1, $n + 1)]" 'for i in range(5): sorted(l)'
  done
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

# ---- walks, beside SymPy (its cache empty before each) and beside plain Python on nested tuples

"$python" -c 'import sympy' 2>/dev/null || exit 0

# Operations on an expression e, one a line:
# name | repetitions | Korel | repetitions | Python | what the reference does
operations='
has, absent name|100|has(e, absent)|1|e.has(absent)|SymPy, has(absent)
has, absent name|100|has(e, absent)|1|held(t, "absent")|python3, tuples, a stack and a set of ids
has, four absent names|100|has(e, [a1, a2, a3, a4])|1|e.has(*a)|SymPy, has of the four
has, four absent names|100|has(e, [a1, a2, a3, a4])|1|e.free_symbols.isdisjoint(a)|SymPy, free_symbols, then a look-up
hastype, absent type|100|hastype(e, float)|1|e.has(Float)|SymPy, has(Float)
hastype, absent type|100|hastype(e, float)|1|e.atoms(Float)|SymPy, atoms(Float)
numboccur of a name|20|numboccur(e, x1)|1|e.count(x1)|SymPy, count
length|20|length(e)|1|sum(1 for _ in preorder_traversal(e))|SymPy, counting a preorder_traversal
subs of one name|10|subs(x1 = y, e)|1|e.xreplace({x1: y})|SymPy, xreplace
subs of one name|10|subs(x1 = y, e)|1|e.subs(x1, y)|SymPy, subs
'
# walks NAME KOREL PYTHON TUPLES [PATTERN]: statements that make e, e, and the nested tuples t; operations
# that match the pattern.
walks() {
  chosen=$(echo "$operations" | grep '|' | grep -E -- "${5:-|}")
  ours=$(for _ in 1 2 3; do
    { echo "$2"; echo 'gc():'
      # Inside of a procedure: at top level the argument would be evaluated, call by call, each time.
      echo "$chosen" | awk -F '|' '{
        printf "proc(e) local st; st := time(); to %d do %s od; lprint(evalf((time() - st)/%d)) end(e):\n", $2, $3, $2 }'
    } | "$korel" -q -s | paste -sd ' '
  done | awk '{ for (i = 1; i <= NF; ++i) if (NR == 1 || $i < least[i]) least[i] = $i; n = NF }
              END { for (i = 1; i <= n; ++i) print least[i] }')
  theirs=$({ cat <<END
from time import process_time
import gc, sys
sys.setrecursionlimit(100000)
from sympy import *
from sympy.core.cache import clear_cache
f, g, h = map(Function, 'fgh')
x, y, absent = symbols('x y absent')
a = symbols('a1:5')
def held(t, sought):
    seen, waiting = {id(t)}, [t]
    while waiting:
        for part in waiting.pop():
            if part == sought: return True
            if type(part) is tuple and id(part) not in seen:
                seen.add(id(part)); waiting.append(part)
    return False
def measured(work):
    least = 1e9
    for _ in range(3):
        clear_cache(); gc.collect(); st = process_time(); work(); least = min(least, process_time() - st)
    print(least)
$3
$4
END
    echo "$chosen" | awk -F '|' '{ print "measured(lambda: " $5 ")" }'
  } | "$python" -)
  i=0
  echo "$chosen" | while IFS='|' read -r operation _ _ _ _ what; do
    i=$((i + 1))
    print_row "$operation, $1" "$(echo "$ours" | sed -n "${i}p")" "$(echo "$theirs" | sed -n "${i}p")" "$what"
  done
}
# 10^5 distinct nodes: a sum of calls of a name and a call.
walks '25000 calls' 'e := add(f(x||k, g(k)), k = 1 .. 25000):' \
      'xs = symbols("x1:25001"); x1 = xs[0]; e = Add(*[f(s, g(k + 1)) for k, s in enumerate(xs)])' \
      't = tuple(["+"] + [("f", "x%d" % k, ("g", k)) for k in range(1, 25001)])'
# "shared": 10^6 nodes as a tree, 5000 distinct: 1000 calls of 250 calls each, of 1000 different ones.
walks 'shared calls' \
      'c := [seq(f(x||k, g(k)), k = 1 .. 1000)]:
       e := proc(c) local j, k; add(h(seq(c[1 + irem(j + k, 1000)], k = 1 .. 250)), j = 1 .. 1000) end(c):' \
      'xs = symbols("x1:1001"); x1 = xs[0]; c = [f(s, g(k + 1)) for k, s in enumerate(xs)]
e = Add(*[h(*[c[(j + k) % 1000] for k in range(1, 251)]) for j in range(1, 1001)])' \
      'c = [("f", "x%d" % k, ("g", k)) for k in range(1, 1001)]
t = tuple(["+"] + [tuple(["h"] + [c[(j + k) % 1000] for k in range(1, 251)]) for j in range(1, 1001)])'
# Each of 20000 calls holds the name.
walks 'all of 20000 calls' 'e := subs(x = x1, add(f(x, g(k)), k = 1 .. 20000)):' \
      'x1 = Symbol("x1"); e = Add(*[f(x1, g(k)) for k in range(1, 20001)])' 't = ()' '^subs'
